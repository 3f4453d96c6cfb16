// The validator as the rest of this project sees it: one question, and for those who ask, what is
// wrong.
#ifndef HEARTH_SCHEMA_VALIDATE_H
#define HEARTH_SCHEMA_VALIDATE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "hearth/violations.h"

struct json_object;

namespace hearth::schema {

// The versions of the schema language, oldest first.
enum class Draft : uint8_t { k4, k6, k7, k2019, k2020 };

// A rule that an instance breaks, or the reason that ended the validation.
struct Violation {
  std::string instanceLocation;  // JSON pointer to the value at fault, "" for the whole instance
  std::string schemaLocation;    // JSON pointer to the rule; a built-in metaschema's URI before it
  std::string keyword;           // the rule's keyword, "" when the schema as a whole is at fault
  std::string member;            // the member that is missing or whose name is refused, or ""
  std::string message;           // for a person: "must be at most 64 characters long, but has 80"
};

// True when the instance conforms to the schema. Neither value is changed, kept or released; a null
// instance is JSON's null, and nothing conforms to a null schema. A schema that does not name its
// draft is read as `unnamed`. A schema that cannot be used, or that asks for more work, depth or
// memory than there is, is never conformed to. With a violation, the first one in the order of the
// walk is filled in when the answer is false and left alone when it is true. Any number of threads
// may ask at once, about the same values too, as long as nobody changes them. Never throws; needs
// 64 KiB of stack.
[[nodiscard]] bool validate(json_object* instance, json_object* schema,
                            Violation* violation = nullptr, Draft unnamed = Draft::k7) noexcept;

// Who hears of the violations, and of how many at most. `found` may take the violation, and answers
// false when it wants no further one; it may be null if the limit is 0.
struct Audience {
  bool (*found)(void* context, Violation& violation);
  void* context;
  std::size_t limit;
};

// The same question, with every violation told as hearth/violations.h has it.
Conformance tellViolations(json_object* instance, json_object* schema, Audience audience,
                           Draft unnamed = Draft::k7) noexcept;

}  // namespace hearth::schema

#endif
