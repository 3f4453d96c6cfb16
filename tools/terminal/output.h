// The output of a command. It is collected while the command works and written when it has
// succeeded, so that a command that fails prints no half of a result.
#ifndef HEARTH_TOOLS_TERMINAL_OUTPUT_H
#define HEARTH_TOOLS_TERMINAL_OUTPUT_H

#include <string>
#include <string_view>

#include "base/unique_fd.h"

namespace hearth::tool {

// What a piece of output is, which decides its colour.
enum class Ink { kPlain, kKey, kText, kNumber, kWord, kGood, kBad, kFaint };

class Output {
 public:
  // Moves standard output to a descriptor of its own and joins descriptor 1 to standard error: what
  // the library prints is a message to the user, never a part of the result. Missing standard
  // descriptors are filled, so that no file is opened in their place and written to by mistake.
  Output();

  bool isTerminal() const { return isTerminal_; }

  // How many columns a line may have: those of the terminal; no limit elsewhere.
  [[nodiscard]] std::size_t columns() const;

  // The text in the colour of its ink; plain where colours are not seen or not wanted.
  [[nodiscard]] std::string inked(Ink ink, std::string_view text) const;

  // Text from a document: left as it is for programs, made harmless for a terminal.
  [[nodiscard]] std::string foreign(std::string_view text) const;

  // Adds a line to the output.
  void line(std::string_view text) { buffer_.append(text).append("\n"); }

  // Where the output goes, to be asked whether somebody still reads it.
  int descriptor() const { return fd_.get(); }

  // Writes what was collected. Throws a Failure when that cannot be written whole.
  void finish();

 private:
  UniqueFd fd_;  // what was standard output
  bool isTerminal_;
  bool hasColour_;
  std::string buffer_;
};

// Writes one line on standard error, "hearth: ...", whatever the text holds; none for an empty
// text.
void complain(std::string_view text);

// Writes a line on standard error as it is. Requires a text that is harmless on a terminal.
void complainWith(std::string_view line);

}  // namespace hearth::tool

#endif
