#include "tools/schema_check.h"

#include "hearth/json_data.h"
#include "tools/input.h"
#include "tools/path.h"
#include "tools/text.h"
#if HEARTH_TOOLS_SHOW_VIOLATIONS
#include "schema/validate.h"
#endif

namespace hearth::tool {
namespace {

// The library says whether; the validator behind it, where it is hearth's own, says why not.
Verdict verdictOn(bool conforms, json_object* document, json_object* schema) {
  Verdict verdict;
  verdict.conforms = conforms;
#if HEARTH_TOOLS_SHOW_VIOLATIONS
  schema::Violation violation;
  if (!conforms && !schema::validate(document, schema, &violation)) {
    verdict.where = pathOfPointer(document, violation.instanceLocation).shown();
    verdict.pointer = violation.instanceLocation;
    verdict.rule = violation.schemaLocation;
    verdict.keyword = violation.keyword;
    verdict.message = violation.message;
  }
#else
  static_cast<void>(document);
  static_cast<void>(schema);
#endif
  return verdict;
}

}  // namespace

std::string Verdict::text() const {
  if (message.empty()) {
    return "does not conform";
  }
  return "does not conform: at " + where + ": " + message +
         (rule.empty() ? "" : " (rule " + escaped(rule, Escapes::kTerminal) + ")");
}

Verdict checkAgainst(TreeMapObject& document, const std::string& schemaFile) {
  const Handle schema = readJson(schemaFile);
  const bool conforms = JsonData::validateFile(&document, schemaFile.c_str()) == 0;
  return verdictOn(conforms, document.jobj, schema->jobj);
}

Verdict checkSchema(TreeMapObject& schema) {
#if HEARTH_TOOLS_SHOW_VIOLATIONS
  const char* const named = schema.get<const char*>("$schema");
  TreeMapObject metaschema(false);
  metaschema.set("$ref", named != nullptr ? named : "http://json-schema.org/draft-07/schema#");
  const bool conforms =
      JsonData::validateObject(&schema, json_object_to_json_string(metaschema.jobj)) == 0;
  return verdictOn(conforms, schema.jobj, metaschema.jobj);
#else
  static_cast<void>(schema);
  return {};
#endif
}

}  // namespace hearth::tool
