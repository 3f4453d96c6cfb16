// A metaschema says for each keyword which values it may have, and there are few kinds of values.
// So the five metaschemas are one table, "keyword=kind" for the drafts and the part (the
// vocabulary) that it belongs to, and are written out as JSON when a reference leads to one. What
// they say beyond that, such as titles, is left out: it constrains nothing.
#include "schema/resource/metaschemas.h"

#include <json-c/json.h>

#include <cstring>
#include <string>
#include <string_view>

#include "schema/text.h"

namespace hearth {
namespace schema {
namespace {

constexpr uint8_t k4 = 1, k6 = 2, k7 = 4, k19 = 8, k20 = 16;
constexpr uint8_t kAll = 31, kFrom6 = k6 | k7 | k19 | k20, kFrom7 = k7 | k19 | k20;
constexpr uint8_t kTo7 = k4 | k6 | k7, kFrom19 = k19 | k20;

// A part of a metaschema by a letter: Core, Applicator, Unevaluated, Validation, Meta-data, Format,
// cOntent, and Root for what no part holds. A capital means the part's definitions.
struct Row {
  uint8_t drafts;
  char part;
  const char* keywords;
};

constexpr Row kRows[] = {
    {k4, 'c', "id=T,$schema=T,"},
    {k6 | k7, 'c', "$id=R,$schema=U,$ref=R,"},
    {kFrom7, 'c', "$comment=T,"},
    {kFrom19, 'c', "$id=W,$schema=U,$ref=R,$anchor=K,$vocabulary=V,$defs=M,"},
    {k19, 'c', "$recursiveRef=R,$recursiveAnchor=B,"},
    {k20, 'c', "$dynamicRef=R,$dynamicAnchor=K,"},
    {kAll, 'A', "schemaArray=A,"},
    {kAll, 'a', "properties=M,allOf=A,anyOf=A,oneOf=A,not=S,"},
    {k4, 'a', "additionalItems=H,additionalProperties=H,"},
    {kFrom6, 'a', "additionalProperties=S,contains=S,propertyNames=S,"},
    {kFrom7, 'a', "if=S,then=S,else=S,"},
    {kTo7 | k19, 'a', "items=I,"},
    {k6 | k7 | k19, 'a', "additionalItems=S,"},
    {k20, 'a', "items=S,prefixItems=A,"},
    {k4 | k6, 'a', "patternProperties=M,"},
    {kFrom7, 'a', "patternProperties=F,"},
    {kFrom19, 'a', "dependentSchemas=M,"},
    {k19, 'a', "unevaluatedItems=S,unevaluatedProperties=S,"},
    {k20, 'u', "unevaluatedItems=S,unevaluatedProperties=S,"},
    {k4, 'V', "positiveInteger=L,positiveIntegerDefault0=L,"},
    {kFrom6, 'V', "nonNegativeInteger=L,nonNegativeIntegerDefault0=L,"},
    {kAll, 'V', "simpleTypes=Y,stringArray=X,"},
    {kAll, 'v',
     "multipleOf=P,maximum=N,minimum=N,maxLength=L,minLength=L,pattern=G,maxItems=L,minItems=L,"
     "uniqueItems=B,maxProperties=L,minProperties=L,required=X,type=C,"},
    {k4, 'v', "exclusiveMaximum=B,exclusiveMinimum=B,"},
    {kFrom6, 'v', "exclusiveMaximum=N,exclusiveMinimum=N,const=J,"},
    {k4 | k6, 'v', "enum=E,"},
    {kFrom7, 'v', "enum=Z,"},
    {kFrom19, 'v', "minContains=L,maxContains=L,dependentRequired=Q,"},
    {kAll, 'm', "title=T,description=T,default=J,"},
    {kFrom6, 'm', "examples=Z,"},
    {kFrom7, 'm', "readOnly=B,writeOnly=B,"},
    {kFrom19, 'm', "deprecated=B,"},
    {kAll, 'f', "format=T,"},
    {kFrom7, 'o', "contentMediaType=T,contentEncoding=T,"},
    {kFrom19, 'o', "contentSchema=S,"},
    {kAll, 'r', "definitions=M,dependencies=D,"},
};

// What each kind is, %K standing for the kind K. The first row that fits the draft counts.
struct Kind {
  char letter;
  uint8_t drafts;
  const char* schema;
};

constexpr Kind kKinds[] = {
    {'S', kTo7, R"({"$ref":"#"})"},
    {'S', k19, R"({"$recursiveRef":"#"})"},
    {'S', k20, R"({"$dynamicRef":"#meta"})"},
    {'A', kAll, R"({"type":"array","minItems":1,"items":%S})"},
    {'M', kAll, R"({"type":"object","additionalProperties":%S})"},
    {'F', kAll,
     R"({"type":"object","additionalProperties":%S,"propertyNames":{"format":"regex"}})"},
    {'I', kAll, R"({"anyOf":[%S,%A]})"},
    {'D', kAll, R"({"type":"object","additionalProperties":{"anyOf":[%S,%X]}})"},
    {'Q', kAll, R"({"type":"object","additionalProperties":%X})"},
    {'H', kAll, R"({"anyOf":[%B,%S]})"},
    {'N', kAll, R"({"type":"number"})"},
    {'P', k4, R"({"type":"number","minimum":0,"exclusiveMinimum":true})"},
    {'P', kFrom6, R"({"type":"number","exclusiveMinimum":0})"},
    {'L', kAll, R"({"type":"integer","minimum":0})"},
    {'B', kAll, R"({"type":"boolean"})"},
    {'T', kAll, R"({"type":"string"})"},
    {'U', kAll, R"({"type":"string","format":"uri"})"},
    {'R', kAll, R"({"type":"string","format":"uri-reference"})"},
    {'W', kAll, R"({"type":"string","format":"uri-reference","pattern":"^[^#]*#?$"})"},
    {'G', kAll, R"({"type":"string","format":"regex"})"},
    {'K', k19, R"({"type":"string","pattern":"^[A-Za-z][-A-Za-z0-9.:_]*$"})"},
    {'K', k20, R"({"type":"string","pattern":"^[A-Za-z_][-A-Za-z0-9._]*$"})"},
    {'V', kAll,
     R"({"type":"object","propertyNames":{"type":"string","format":"uri"},)"
     R"("additionalProperties":%B})"},
    {'X', k4, R"({"type":"array","minItems":1,"items":%T,"uniqueItems":true})"},
    {'X', kFrom6, R"({"type":"array","items":%T,"uniqueItems":true})"},
    {'E', kAll, R"({"type":"array","minItems":1,"uniqueItems":true})"},
    {'Z', kAll, R"({"type":"array"})"},
    {'J', kAll, "{}"},
    {'Y', kAll, R"({"enum":["array","boolean","integer","null","number","object","string"]})"},
    {'C', kAll, R"({"anyOf":[%Y,{"type":"array","items":%Y,"minItems":1,"uniqueItems":true}]})"},
};

struct Part {
  uint8_t drafts;
  char letter;
  char name[18];
};

constexpr Part kParts[] = {
    {kFrom19, 'c', "core"},          {kFrom19, 'a', "applicator"}, {k20, 'u', "unevaluated"},
    {kFrom19, 'v', "validation"},    {kFrom19, 'm', "meta-data"},  {k19, 'f', "format"},
    {k20, 'f', "format-annotation"}, {kFrom19, 'o', "content"},
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

class Writer {
 public:
  explicit Writer(Draft draft) : draft_(draft), bit_(draftBit(draft)) {}

  std::string text() {
    const bool parted = draft_ >= Draft::k2019;
    out_ = "{";
    head("", parted ? "schema" : "");
    if (parted) {
      allParts();
      table("properties", "r");
    } else {
      table("definitions", "AV");
      table("properties", "cavmfor");
      out_ += draft_ == Draft::k4 ? R"("dependencies":{"exclusiveMaximum":["maximum"],)"
                                    R"("exclusiveMinimum":["minimum"]},)"
                                  : "";
    }
    return close();
  }

 private:
  // Identifier, dialect and type, as every metaschema and part of one begins.
  void head(std::string_view folder, std::string_view name) {
    const bool parted = draft_ >= Draft::k2019;
    const char* const scheme = parted ? "https://" : "http://";
    const char* const uri = kNames[static_cast<size_t>(draft_)].uri;
    append(&out_,
           {R"("$schema":")", scheme, uri, parted ? "schema" : "#", R"(",")",
            draft_ == Draft::k4 ? "id" : "$id", R"(":")", scheme, uri, parted ? folder : "#", name,
            R"(","type":)", draft_ == Draft::k4 ? R"("object",)" : R"(["object","boolean"],)",
            draft_ == Draft::k2019   ? R"("$recursiveAnchor":true,)"
            : draft_ == Draft::k2020 ? R"("$dynamicAnchor":"meta",)"
                                     : ""});
  }

  // The parts stand in "$defs", and the whole is all of them.
  void allParts() {
    out_ += R"("allOf":[)";
    for (const Part& part : kParts) {
      if (part.drafts & bit_) {
        append(&out_, {R"({"$ref":"meta/)", part.name, R"("},)"});
      }
    }
    out_.back() = ']';
    out_ += R"(,"$defs":{)";
    for (const Part& part : kParts) {
      if (part.drafts & bit_) {
        const char own[] = {part.letter, '\0'};
        const char definitions[] = {static_cast<char>(part.letter & ~0x20), '\0'};
        append(&out_, {"\"", part.name, "\":{"});
        head("meta/", part.name);
        table("properties", own);
        table("$defs", definitions);
        close() += ',';
      }
    }
    close() += ',';
  }

  // An object of all rows of these parts.
  void table(const char* name, const char* parts) {
    append(&out_, {"\"", name, "\":{"});
    for (const Row& row : kRows) {
      for (const char* at = row.keywords; (row.drafts & bit_) && strchr(parts, row.part) && *at;) {
        const char* const equals = strchr(at, '=');
        append(&out_, {"\"", {at, static_cast<size_t>(equals - at)}, "\":"});
        kind(equals[1]);
        out_ += ',';
        at = equals + 3;
      }
    }
    close() += ',';
  }

  void kind(char letter) {
    for (const Kind& row : kKinds) {
      if (row.letter == letter && (row.drafts & bit_)) {
        for (const char* at = row.schema; *at; ++at) {
          if (*at == '%') {
            kind(*++at);
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

bool isMetaschema(std::string_view uri, Draft* draft) {
  const size_t scheme = uri.find("://");
  if (scheme == std::string_view::npos) {
    return false;
  }
  uri.remove_prefix(scheme + 3);
  if (!uri.empty() && uri.back() == '#') {
    uri.remove_suffix(1);
  }
  for (const Name& name : kNames) {
    const size_t size = strlen(name.uri);
    if (uri.substr(0, size) == name.uri && (name.draft >= Draft::k2019 || uri.size() == size)) {
      *draft = name.draft;
      return true;
    }
  }
  return false;
}

json_object* makeMetaschema(Draft draft) {
  return json_tokener_parse(Writer(draft).text().c_str());
}

}  // namespace schema
}  // namespace hearth
