// Validation against a JSON Schema, with the reasons.
//
//   hearth::Result<void> valid = hearth::validateMessage(message, API_WIFI,
//   "WIFI_SSID_UPDATE_REQ"); if (!valid) {
//     return refuse(valid.failure().sentence);
//   }
//   // /data/ssid: must be at most 32 characters long, but has 33
//
// Failure: kRefused when the value does not conform: the sentence tells the first violation,
// `broken` as many as the options ask for. kBadSchema when there is something that should be a
// schema and is none: text that does not parse, a value that is no schema. kNoSchema when there is
// none and the options are strict; otherwise what has no schema passes, as in the contract. Secrets
// (secrets.h) are never quoted: of a violation at a secret, or at a value that holds one, the
// sentence names place and keyword only.
//
// Threads: any number at once, about the same values too, as long as nobody changes them. Takes
// 64 KiB of stack.
// Ownership: nothing is kept.
// Cost: a schema in a file is read and parsed each time.
#ifndef HEARTH_KIT_VALIDATE_H
#define HEARTH_KIT_VALIDATE_H

#include <json-c/json.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "hearth/json_data.h"
#include "hearth/kit/area.h"
#include "hearth/kit/handle.h"
#include "hearth/kit/parse.h"
#include "hearth/kit/result.h"
#include "hearth/kit/secrets.h"
#include "hearth/kit/text.h"
#include "hearth/kit/walk.h"
#include "hearth/violations.h"

namespace hearth {

struct ValidateOptions {
  unsigned int limit = 1;  // how many violations are told; at least 1
  bool isStrict = false;   // a missing schema is a refusal, not a pass
};

namespace detail {

// The next token of a JSON pointer, which is cut off its beginning.
inline std::string cutToken(std::string_view& pointer) {
  pointer.remove_prefix(1);
  const std::size_t size = std::min(pointer.find('/'), pointer.size());
  std::string token;
  for (std::size_t i = 0; i < size; ++i) {
    const bool isEscaped = pointer[i] == '~' && i + 1 < size;
    token.push_back(!isEscaped ? pointer[i] : pointer[++i] == '1' ? '/' : '~');
  }
  pointer.remove_prefix(size);
  return token;
}

// What the sentence of a violation at this place must not quote.
inline bool isAboutSecret(View instance, std::string_view place, std::string_view keyword) {
  View at = instance;
  while (!place.empty()) {
    const std::string token = cutToken(place);
    if (isSecretName(token)) {
      return true;
    }
    if (at.isArray()) {
      at = elements(at)[static_cast<std::size_t>(std::strtoul(token.c_str(), nullptr, 10))];
    } else {
      json_object* member = nullptr;
      json_object_object_get_ex(at.isObject() ? at.raw() : nullptr, token.c_str(), &member);
      at = View(member);
    }
  }
  // These speak of an object or array without quoting what is in it.
  constexpr std::string_view kWithoutQuotes[] = {
      "type",     "required", "dependentRequired", "minProperties", "maxProperties",
      "minItems", "maxItems", "uniqueItems",       "propertyNames", "additionalProperties"};
  return std::find(std::begin(kWithoutQuotes), std::end(kWithoutQuotes), keyword) ==
             std::end(kWithoutQuotes) &&
         holdsSecret(at);
}

// Gathers what the comparison finds.
struct Findings {
  View instance;
  Failure failure;
  bool isOutOfMemory = false;

  void add(const Violation& violation) {
    BrokenRule rule = {violation.place, violation.rule, violation.keyword, violation.member,
                       violation.sentence};
    if (isAboutSecret(instance, rule.place, rule.keyword)) {
      rule.sentence = "does not satisfy " + inQuotes(rule.keyword);
    }
    failure.broken.push_back(std::move(rule));
  }

