// The verdict, yes or no, comes from the validation that the backend uses; the kit's search for
// violations is asked only afterwards, to explain a no. So the command can never contradict the
// backend, even with a platform's validator, which explains little. The kit also keeps secrets out
// of the sentences.
#include "tools/document/schema_check.h"

#include "hearth/json_data.h"
#include "hearth/kit/render.h"
#include "hearth/kit/validate.h"
#include "tools/document/input.h"
#include "tools/document/path.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// All choices of the enumeration at a pointer into the schema. A rule in a built-in metaschema has
// a URI in front of its pointer and is not looked up.
std::vector<std::string> choicesOf(json_object* schema, const std::string& pointer) {
  std::vector<std::string> choices;
  if (pointer.rfind('/', 0) == 0) {
    for (const View choice : elements(View(valueAtPointer(schema, pointer)))) {
      choices.push_back(toText(choice));
    }
  }
  return choices;
}

// Completes a verdict: finds the violations when the document does not conform.
Verdict verdictOn(bool conforms, json_object* document, json_object* schema, unsigned int limit) {
  Verdict verdict;
  verdict.conforms = conforms;
  if (conforms) {
    return verdict;
  }
  const Result<void> compared = validate(View(document), View(schema), ValidateOptions{limit});
  for (const BrokenRule& rule : compared.failure().broken) {
    const Path path = pathOfPointer(document, rule.place);
    verdict.breaches.push_back({rule, path.textOrPointer(), path.shown(), {}});
    if (rule.keyword == "enum") {
      verdict.breaches.back().choices = choicesOf(schema, rule.rule);
    }
  }
  return verdict;
}

// "one", "two", "three", and so on to the last.
std::string listed(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) {
    list += (list.empty() ? "" : ", ") + text;
  }
  return list;
}

}  // namespace

std::string Breach::text(bool withChoices) const {
  constexpr std::size_t kMostInSentence = 8;  // the sentence itself lists so many
  return "at " + where + ": " + rule.sentence +
         (withChoices && choices.size() > kMostInSentence ? "; the choices are " + listed(choices)
                                                          : "") +
         (rule.rule.empty() ? "" : " (rule " + escaped(rule.rule, Escapes::kTerminal) + ")");
}

std::string Verdict::text() const {
  return breaches.empty() ? "does not conform"
                          : "does not conform: " + breaches.front().text(false);
}

std::vector<BrokenRule> Verdict::broken() const {
  std::vector<BrokenRule> rules;
  for (const Breach& breach : breaches) {
    rules.push_back(breach.rule);
  }
  return rules;
}

Verdict checkAgainst(TreeMapObject& document, const std::string& schemaFile, unsigned int limit) {
  const Handle schema = readJson(schemaFile);
  const bool conforms = JsonData::validateFile(&document, schemaFile.c_str()) == 0;
  return verdictOn(conforms, document.jobj, schema->jobj, limit);
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
  return verdictOn(conforms, schema.jobj, metaschema.jobj, kFirstBreach);
#else
  static_cast<void>(schema);
  return {};
#endif
}

}  // namespace hearth::tool
