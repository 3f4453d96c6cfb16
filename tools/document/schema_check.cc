// The verdict, yes or no, comes from the validation that the backend uses; the search for
// violations is asked only afterwards, to explain a no. So the command can never contradict the
// backend, even with a platform's validator, which explains little.
#include "tools/document/schema_check.h"

#include "hearth/json_data.h"
#include "hearth/violations.h"
#include "tools/document/input.h"
#include "tools/document/path.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// Receives the violations for findViolations; false ends the search, since one is enough.
bool keepViolation(void* context, const Violation& violation) {
  Verdict& verdict = *static_cast<Verdict*>(context);
  verdict.pointer = violation.place;
  verdict.rule = violation.rule;
  verdict.keyword = violation.keyword;
  verdict.message = violation.sentence;
  return false;
}

// Completes a verdict: finds the first violation when the document does not conform.
Verdict verdictOn(bool conforms, json_object* document, json_object* schema) {
  Verdict verdict;
  verdict.conforms = conforms;
  if (!conforms &&
      findViolations(document, schema, 1, keepViolation, &verdict) != Conformance::kConforms) {
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

// A schema is checked as any document is, by a schema that only refers to the metaschema. A schema
// that names no draft is checked as draft-07, as which the library validates it.
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
