// The walk takes one character at a time; what it means depends on the quote that is open.
#include "tools/store/shell_words.h"

#include "tools/terminal/failure.h"

namespace hearth::tool {
namespace {

class Splitter {
 public:
  explicit Splitter(std::string_view line) : rest_(line) {}

  std::vector<std::string> split() {
    while (!rest_.empty() && !(rest_[0] == '#' && !isInWord_)) {
      if (quote_ != '\0') {
        takeQuoted(next());
      } else {
        takePlain(next());
      }
    }
    if (quote_ != '\0') {
      throw Failure(Exit::kUsage, std::string("the quote ") + quote_ + " is not closed");
    }
    endWord();
    return words_;
  }

 private:
  char next() {
    const char c = rest_[0];
    rest_.remove_prefix(1);
    return c;
  }

  void takePlain(char c) {
    if (c == ' ' || c == '\t' || c == '\r') {
      endWord();
      return;
    }
    isInWord_ = true;  // '' is a word too
    if (c == '\'' || c == '"') {
      quote_ = c;
    } else {
      word_ += c == '\\' ? escapedCharacter() : c;
    }
  }

  void takeQuoted(char c) {
    constexpr std::string_view kEscapable = "\"\\$`";
    if (c == quote_) {
      quote_ = '\0';
    } else if (c == '\\' && quote_ == '"' && !rest_.empty() &&
               kEscapable.find(rest_[0]) != std::string_view::npos) {
      word_ += next();
    } else {
      word_ += c;
    }
  }

  char escapedCharacter() {
    if (rest_.empty()) {
      throw Failure(Exit::kUsage, "nothing follows the backslash at the end");
    }
    return next();
  }

  void endWord() {
    if (isInWord_) {
      words_.push_back(word_);
    }
    word_.clear();
    isInWord_ = false;
  }

  std::string_view rest_;
  std::string word_;
  bool isInWord_ = false;
  char quote_ = '\0';
  std::vector<std::string> words_;
};

}  // namespace

std::vector<std::string> shellWords(std::string_view line) {
  return Splitter(line).split();
}

}  // namespace hearth::tool
