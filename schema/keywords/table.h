// The table of keywords. A name that changed its meaning between drafts, such as "items" or
// "exclusiveMaximum", has a row for each meaning; no draft has two of them. lookup.cc makes the
// search from this table while compiling.
#ifndef HEARTH_SCHEMA_KEYWORDS_TABLE_H
#define HEARTH_SCHEMA_KEYWORDS_TABLE_H

#include <cstddef>
#include <iterator>

#include "schema/keywords/draft_sets.h"
#include "schema/keywords/keywords.h"

namespace hearth::schema {

// Sets of types, of an instance and of a keyword's own value. kSub is a schema.
constexpr uint8_t kBool = 1 << json_type_boolean, kObj = 1 << json_type_object;
constexpr uint8_t kArr = 1 << json_type_array, kStr = 1 << json_type_string;
constexpr uint8_t kNum = (1 << json_type_int) | (1 << json_type_double);
constexpr uint8_t kAny = 0x7f, kSub = kObj | kBool;

inline constexpr Keyword kKeywords[] = {
    {"$schema", Id::kSchema, kAll, kAny, kStr, Turn::kNever, Below::kNothing, kCore},
    {"id", Id::kId, k4, kAny, kAny, Turn::kNever, Below::kNothing, kCore},
    {"$id", Id::kId, kFrom6, kAny, kStr, Turn::kNever, Below::kNothing, kCore},
    {"$ref", Id::kRef, kAll, kAny, kStr, Turn::kRef, Below::kNothing, kCore},
    {"$recursiveRef", Id::kRecursiveRef, k19, kAny, kStr, Turn::kDynamicRef, Below::kNothing,
     kCore},
    {"$dynamicRef", Id::kDynamicRef, k20, kAny, kStr, Turn::kDynamicRef, Below::kNothing, kCore},
    {"definitions", Id::kDefinitions, kAll, kAny, kAny, Turn::kNever, Below::kMap, kCore},
    {"$defs", Id::kDefinitions, kFrom19, kAny, kAny, Turn::kNever, Below::kMap, kCore},

    {"type", Id::kType, kAll, kAny, kStr | kArr, Turn::kNow, Below::kNothing, kValidation},
    {"enum", Id::kEnum, kAll, kAny, kArr, Turn::kNow, Below::kNothing, kValidation},
    {"const", Id::kConst, kFrom6, kAny, kAny, Turn::kNow, Below::kNothing, kValidation},

    {"multipleOf", Id::kMultipleOf, kAll, kNum, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"maximum", Id::kMaximum, kAll, kNum, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"minimum", Id::kMinimum, kAll, kNum, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"exclusiveMaximum", Id::kExclusiveMaximum, k4, 0, kBool, Turn::kNow, Below::kNothing,
     kValidation},
    {"exclusiveMinimum", Id::kExclusiveMinimum, k4, 0, kBool, Turn::kNow, Below::kNothing,
     kValidation},
    {"exclusiveMaximum", Id::kExclusiveMaximum, kFrom6, kNum, kNum, Turn::kNow, Below::kNothing,
     kValidation},
    {"exclusiveMinimum", Id::kExclusiveMinimum, kFrom6, kNum, kNum, Turn::kNow, Below::kNothing,
     kValidation},

    {"maxLength", Id::kMaxLength, kAll, kStr, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"minLength", Id::kMinLength, kAll, kStr, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"pattern", Id::kPattern, kAll, kStr, kStr, Turn::kNow, Below::kNothing, kValidation},
    {"format", Id::kFormat, kAll, kStr, kStr, Turn::kNow, Below::kNothing, kFormatVocabulary},
    {"contentEncoding", Id::kContentEncoding, k7, kStr, kStr, Turn::kNow, Below::kNothing, kCore},
    {"contentMediaType", Id::kContentMediaType, k7, kStr, kStr, Turn::kNow, Below::kNothing, kCore},
    {"contentSchema", Id::kContentSchema, kFrom19, kAny, kSub, Turn::kNever, Below::kSchema, kCore},

    {"maxItems", Id::kMaxItems, kAll, kArr, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"minItems", Id::kMinItems, kAll, kArr, kNum, Turn::kNow, Below::kNothing, kValidation},
    {"uniqueItems", Id::kUniqueItems, kAll, kArr, kBool, Turn::kNow, Below::kNothing, kValidation},

    {"maxProperties", Id::kMaxProperties, kAll, kObj, kNum, Turn::kNow, Below::kNothing,
     kValidation},
    {"minProperties", Id::kMinProperties, kAll, kObj, kNum, Turn::kNow, Below::kNothing,
     kValidation},
    {"required", Id::kRequired, kAll, kObj, kArr, Turn::kNow, Below::kNothing, kValidation},
    {"dependentRequired", Id::kDependentRequired, kFrom19, kObj, kObj, Turn::kNow, Below::kNothing,
     kValidation},

    {"allOf", Id::kAllOf, kAll, kAny, kArr, Turn::kAllOf, Below::kList, kApplicator},
    {"anyOf", Id::kAnyOf, kAll, kAny, kArr, Turn::kAnyOf, Below::kList, kApplicator},
    {"oneOf", Id::kOneOf, kAll, kAny, kArr, Turn::kOneOf, Below::kList, kApplicator},
    {"not", Id::kNot, kAll, kAny, kSub, Turn::kNot, Below::kSchema, kApplicator},
    {"if", Id::kIf, kFrom7, kAny, kSub, Turn::kIf, Below::kSchema, kApplicator},
    {"then", Id::kThen, kFrom7, kAny, kSub, Turn::kThen, Below::kSchema, kApplicator},
    {"else", Id::kElse, kFrom7, kAny, kSub, Turn::kElse, Below::kSchema, kApplicator},

    {"properties", Id::kProperties, kAll, kObj, kObj, Turn::kProperties, Below::kMap, kApplicator},
    {"patternProperties", Id::kPatternProperties, kAll, kObj, kObj, Turn::kPatternProperties,
     Below::kMap, kApplicator},
    {"additionalProperties", Id::kAdditionalProperties, kAll, kObj, kSub,
     Turn::kAdditionalProperties, Below::kSchema, kApplicator},
    {"propertyNames", Id::kPropertyNames, kFrom6, kObj, kSub, Turn::kPropertyNames, Below::kSchema,
     kApplicator},
    {"dependencies", Id::kDependencies, kAll, kObj, kObj, Turn::kDependencies,
     Below::kMapOfSchemaOrNames, kApplicator},
    {"dependentSchemas", Id::kDependentSchemas, kFrom19, kObj, kObj, Turn::kDependentSchemas,
     Below::kMap, kApplicator},
    {"unevaluatedProperties", Id::kUnevaluatedProperties, kFrom19, kObj, kSub, Turn::kUnevaluated,
     Below::kSchema, kUnevaluated},

    {"items", Id::kItems, kTo19, kArr, kSub | kArr, Turn::kItems, Below::kSchemaOrList,
     kApplicator},
    {"items", Id::kItems, k20, kArr, kSub, Turn::kItems, Below::kSchema, kApplicator},
    {"prefixItems", Id::kPrefixItems, k20, kArr, kArr, Turn::kPrefixItems, Below::kList,
     kApplicator},
    {"additionalItems", Id::kAdditionalItems, kTo19, kArr, kSub, Turn::kAdditionalItems,
     Below::kSchema, kApplicator},
    {"contains", Id::kContains, kFrom6, kArr, kSub, Turn::kContains, Below::kSchema, kApplicator},
    {"minContains", Id::kMinContains, kFrom19, kArr, kNum, Turn::kMinContains, Below::kNothing,
     kValidation},
    {"maxContains", Id::kMaxContains, kFrom19, kArr, kNum, Turn::kMaxContains, Below::kNothing,
     kValidation},
    {"unevaluatedItems", Id::kUnevaluatedItems, kFrom19, kArr, kSub, Turn::kUnevaluated,
     Below::kSchema, kUnevaluated},
};
inline constexpr std::size_t kKeywordCount = std::size(kKeywords);

}  // namespace hearth::schema

#endif
