#include "tools/document/schema_check.h"

#include "hearth/json_data.h"
#include "hearth/violations.h"
#include "tools/document/input.h"
#include "tools/document/path.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

bool take(void* context, const Violation& violation) {
  Verdict& verdict = *static_cast<Verdict*>(context);
  verdict.pointer = violation.place;
  verdict.rule = violation.rule;
  verdict.keyword = violation.keyword;
  verdict.message = violation.sentence;
  return false;
}

// The validation of documents says whether; the violation says why not.
Verdict verdictOn(bool conforms, json_object* document, json_object* schema) {
  Verdict verdict;
  verdict.conforms = conforms;
  if (!conforms && findViolations(document, schema, 1, take, &verdict) != Conformance::kConforms) {
    verdict.where = pathOfPointer(document, verdict.pointer).shown();
  }
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
#if HEARTH_TOOLS_KNOW_METASCHEMAS
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
