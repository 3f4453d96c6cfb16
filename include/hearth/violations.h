// Tells why a value does not conform to a JSON Schema.
//
// JsonData's validation answers yes or no, and lets a value pass where there is no schema. The
// operation here says which rule is broken where, for an error message or for a form that marks
// every field, and tells a value that breaks a rule from a schema that cannot be used.
// docs/validator.md has the drafts, the limits, and the reasons that make a schema unusable.
#ifndef HEARTH_VIOLATIONS_H
#define HEARTH_VIOLATIONS_H

#include <cstddef>

#include "hearth/export.h"

struct json_object;

namespace hearth {

// The outcome of comparing a value with a schema. Only kConforms is a yes.
enum class Conformance : int {
  kConforms = 0,
  kViolates = 1,   // the value breaks a rule of the schema
  kUnusable = 2,   // the schema, not the value, is at fault: it is neither object nor boolean, or
                   // holds a keyword with a wrong value, a broken pattern, a reference that leads
                   // nowhere or back to itself, or asks for a vocabulary that is not known
  kExhausted = 3,  // value and schema take too much depth, work (a pattern's too) or memory
};

// One rule that a value breaks, or the reason that ended the comparison. All texts are there, if
// only as "", end with a NUL, and are the library's own: they are valid during the call only.
struct Violation {
  // Bytes of this structure that the library filled in. Later versions may add members at the end;
  // one is there if `size` reaches beyond it.
  std::size_t size;

  // The value at fault, as a JSON Pointer into the instance; "" is the whole of it.
  const char* place;

  // The rule, as a JSON Pointer into the schema; in a built-in metaschema its URI and '#' stand
  // before the pointer. "" is the whole schema, or is not known.
  const char* rule;

  // The keyword of the rule, such as "maxLength"; "" when none is at fault.
  const char* keyword;

  // The member of the object at `place` that is at fault without being a place of its own: one that
  // is missing ("required", "dependentRequired", "dependencies"), or whose name is refused
  // ("propertyNames"). Else "".
  const char* member;

  // For a person, the end of a sentence that begins with the place: "must be at most 64 characters
  // long, but has 80". It may quote parts of the value and of the schema; whoever must not show
  // them makes a sentence of their own from keyword, place and member. UTF-8 without control
  // characters.
  const char* sentence;
};

// Takes one violation. False ends the comparison: no further one is wanted. Must not throw.
using ViolationFound = bool (*)(void* context, const Violation& violation);

// Compares the instance with the schema and calls found(context, ...) for each rule that is broken,
// in the order of the walk, at most `limit` times; then the comparison ends. With a limit of 1 that
// is the first violation, with UINT_MAX all of them, with 0 or without `found` none: only the
// answer.
//
// Every value that breaks a rule of its own is told, at its own place: each member and element,
// each missing member, each part of "allOf", "$ref", "then" and "else". For "anyOf", "oneOf", "not"
// and "contains" one violation is told, at the value that they are about. A value that breaks
// several rules is told once for each.
//
// Result: kConforms when no rule is broken; then found is not called. kViolates when one is. With
// kUnusable and kExhausted the comparison ended early: the last call, within the limit, says why,
// and the violations told before it stand. A part of the schema that the comparison does not come
// to is not looked at.
// Where the library was built over a platform's own validator, which answers yes or no: at most one
// violation, of the whole instance, with neither rule nor keyword; kExhausted does not occur, and
// kUnusable only for a schema that is neither object nor boolean.
// A null instance is JSON's null; a null schema is unusable. A schema that does not name its draft
// is read as draft-07.
// Ownership: nothing is changed, kept or released.
// Threads: any number at once, about the same values too, as long as nobody changes them; found is
// called on the caller's thread and must not change them either. Takes 64 KiB of stack, at the
// depth of which found is called. No lock is held.
HEARTH_API Conformance findViolations(json_object* instance, json_object* schema,
                                      unsigned int limit, ViolationFound found,
                                      void* context) noexcept;

}  // namespace hearth

#endif
