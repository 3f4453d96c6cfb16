// The built-in metaschemas, written as JSON when a reference leads to one.
//
// A metaschema says for each keyword which values it may have, and there are few kinds of values.
// So the five metaschemas are two tables: which keyword takes which kind of value, by drafts and by
// the part that it belongs to, and what each kind is as a schema. What the drafts' own texts say
// beyond that, such as titles, is left out: it constrains nothing.
//
// A part is a vocabulary. Up to draft-07 a metaschema is one schema with the keywords of all parts;
// later ones embed a schema for each part in "$defs" and are their "allOf".
#include "schema/resource/metaschemas.h"

#include <json-c/json.h>

#include <cstring>
#include <string>
#include <string_view>

#include "schema/keywords/draft_sets.h"
#include "schema/text.h"

namespace hearth::schema {
namespace {

enum class Part : uint8_t {
  kCore,
  kApplicator,
  kUnevaluated,
  kValidation,
  kMetaData,
  kFormat,
  kContent,
  kWhole,  // keywords of the metaschema itself, in no part of it
  kApplicatorDefinitions,
  kValidationDefinitions,
  kNone,
};

// Sets of parts, a bit for each.
constexpr unsigned setOf(Part part) {
  return 1U << static_cast<unsigned>(part);
}
constexpr unsigned kAllKeywords = setOf(Part::kApplicatorDefinitions) - 1;
constexpr unsigned kAllDefinitions =
    setOf(Part::kApplicatorDefinitions) | setOf(Part::kValidationDefinitions);

// Kinds of values that keywords take.
enum class Kind : uint8_t {
  kNone,  // where a kind has no other one inside
  kAnything,
  kBoolean,
  kNumber,
  kPositiveNumber,
  kCount,
  kText,
  kUri,
  kUriReference,
  kIdentifier,
  kAnchor,
  kRegex,
  kTypeName,
  kTypes,
  kNameList,
  kList,
  kSet,
  kSchema,
  kBooleanOrSchema,
  kSchemaList,
  kSchemaOrList,
  kSchemaMap,
  kSchemaMapByPattern,
  kNameListMap,
  kDependencyMap,
  kVocabularyMap,
};

// Keywords that take one kind of value, with blanks between them.
struct Row {
  uint8_t drafts;
  Part part;
  Kind kind;
  const char* names;
};

constexpr Row kRows[] = {
    {k4, Part::kCore, Kind::kText, "id $schema"},
    {k6 | k7, Part::kCore, Kind::kUriReference, "$id $ref"},
    {kFrom6, Part::kCore, Kind::kUri, "$schema"},
    {kFrom7, Part::kCore, Kind::kText, "$comment"},
    {kFrom19, Part::kCore, Kind::kIdentifier, "$id"},
    {kFrom19, Part::kCore, Kind::kUriReference, "$ref"},
    {kFrom19, Part::kCore, Kind::kAnchor, "$anchor"},
    {kFrom19, Part::kCore, Kind::kVocabularyMap, "$vocabulary"},
    {kFrom19, Part::kCore, Kind::kSchemaMap, "$defs"},
    {k19, Part::kCore, Kind::kUriReference, "$recursiveRef"},
    {k19, Part::kCore, Kind::kBoolean, "$recursiveAnchor"},
    {k20, Part::kCore, Kind::kUriReference, "$dynamicRef"},
    {k20, Part::kCore, Kind::kAnchor, "$dynamicAnchor"},

    {kAll, Part::kApplicatorDefinitions, Kind::kSchemaList, "schemaArray"},
    {kAll, Part::kApplicator, Kind::kSchemaMap, "properties"},
    {kAll, Part::kApplicator, Kind::kSchemaList, "allOf anyOf oneOf"},
    {kAll, Part::kApplicator, Kind::kSchema, "not"},
    {k4, Part::kApplicator, Kind::kBooleanOrSchema, "additionalItems additionalProperties"},
    {kFrom6, Part::kApplicator, Kind::kSchema, "additionalProperties contains propertyNames"},
    {kFrom7, Part::kApplicator, Kind::kSchema, "if then else"},
    {kTo19, Part::kApplicator, Kind::kSchemaOrList, "items"},
    {kTo19 & ~k4, Part::kApplicator, Kind::kSchema, "additionalItems"},
    {k20, Part::kApplicator, Kind::kSchema, "items"},
    {k20, Part::kApplicator, Kind::kSchemaList, "prefixItems"},
    {k4 | k6, Part::kApplicator, Kind::kSchemaMap, "patternProperties"},
    {kFrom7, Part::kApplicator, Kind::kSchemaMapByPattern, "patternProperties"},
    {kFrom19, Part::kApplicator, Kind::kSchemaMap, "dependentSchemas"},
    {k19, Part::kApplicator, Kind::kSchema, "unevaluatedItems unevaluatedProperties"},
    {k20, Part::kUnevaluated, Kind::kSchema, "unevaluatedItems unevaluatedProperties"},

    {k4, Part::kValidationDefinitions, Kind::kCount, "positiveInteger positiveIntegerDefault0"},
    {kFrom6, Part::kValidationDefinitions, Kind::kCount,
     "nonNegativeInteger nonNegativeIntegerDefault0"},
    {kAll, Part::kValidationDefinitions, Kind::kTypeName, "simpleTypes"},
    {kAll, Part::kValidationDefinitions, Kind::kNameList, "stringArray"},
    {kAll, Part::kValidation, Kind::kPositiveNumber, "multipleOf"},
    {kAll, Part::kValidation, Kind::kNumber, "maximum minimum"},
    {kAll, Part::kValidation, Kind::kCount,
     "maxLength minLength maxItems minItems maxProperties minProperties"},
    {kAll, Part::kValidation, Kind::kRegex, "pattern"},
    {kAll, Part::kValidation, Kind::kBoolean, "uniqueItems"},
    {kAll, Part::kValidation, Kind::kNameList, "required"},
    {kAll, Part::kValidation, Kind::kTypes, "type"},
    {k4, Part::kValidation, Kind::kBoolean, "exclusiveMaximum exclusiveMinimum"},
    {kFrom6, Part::kValidation, Kind::kNumber, "exclusiveMaximum exclusiveMinimum"},
    {kFrom6, Part::kValidation, Kind::kAnything, "const"},
    {k4 | k6, Part::kValidation, Kind::kSet, "enum"},
    {kFrom7, Part::kValidation, Kind::kList, "enum"},
    {kFrom19, Part::kValidation, Kind::kCount, "minContains maxContains"},
    {kFrom19, Part::kValidation, Kind::kNameListMap, "dependentRequired"},

    {kAll, Part::kMetaData, Kind::kText, "title description"},
    {kAll, Part::kMetaData, Kind::kAnything, "default"},
    {kFrom6, Part::kMetaData, Kind::kList, "examples"},
    {kFrom7, Part::kMetaData, Kind::kBoolean, "readOnly writeOnly"},
    {kFrom19, Part::kMetaData, Kind::kBoolean, "deprecated"},
    {kAll, Part::kFormat, Kind::kText, "format"},
    {kFrom7, Part::kContent, Kind::kText, "contentMediaType contentEncoding"},
    {kFrom19, Part::kContent, Kind::kSchema, "contentSchema"},
    {kAll, Part::kWhole, Kind::kSchemaMap, "definitions"},
    {kAll, Part::kWhole, Kind::kDependencyMap, "dependencies"},
};

// A kind as a schema; each '%' in it stands for the next kind of `inner`. The first row of a kind
// that fits the draft counts.
struct KindRow {
  Kind kind;
  uint8_t drafts;
  Kind inner[2];
  const char* schema;
};

constexpr KindRow kKinds[] = {
    {Kind::kAnything, kAll, {}, "{}"},
    {Kind::kBoolean, kAll, {}, R"({"type":"boolean"})"},
    {Kind::kNumber, kAll, {}, R"({"type":"number"})"},
    {Kind::kPositiveNumber, k4, {}, R"({"type":"number","minimum":0,"exclusiveMinimum":true})"},
    {Kind::kPositiveNumber, kFrom6, {}, R"({"type":"number","exclusiveMinimum":0})"},
    {Kind::kCount, kAll, {}, R"({"type":"integer","minimum":0})"},
    {Kind::kText, kAll, {}, R"({"type":"string"})"},
    {Kind::kUri, kAll, {}, R"({"type":"string","format":"uri"})"},
    {Kind::kUriReference, kAll, {}, R"({"type":"string","format":"uri-reference"})"},
    {Kind::kIdentifier,
     kAll,
     {},
     R"({"type":"string","format":"uri-reference","pattern":"^[^#]*#?$"})"},
    {Kind::kAnchor, k19, {}, R"({"type":"string","pattern":"^[A-Za-z][-A-Za-z0-9.:_]*$"})"},
    {Kind::kAnchor, k20, {}, R"({"type":"string","pattern":"^[A-Za-z_][-A-Za-z0-9._]*$"})"},
    {Kind::kRegex, kAll, {}, R"({"type":"string","format":"regex"})"},
    {Kind::kTypeName,
     kAll,
     {},
     R"({"enum":["array","boolean","integer","null","number","object","string"]})"},
    {Kind::kTypes,
     kAll,
     {Kind::kTypeName, Kind::kTypeName},
     R"({"anyOf":[%,{"type":"array","items":%,"minItems":1,"uniqueItems":true}]})"},
    {Kind::kNameList,
     k4,
     {Kind::kText},
     R"({"type":"array","minItems":1,"items":%,"uniqueItems":true})"},
    {Kind::kNameList, kFrom6, {Kind::kText}, R"({"type":"array","items":%,"uniqueItems":true})"},
    {Kind::kList, kAll, {}, R"({"type":"array"})"},
    {Kind::kSet, kAll, {}, R"({"type":"array","minItems":1,"uniqueItems":true})"},

    {Kind::kSchema, kTo7, {}, R"({"$ref":"#"})"},
    {Kind::kSchema, k19, {}, R"({"$recursiveRef":"#"})"},
    {Kind::kSchema, k20, {}, R"({"$dynamicRef":"#meta"})"},
    {Kind::kBooleanOrSchema, kAll, {Kind::kBoolean, Kind::kSchema}, R"({"anyOf":[%,%]})"},
    {Kind::kSchemaList, kAll, {Kind::kSchema}, R"({"type":"array","minItems":1,"items":%})"},
    {Kind::kSchemaOrList, kAll, {Kind::kSchema, Kind::kSchemaList}, R"({"anyOf":[%,%]})"},
    {Kind::kSchemaMap, kAll, {Kind::kSchema}, R"({"type":"object","additionalProperties":%})"},
    {Kind::kSchemaMapByPattern,
     kAll,
     {Kind::kSchema},
     R"({"type":"object","additionalProperties":%,"propertyNames":{"format":"regex"}})"},
    {Kind::kNameListMap, kAll, {Kind::kNameList}, R"({"type":"object","additionalProperties":%})"},
    {Kind::kDependencyMap,
     kAll,
     {Kind::kSchema, Kind::kNameList},
     R"({"type":"object","additionalProperties":{"anyOf":[%,%]}})"},
    {Kind::kVocabularyMap,
     kAll,
     {Kind::kUri, Kind::kBoolean},
     R"({"type":"object","propertyNames":%,"additionalProperties":%})"},
};

// The parts that are schemas of their own, under meta/ in the metaschema's URI.
struct PartRow {
  uint8_t drafts;
  Part keywords;
  Part definitions;
  char name[18];
};

constexpr PartRow kParts[] = {
    {kFrom19, Part::kCore, Part::kNone, "core"},
    {kFrom19, Part::kApplicator, Part::kApplicatorDefinitions, "applicator"},
    {k20, Part::kUnevaluated, Part::kNone, "unevaluated"},
    {kFrom19, Part::kValidation, Part::kValidationDefinitions, "validation"},
    {kFrom19, Part::kMetaData, Part::kNone, "meta-data"},
    {k19, Part::kFormat, Part::kNone, "format"},
    {k20, Part::kFormat, Part::kNone, "format-annotation"},
    {kFrom19, Part::kContent, Part::kNone, "content"},
};

struct Name {
  char uri[32];  // without its scheme; a prefix where the metaschema has parts
  Draft draft;
};

constexpr Name kNames[] = {
    {"json-schema.org/draft-04/schema", Draft::k4},
    {"json-schema.org/draft-06/schema", Draft::k6},
    {"json-schema.org/draft-07/schema", Draft::k7},
    {"json-schema.org/draft/2019-09/", Draft::k2019},
    {"json-schema.org/draft/2020-12/", Draft::k2020},
};

// Writes one metaschema. Every member and element is written with a comma behind it; whoever closes
// the container around them takes the last one away.
class Writer {
 public:
  explicit Writer(Draft draft) : draft_(draft), bit_(draftBit(draft)) {}

  std::string text() {
    const bool hasParts = draft_ >= Draft::k2019;
    out_ = "{";
    addHead("", hasParts ? "schema" : "");
    if (hasParts) {
      addAllParts();
      addTable("properties", setOf(Part::kWhole));
    } else {
      addTable("definitions", kAllDefinitions);
      addTable("properties", kAllKeywords);
      out_ += draft_ == Draft::k4 ? R"("dependencies":{"exclusiveMaximum":["maximum"],)"
                                    R"("exclusiveMinimum":["minimum"]},)"
                                  : "";
    }
    return close();
  }

 private:
  // Identifier, dialect and type, as every metaschema and part of one begins.
  void addHead(std::string_view folder, std::string_view name) {
    const bool hasParts = draft_ >= Draft::k2019;
    const char* const scheme = hasParts ? "https://" : "http://";
    const char* const uri = kNames[static_cast<std::size_t>(draft_)].uri;
    append({R"("$schema":")", scheme, uri, hasParts ? "schema" : "#", R"(",")",
            draft_ == Draft::k4 ? "id" : "$id", R"(":")", scheme, uri, hasParts ? folder : "#",
            name, R"(","type":)", draft_ == Draft::k4 ? R"("object",)" : R"(["object","boolean"],)",
            draft_ == Draft::k2019   ? R"("$recursiveAnchor":true,)"
            : draft_ == Draft::k2020 ? R"("$dynamicAnchor":"meta",)"
                                     : ""},
           out_);
  }

  // The parts stand in "$defs", and the whole is all of them.
  void addAllParts() {
    out_ += R"("allOf":[)";
    for (const PartRow& part : kParts) {
      if (part.drafts & bit_) {
        append({R"({"$ref":"meta/)", part.name, R"("},)"}, out_);
      }
    }
    out_.back() = ']';
    out_ += R"(,"$defs":{)";
    for (const PartRow& part : kParts) {
      if (part.drafts & bit_) {
        append({"\"", part.name, "\":{"}, out_);
        addHead("meta/", part.name);
        addTable("properties", setOf(part.keywords));
        addTable("$defs", setOf(part.definitions));
        close() += ',';
      }
    }
    close() += ',';
  }

  // An object with the names of these parts, each with its kind.
  void addTable(const char* name, unsigned parts) {
    append({"\"", name, "\":{"}, out_);
    for (const Row& row : kRows) {
      if ((row.drafts & bit_) && (setOf(row.part) & parts)) {
        addNames(row);
      }
    }
    close() += ',';
  }

  void addNames(const Row& row) {
    for (std::string_view rest = row.names; !rest.empty();) {
      const std::string_view name = rest.substr(0, rest.find(' '));
      append({"\"", name, "\":"}, out_);
      addKind(row.kind);
      out_ += ',';
      rest.remove_prefix(name.size() == rest.size() ? name.size() : name.size() + 1);
    }
  }

  // Goes no deeper than kinds stand in each other: three levels.
  void addKind(Kind kind) {
    for (const KindRow& row : kKinds) {
      if (row.kind == kind && (row.drafts & bit_)) {
        const Kind* inner = row.inner;
        for (const char* at = row.schema; *at; ++at) {
          if (*at == '%') {
            addKind(*inner++);
          } else {
            out_ += *at;
          }
        }
        return;
      }
    }
  }

  // Ends an object, whose last member has left a comma.
  std::string& close() {
    if (out_.back() == ',') {
      out_.back() = '}';
    } else {
      out_ += '}';
    }
    return out_;
  }

  Draft draft_;
  unsigned bit_;
  std::string out_;
};

}  // namespace

bool isMetaschema(std::string_view uri, Draft& draft) {
  const std::size_t scheme = uri.find("://");
  if (scheme == std::string_view::npos) {
    return false;
  }
  uri.remove_prefix(scheme + 3);
  if (!uri.empty() && uri.back() == '#') {
    uri.remove_suffix(1);
  }
  for (const Name& name : kNames) {
    const std::size_t size = strlen(name.uri);
    if (uri.substr(0, size) == name.uri && (name.draft >= Draft::k2019 || uri.size() == size)) {
      draft = name.draft;
      return true;
    }
  }
  return false;
}

json_object* makeMetaschema(Draft draft) {
  return json_tokener_parse(Writer(draft).text().c_str());
}

}  // namespace hearth::schema
