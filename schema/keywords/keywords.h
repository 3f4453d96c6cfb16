// The keywords of the schema language. For each one a table (table.h) says in which drafts it
// exists, to which values it applies, what its own value may be, where schemas stand below it, and
// when the walk turns to it. The walk and the search for identifiers both read this one table.
#ifndef HEARTH_SCHEMA_KEYWORDS_KEYWORDS_H
#define HEARTH_SCHEMA_KEYWORDS_KEYWORDS_H

#include <json-c/json.h>

#include <cstdint>

#include "schema/validate.h"

namespace hearth::schema {

enum class Id : uint8_t {
  kNone,
  kSchema,
  kId,
  kRef,
  kDynamicRef,
  kRecursiveRef,
  kDefinitions,
  kType,
  kEnum,
  kConst,
  kMultipleOf,
  kMaximum,
  kExclusiveMaximum,
  kMinimum,
  kExclusiveMinimum,
  kMaxLength,
  kMinLength,
  kPattern,
  kFormat,
  kContentEncoding,
  kContentMediaType,
  kContentSchema,
  kMaxItems,
  kMinItems,
  kUniqueItems,
  kMaxProperties,
  kMinProperties,
  kRequired,
  kDependentRequired,
  kAllOf,
  kAnyOf,
  kOneOf,
  kNot,
  kIf,
  kThen,
  kElse,
  kProperties,
  kPatternProperties,
  kAdditionalProperties,
  kPropertyNames,
  kDependencies,
  kDependentSchemas,
  kUnevaluatedProperties,
  kItems,
  kPrefixItems,
  kAdditionalItems,
  kContains,
  kMinContains,
  kMaxContains,
  kUnevaluatedItems,
};

// When the walk turns to a keyword: at once while it reads the schema's members, or later, when it
// has seen them all. What waits is kept in one slot each; the pending of objects and of arrays
// overlap, an instance being one or the other.
enum class Turn : uint8_t {
  kRef,
  kDynamicRef,
  kAllOf,
  kAnyOf,
  kOneOf,
  kNot,
  kIf,
  kThen,
  kElse,
  kUnevaluated,
  kProperties,
  kPatternProperties,
  kAdditionalProperties,
  kPropertyNames,
  kDependencies,
  kDependentSchemas,
  kItems = kProperties,
  kPrefixItems,
  kAdditionalItems,
  kContains,
  kMinContains,
  kMaxContains,
  kCount = kDependentSchemas + 1,
  kNow = kCount,  // checked at once
  kNever,         // says something about the schema, nothing about the instance
};

// Where schemas stand in a keyword's value.
enum class Below : uint8_t { kNothing, kSchema, kList, kMap, kSchemaOrList, kMapOfSchemaOrNames };

// The groups of keywords that 2019-09 and later can switch off one by one.
enum Vocabulary : uint8_t {
  kCore = 0,
  kApplicator = 1,
  kUnevaluated = 2,
  kValidation = 4,
  kFormatVocabulary = 8,
  kFormatAssertion = 16,
  kAllVocabularies = kApplicator | kUnevaluated | kValidation | kFormatVocabulary,
};

struct Keyword {
  char name[22];
  Id id;
  uint8_t drafts;      // a bit per Draft, see draft_sets.h
  uint8_t appliesTo;   // a bit per json_type of the instance
  uint8_t valueTypes;  // a bit per json_type of the keyword's value
  Turn turn;
  Below below;
  uint8_t vocabulary;
};

inline unsigned typeBit(json_object* value) {
  return 1U << json_object_get_type(value);
}

// The keyword of that name in that draft, or null.
const Keyword* findKeyword(const char* name, Draft draft);

// The name of a keyword, for people.
const char* nameOf(Id id);

}  // namespace hearth::schema

#endif
