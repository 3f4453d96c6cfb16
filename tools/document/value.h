// The VALUE of a command line, and which JSON value its text stands for.
#ifndef HEARTH_TOOLS_DOCUMENT_VALUE_H
#define HEARTH_TOOLS_DOCUMENT_VALUE_H

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "tools/document/input.h"

namespace hearth::tool {

// What the command line says of a value: its text or the file that holds it, and its type.
struct ValueOptions {
  std::optional<std::string> text;
  std::string from;       // a file with the value, "-" for standard input
  bool isSecret = false;  // from a prompt or standard input, and shown nowhere
  enum Type { kInferred, kString, kInt, kDouble, kBool, kJson } type = kInferred;
};

// What a command does with its value: stores it, or searches for it.
enum class ValueUse { kStored, kSought };

// The group, in the help, of the options that say which type VALUE has.
constexpr char kTypeGroup[] = "The type of VALUE";

// Adds VALUE and its options to a command: --string, --int, --double and --bool; for commands that
// store values --json, --from and --secret too.
void addValueOptions(CLI::App& command, ValueOptions& options, ValueUse use);

// A value as given: all that can be known of it before the document is read.
class GivenValue {
 public:
  // Reads --from and --secret. Throws a Failure when there is no usable value.
  explicit GivenValue(const ValueOptions& options);

  // Has messages show "(secret)" in the value's place.
  void hide() { isHidden_ = true; }

  // Makes the value; the handle has none for null. Throws a Failure for text that is not of the
  // given type. Without a given type the value gets that of the one that it replaces, so that a
  // passphrase of digits stays a text; where nothing is replaced, or null, it is what the text
  // looks like.
  [[nodiscard]] Handle make(json_object* replaced) const;

 private:
  std::string shown() const;

  const ValueOptions::Type type_;
  std::string text_;
  bool isHidden_;
  Handle read_;  // from the file of --from; null without one
};

}  // namespace hearth::tool

#endif
