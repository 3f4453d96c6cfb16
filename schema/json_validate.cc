// The entries of the validator: the two functions of the seam, which answer yes or no, and under
// them the two that also tell why. All make one walk; memory that runs out inside it, the only
// thing that can throw, ends here.
#include "schema/json_validate.h"

#include <exception>
#include <utility>

#include "base/json_parser.h"
#include "base/read_file.h"
#include "schema/validate.h"
#include "schema/walk/walker.h"

namespace hearth::schema {
namespace {

// Tells that memory ran out, in place of the violation that it was to be for. The audience may find
// none either.
void tellOfMemory(const Audience& audience) {
  try {
    Violation violation;
    violation.message = "memory ran out";  // short enough to need no memory
    audience.found(audience.context, violation);
  } catch (const std::exception&) {
  }
}

}  // namespace

bool validate(json_object* instance, json_object* schema, Violation* violation,
              Draft unnamed) noexcept {
  const auto take = [](void* taken, Violation& told) {
    *static_cast<Violation*>(taken) = std::move(told);
    return false;
  };
  const Audience audience = {take, violation, violation != nullptr ? std::size_t{1} : 0};
  return tellViolations(instance, schema, audience, unnamed) == Conformance::kConforms;
}

Conformance tellViolations(json_object* instance, json_object* schema, Audience audience,
                           Draft unnamed) noexcept {
  try {
    return Walker(schema, unnamed, audience).run(instance);
  } catch (const std::exception&) {  // memory ran out
    if (audience.limit > 0) {
      tellOfMemory(audience);
    }
    return Conformance::kExhausted;
  }
}

namespace {

// Reads a JSON document from a file. A file that cannot be read counts as a document that is cut
// short; JSON's null is a document too.
ParsedJson readDocument(const char* path) {
  FileContents contents;
  if (contents.readFile(path) != FileReading::kRead) {
    ParsedJson nothing;
    nothing.error = json_tokener_continue;
    return nothing;
  }
  return parseJson({contents.data(), contents.size()});
}

}  // namespace
}  // namespace hearth::schema

int json_validate_instance(json_object* instance, json_object* schema) {
  return hearth::schema::validate(instance, schema);
}

int json_validate_instance_from_file(const char* instanceFile, const char* schemaFile) {
  const hearth::ParsedJson instance = hearth::schema::readDocument(instanceFile);
  const hearth::ParsedJson schema = hearth::schema::readDocument(schemaFile);
  return instance.isValid() && schema.isValid() &&
         hearth::schema::validate(instance.value.get(), schema.value.get());
}
