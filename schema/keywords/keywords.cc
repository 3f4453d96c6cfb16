#include "schema/keywords/keywords.h"

#include <cstddef>

namespace hearth {
namespace schema {
namespace {

// Drafts.
constexpr uint8_t k4 = 1, k6 = 2, k7 = 4, k19 = 8, k20 = 16;
constexpr uint8_t kAll = k4 | k6 | k7 | k19 | k20, kFrom6 = kAll & ~k4, kFrom7 = kFrom6 & ~k6;
constexpr uint8_t kFrom19 = k19 | k20, kTo19 = kAll & ~k20;

// Types of values.
constexpr uint8_t kBool = 1 << json_type_boolean, kObj = 1 << json_type_object;
constexpr uint8_t kArr = 1 << json_type_array, kStr = 1 << json_type_string;
constexpr uint8_t kNum = (1 << json_type_int) | (1 << json_type_double);
constexpr uint8_t kAny = 0x7f, kSub = kObj | kBool;

constexpr Keyword kKeywords[] = {
    {"$schema", Id::kSchema, kAll, kAny, kStr, Slot::kNever, Below::kNothing, kCore},
    {"id", Id::kId, k4, kAny, kAny, Slot::kNever, Below::kNothing, kCore},
    {"$id", Id::kId, kFrom6, kAny, kStr, Slot::kNever, Below::kNothing, kCore},
    {"$ref", Id::kRef, kAll, kAny, kStr, Slot::kRef, Below::kNothing, kCore},
    {"$recursiveRef", Id::kRecursiveRef, k19, kAny, kStr, Slot::kDynamicRef, Below::kNothing,
     kCore},
    {"$dynamicRef", Id::kDynamicRef, k20, kAny, kStr, Slot::kDynamicRef, Below::kNothing, kCore},
    {"definitions", Id::kDefinitions, kAll, kAny, kAny, Slot::kNever, Below::kMap, kCore},
    {"$defs", Id::kDefinitions, kFrom19, kAny, kAny, Slot::kNever, Below::kMap, kCore},

    {"type", Id::kType, kAll, kAny, kStr | kArr, Slot::kNow, Below::kNothing, kValidation},
    {"enum", Id::kEnum, kAll, kAny, kArr, Slot::kNow, Below::kNothing, kValidation},
    {"const", Id::kConst, kFrom6, kAny, kAny, Slot::kNow, Below::kNothing, kValidation},

    {"multipleOf", Id::kMultipleOf, kAll, kNum, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"maximum", Id::kMaximum, kAll, kNum, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"minimum", Id::kMinimum, kAll, kNum, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"exclusiveMaximum", Id::kExclusiveMaximum, k4, 0, kBool, Slot::kNow, Below::kNothing,
     kValidation},
    {"exclusiveMinimum", Id::kExclusiveMinimum, k4, 0, kBool, Slot::kNow, Below::kNothing,
     kValidation},
    {"exclusiveMaximum", Id::kExclusiveMaximum, kFrom6, kNum, kNum, Slot::kNow, Below::kNothing,
     kValidation},
    {"exclusiveMinimum", Id::kExclusiveMinimum, kFrom6, kNum, kNum, Slot::kNow, Below::kNothing,
     kValidation},

    {"maxLength", Id::kMaxLength, kAll, kStr, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"minLength", Id::kMinLength, kAll, kStr, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"pattern", Id::kPattern, kAll, kStr, kStr, Slot::kNow, Below::kNothing, kValidation},
    {"format", Id::kFormat, kAll, kStr, kStr, Slot::kNow, Below::kNothing, kFormatVocabulary},
    {"contentEncoding", Id::kContentEncoding, k7, kStr, kStr, Slot::kNow, Below::kNothing, kCore},
    {"contentMediaType", Id::kContentMediaType, k7, kStr, kStr, Slot::kNow, Below::kNothing, kCore},
    {"contentSchema", Id::kContentSchema, kFrom19, kAny, kSub, Slot::kNever, Below::kSchema, kCore},

    {"maxItems", Id::kMaxItems, kAll, kArr, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"minItems", Id::kMinItems, kAll, kArr, kNum, Slot::kNow, Below::kNothing, kValidation},
    {"uniqueItems", Id::kUniqueItems, kAll, kArr, kBool, Slot::kNow, Below::kNothing, kValidation},

    {"maxProperties", Id::kMaxProperties, kAll, kObj, kNum, Slot::kNow, Below::kNothing,
     kValidation},
    {"minProperties", Id::kMinProperties, kAll, kObj, kNum, Slot::kNow, Below::kNothing,
     kValidation},
    {"required", Id::kRequired, kAll, kObj, kArr, Slot::kNow, Below::kNothing, kValidation},
    {"dependentRequired", Id::kDependentRequired, kFrom19, kObj, kObj, Slot::kNow, Below::kNothing,
     kValidation},

    {"allOf", Id::kAllOf, kAll, kAny, kArr, Slot::kAllOf, Below::kList, kApplicator},
    {"anyOf", Id::kAnyOf, kAll, kAny, kArr, Slot::kAnyOf, Below::kList, kApplicator},
    {"oneOf", Id::kOneOf, kAll, kAny, kArr, Slot::kOneOf, Below::kList, kApplicator},
    {"not", Id::kNot, kAll, kAny, kSub, Slot::kNot, Below::kSchema, kApplicator},
    {"if", Id::kIf, kFrom7, kAny, kSub, Slot::kIf, Below::kSchema, kApplicator},
    {"then", Id::kThen, kFrom7, kAny, kSub, Slot::kThen, Below::kSchema, kApplicator},
    {"else", Id::kElse, kFrom7, kAny, kSub, Slot::kElse, Below::kSchema, kApplicator},

    {"properties", Id::kProperties, kAll, kObj, kObj, Slot::kProperties, Below::kMap, kApplicator},
    {"patternProperties", Id::kPatternProperties, kAll, kObj, kObj, Slot::kPatternProperties,
     Below::kMap, kApplicator},
    {"additionalProperties", Id::kAdditionalProperties, kAll, kObj, kSub,
     Slot::kAdditionalProperties, Below::kSchema, kApplicator},
    {"propertyNames", Id::kPropertyNames, kFrom6, kObj, kSub, Slot::kPropertyNames, Below::kSchema,
     kApplicator},
    {"dependencies", Id::kDependencies, kAll, kObj, kObj, Slot::kDependencies,
     Below::kMapOfSchemaOrNames, kApplicator},
    {"dependentSchemas", Id::kDependentSchemas, kFrom19, kObj, kObj, Slot::kDependentSchemas,
     Below::kMap, kApplicator},
    {"unevaluatedProperties", Id::kUnevaluatedProperties, kFrom19, kObj, kSub, Slot::kUnevaluated,
     Below::kSchema, kUnevaluated},

    {"items", Id::kItems, kTo19, kArr, kSub | kArr, Slot::kItems, Below::kSchemaOrList,
     kApplicator},
    {"items", Id::kItems, k20, kArr, kSub, Slot::kItems, Below::kSchema, kApplicator},
    {"prefixItems", Id::kPrefixItems, k20, kArr, kArr, Slot::kPrefixItems, Below::kList,
     kApplicator},
    {"additionalItems", Id::kAdditionalItems, kTo19, kArr, kSub, Slot::kAdditionalItems,
     Below::kSchema, kApplicator},
    {"contains", Id::kContains, kFrom6, kArr, kSub, Slot::kContains, Below::kSchema, kApplicator},
    {"minContains", Id::kMinContains, kFrom19, kArr, kNum, Slot::kMinContains, Below::kNothing,
     kValidation},
    {"maxContains", Id::kMaxContains, kFrom19, kArr, kNum, Slot::kMaxContains, Below::kNothing,
     kValidation},
    {"unevaluatedItems", Id::kUnevaluatedItems, kFrom19, kArr, kSub, Slot::kUnevaluated,
     Below::kSchema, kUnevaluated},
};
constexpr size_t kKeywordCount = sizeof kKeywords / sizeof kKeywords[0];

// A hash table over the first four characters, made while compiling: they tell most names that are
// no keywords. It has no collisions; keywords that begin alike form a list. The next four
// characters decide nearly all of the rest.
constexpr size_t kBuckets = 128;

constexpr uint32_t byteAt(const char* name, unsigned i) {
  return static_cast<uint32_t>(static_cast<unsigned char>(name[i])) << 8 * i;
}

constexpr uint32_t headOf(const char* name) {
  if (!name[0] || !name[1]) {
    return byteAt(name, 0);
  }
  const uint32_t two = byteAt(name, 0) | byteAt(name, 1);
  return !name[2] ? two : two | byteAt(name, 2) | byteAt(name, 3);
}

// Whether the name may go on behind these four characters.
constexpr bool isWhole(uint32_t head) {
  return head >> 24 != 0;
}

// The factor was found by trying.
constexpr size_t bucketOf(uint32_t head) {
  return head * 2860054109U >> 25;
}

struct Table {
  uint32_t heads[kBuckets];
  uint8_t first[kBuckets];  // an index into the keywords
  uint32_t seconds[kKeywordCount];
  uint8_t next[kKeywordCount];  // the next one that begins alike; kKeywordCount behind the last
  bool collides;
};

constexpr uint32_t secondOf(const char* name, uint32_t head) {
  return isWhole(head) ? headOf(name + 4) : 0;
}

// From the last to the first, so that the lists keep the order of the keywords.
constexpr Table makeTable() {
  Table table{};
  for (size_t i = kKeywordCount; i-- > 0;) {
    const uint32_t head = headOf(kKeywords[i].name);
    const size_t bucket = bucketOf(head);
    const bool taken = table.heads[bucket] != 0;
    table.collides = table.collides || (taken && table.heads[bucket] != head);
    table.next[i] = taken ? table.first[bucket] : static_cast<uint8_t>(kKeywordCount);
    table.heads[bucket] = head;
    table.first[bucket] = static_cast<uint8_t>(i);
    table.seconds[i] = secondOf(kKeywords[i].name, head);
  }
  return table;
}
constexpr Table kTable = makeTable();
static_assert(!kTable.collides, "find another factor");

// What strcmp says, without the price of a call for the few characters that are left.
inline bool sameText(const char* left, const char* right) {
  for (; *left == *right; ++left, ++right) {
    if (!*left) {
      return true;
    }
  }
  return false;
}

// Whether the name, whose first four characters are the keyword's, is the keyword.
inline bool isKeyword(const char* name, uint32_t second, unsigned draft, size_t i) {
  return kTable.seconds[i] == second && (kKeywords[i].drafts & draft) &&
         (!isWhole(second) || sameText(kKeywords[i].name + 8, name + 8));
}

// Apart, so that what the first look decides does not pay for its registers.
[[gnu::noinline]] const Keyword* findInList(const char* name, uint32_t second, unsigned draft,
                                            size_t i) {
  while (i < kKeywordCount && !isKeyword(name, second, draft, i)) {
    i = kTable.next[i];
  }
  return i < kKeywordCount ? &kKeywords[i] : nullptr;
}

}  // namespace

const Keyword* findKeyword(const char* name, Draft draft) {
  const uint32_t head = headOf(name);
  const size_t bucket = bucketOf(head);
  if (kTable.heads[bucket] != head) {
    return nullptr;
  }
  const uint32_t second = secondOf(name, head);
  const size_t i = kTable.first[bucket];
  return isKeyword(name, second, draftBit(draft), i)
             ? &kKeywords[i]
             : findInList(name, second, draftBit(draft), kTable.next[i]);
}

const char* nameOf(Id id) {
  for (const Keyword& keyword : kKeywords) {
    if (keyword.id == id) {
      return keyword.name;
    }
  }
  return "";
}

}  // namespace schema
}  // namespace hearth
