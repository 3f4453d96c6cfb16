// What a command prints: collected while it works, written when it has succeeded.
#ifndef HEARTH_TOOLS_TERMINAL_OUTPUT_H
#define HEARTH_TOOLS_TERMINAL_OUTPUT_H

#include <string>
#include <string_view>

namespace hearth::tool {

enum class Ink { kPlain, kKey, kText, kNumber, kWord, kGood, kBad, kFaint };

class Output {
 public:
  // Moves standard output to a descriptor of its own and joins descriptor 1 to standard error: what
  // the library prints is a message to the user, never a part of the result. Missing standard
  // descriptors are filled, so that no file is opened in their place and written to by mistake.
  Output();

  bool isTerminal() const { return isTerminal_; }

  // The text in a colour, where colours are seen and wanted.
  [[nodiscard]] std::string inked(Ink ink, std::string_view text) const;

  // Text from a document: as it is for programs, harmless on a terminal.
  [[nodiscard]] std::string foreign(std::string_view text) const;

  void line(std::string_view text) { buffer_.append(text).append("\n"); }

  // Writes what was collected. Throws a Failure when that cannot be written whole.
  void finish();

 private:
  int fd_;
  bool isTerminal_;
  bool hasColour_;
  std::string buffer_;
};

// One line on standard error, "hearth: ...", whatever the text holds; none for an empty text.
void complain(std::string_view text);

}  // namespace hearth::tool

#endif
