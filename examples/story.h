// The transcript of an example: chapters, what was asked, what came back, and whether that was
// right.
//
// hearth's logger prints every line on standard output as well as in the log file, and the
// configuration reader prints there too. So that the transcript stays readable, it keeps the
// terminal for itself and lets standard output go to a file.
#ifndef HEARTH_EXAMPLES_STORY_H
#define HEARTH_EXAMPLES_STORY_H

#include <cstdio>
#include <string>

// Used by one thread.
class Story {
 public:
  Story() = default;
  ~Story();
  Story(const Story&) = delete;
  Story& operator=(const Story&) = delete;

  // Sends standard output to the file from now on; the transcript goes where it went before.
  // False, after a message on standard error, when that cannot be done.
  [[nodiscard]] bool begin(const char* consoleFile);

  void chapter(const char* title);
  void tell(const std::string& text);

  // One expectation and whether it was met; the result is ok itself.
  bool check(bool ok, const std::string& text);

  // Shows lines of a file, from the first that contains the text on.
  void showFile(const char* path, const char* from, int lines);

  // The summary. Result: the exit status of the program, 0 when every check was met.
  int end(const std::string& lastWords);

 private:
  FILE* out_ = nullptr;
  int chapters_ = 0;
  int checks_ = 0;
  int failed_ = 0;
};

// A text for the transcript, in quotation marks, or what to say when there is none.
std::string quoted(const char* text);

// The whole content of a file, and its last line; empty when it cannot be read.
std::string contentOf(const char* path);
std::string lastLineOf(const char* path);

#endif