  // No exception may pass through the library.
  static bool found(void* context, const Violation& violation) {
    Findings& findings = *static_cast<Findings*>(context);
#if defined(__cpp_exceptions)
    try {
      findings.add(violation);
    } catch (...) {
      findings.isOutOfMemory = true;
    }
#else
    findings.add(violation);
#endif
    return !findings.isOutOfMemory;
  }
};

// "/data/ssid: must be at most 32 characters long, but has 33"
inline std::string sentenceOf(const BrokenRule& rule) {
  return rule.place.empty() ? "the value " + rule.sentence : rule.place + ": " + rule.sentence;
}

inline Result<void> compared(View instance, View schema, const ValidateOptions& options) {
  Findings findings;
  findings.instance = instance;
  const Conformance answer = findViolations(
      instance.raw(), schema.raw(), std::max(options.limit, 1U), Findings::found, &findings);
  if (answer == Conformance::kConforms) {
    return {};
  }
  Failure& failure = findings.failure;
  failure.fault = answer == Conformance::kUnusable ? Fault::kBadSchema : Fault::kRefused;
  failure.sentence = failure.broken.empty() ? "the value does not conform to its schema"
                                            : sentenceOf(failure.broken.front());
  if (findings.isOutOfMemory) {
    failure.fault = Fault::kNoMemory;
  }
  return std::move(failure);
}

inline Result<void> comparedWithFile(View instance, Name schemaFile,
                                     const ValidateOptions& options) {
  if (schemaFile.isEmpty()) {
    return failure(Fault::kBadArgument, "the schema's name is null, empty, or has a NUL inside");
  }
  const Handle schema(JsonData::createObjectFromFile(schemaFile.get()));
  if (!schema) {
    if (!options.isStrict) {
      return {};
    }
    return failure(Fault::kNoSchema, std::string("there is no schema ") + schemaFile.get());
  }
  if (schema->jobj == nullptr) {
    Failure reason = parseFile(schemaFile).failure();
    if (reason.fault == Fault::kNone) {
      reason.sentence = std::string(schemaFile.get()) + ": cannot be read as JSON";
    }
    reason.fault = Fault::kBadSchema;
    return reason;
  }
  return compared(instance, schema, options);
}

}  // namespace detail

// Compares the value with a schema that is at hand. Nothing as a schema is a missing one.
inline Result<void> validate(View value, View schema, const ValidateOptions& options = {}) {
  if (!schema) {
    if (!options.isStrict) {
      return {};
    }
    return detail::failure(Fault::kNoSchema, "there is no schema");
  }
  return detail::compared(value, schema, options);
}

// Compares the value with the schema in a file.
// Failure: also kBadArgument for a name that is none.
inline Result<void> validateWithFile(View value, Name schemaFile,
                                     const ValidateOptions& options = {}) {
  return detail::comparedWithFile(value, schemaFile, options);
}

// Compares a message with the schema of the message in this row, or with this label.
// Failure: also kNoArea, and kNoMessage for a row or label that the area does not have.
inline Result<void> validateMessage(View message, unsigned int area, unsigned int row,
                                    const ValidateOptions& options = {}) {
  if (!areaNumbered(area)) {
    return detail::noArea(area);
  }
  if (!messageLabel(area, row)) {
    return detail::failure(Fault::kNoMessage, "the area " + std::string(*areaName(area)) +
                                                  " has no message " + std::to_string(row));
  }
  return detail::comparedWithFile(message, LocalDbCtrl::getSchemaFile(area, row), options);
}
inline Result<void> validateMessage(View message, unsigned int area, Text label,
                                    const ValidateOptions& options = {}) {
  if (!areaNumbered(area)) {
    return detail::noArea(area);
  }
  const std::optional<unsigned int> row = messageRow(area, label);
  if (!row) {
    return detail::failure(Fault::kNoMessage, "the area " + std::string(*areaName(area)) +
                                                  " has no message " +
                                                  detail::inQuotes(label.view()));
  }
  return validateMessage(message, area, *row, options);
}

// Compares a whole database with the schema that stands beside it, "wifi/wifi_SCHEMA.ldb".
// Failure: also kNoArea.
inline Result<void> validateDatabase(View database, unsigned int area,
                                     const ValidateOptions& options = {}) {
  if (!areaNumbered(area)) {
    return detail::noArea(area);
  }
  const std::optional<std::string> schema = databaseSchemaFile(area);
  if (!schema) {
    return detail::failure(Fault::kSystem, "the name of the area's schema is too long");
  }
  return detail::comparedWithFile(database, *schema, options);
}

}  // namespace hearth

#endif
