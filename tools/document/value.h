// The VALUE of a command line: which JSON value a text stands for.
#ifndef HEARTH_TOOLS_DOCUMENT_VALUE_H
#define HEARTH_TOOLS_DOCUMENT_VALUE_H

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "tools/document/input.h"

namespace hearth::tool {

// How the type of a value is told.
struct ValueOptions {
  std::optional<std::string> text;
  std::string from;  // a file with the value, "-" for standard input
  enum Type { kInferred, kString, kInt, kDouble, kBool, kJson } type = kInferred;
};

// Adds VALUE and its options to a command: --string, --int, --double and --bool; for commands that
// store values --json and --from too.
enum class ValueUse { kStored, kSought };
void addValueOptions(CLI::App& command, ValueOptions& options, ValueUse use);

// What a command line tells about a value: all that can be known before the document is read.
class Value {
 public:
  // Reads --from. Throws a Failure when there is no usable value.
  explicit Value(const ValueOptions& options);

  // The value; the handle has none for null. Throws a Failure for text that is not of the type
  // told. An inferred value gets the type of the one that it replaces, so that a passphrase of
  // digits stays a text; where nothing is replaced, or null, it is what the text looks like.
  [[nodiscard]] Handle make(json_object* replaced) const;

 private:
  const ValueOptions& options_;
  Handle read_;
};

}  // namespace hearth::tool

#endif
