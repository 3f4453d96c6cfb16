// What is JSON, what is not, and where and why.
#include <gtest/gtest.h>

#include <utility>

#include "hearth/kit.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace {

using hearth::Fault;
using namespace std::string_literals;

// '~' in a text is a NUL. The answer is the value, or "line:column" and the sentence behind that.
std::string answerTo(const std::string& text, bool allowsDuplicates = false) {
  hearth::ParseOptions options;
  options.allowsDuplicates = allowsDuplicates;
  const hearth::Result<hearth::Value> value = hearth::parse(replaced(text, "~", "\0"s), options);
  if (value) {
    return plain(value->raw());
  }
  const hearth::Failure& failure = value.failure();
  EXPECT_EQ(failure.fault, Fault::kBadText);
  const std::string place =
      "line " + std::to_string(failure.line) + ", column " + std::to_string(failure.column) + ": ";
  EXPECT_EQ(failure.sentence.rfind(place, 0), 0U) << failure.sentence;
  return std::to_string(failure.line) + ":" + std::to_string(failure.column) + " " +
         failure.sentence.substr(place.size());
}

const std::string kDeepest = std::string(31, '[') + std::string(31, ']');

const std::pair<std::string, std::string> kTexts[] = {
    {" {\"a\" : [ 1 , {} , [] , \"x\" ] , \"b\":{\"c\":null}}\r\n\t",
     R"({"a":[1,{},[],"x"],"b":{"c":null}})"},
    {"5", "5"},
    {"-0", "0"},
    {"null", "null"},
    {"1.7e308", "1.7e308"},
    {"179.0e306", "179.0e306"},
    {"-9223372036854775808", "-9223372036854775808"},
    {"18446744073709551615", "18446744073709551615"},
    {R"("\u00e9\ud83d\ude00\/\n")", "\"é😀\\/\\n\""},
    {R"("\u0000")", R"("\u0000")"},
    {"\"\xF4\x8F\xBF\xBF\xC2\x80\"", "\"\xF4\x8F\xBF\xBF\xC2\x80\""},
    {kDeepest, kDeepest},
    {"", "1:1 expected a value, but there is the end of the text"},
    {" \n ", "2:2 expected a value, but there is the end of the text"},
    {"{", "1:2 expected a member's name or \"}\", but there is the end of the text"},
    {"{\"a\"", "1:5 expected \":\", but there is the end of the text"},
    {"{\"a\":}", "1:6 expected a value, but there is '}'"},
    {"{\"a\":1,}", "1:8 expected a member's name, but there is '}'"},
    {"{\"a\":1 \"b\":2}", "1:8 expected \",\" or \"}\", but there is '\"'"},
    {"{1:2}", "1:2 expected a member's name or \"}\", but there is a number"},
    {"[1,\n 2 3]", "2:4 expected \",\" or \"]\", but there is a number"},
    {"[1,]", "1:4 expected a value, but there is ']'"},
    {"[1}", "1:3 expected \",\" or \"]\", but there is '}'"},
    {"[\"é\" x]", "1:6 expected \",\" or \"]\", but there is a letter"},
    {"[1]x", "1:4 expected the end of the text, but there is a letter"},
    {"[1]~", "1:4 expected the end of the text, but there is a NUL"},
    {"~", "1:1 expected a value, but there is a NUL"},
    {"nul", "1:1 expected true, false or null, but there is a letter"},
    {"NaN", "1:1 expected a value, but there is a letter"},
    {"-Infinity", "1:2 expected a digit, but there is a letter"},
    {"/**/1", "1:1 expected a value, but there is something else"},
    {"'a'", "1:1 expected a value, but there is something else"},
    {"\"ab",
     "1:4 expected the quotation mark that ends the text, but there is the end of the text"},
    {"\"a\tb\"", "1:3 expected an escape sequence, but there is a control character"},
    {"\"a~b\"", "1:3 expected an escape sequence, but there is a NUL"},
    {R"("\x")", "1:2 expected an escape sequence of JSON, but there is another one"},
    {R"("\u12g4")", "1:6 expected four hexadecimal digits, but there is a letter"},
    {R"("\ud800x")", "1:2 expected both halves of a surrogate pair, but there is only one"},
    {R"("\udc00\ud800")", "1:2 expected both halves of a surrogate pair, but there is only one"},
    {"\"\xC0\x80\"", "1:2 expected a character in UTF-8, but there is something else"},
    {"\"\xED\xA0\x80\"", "1:2 expected a character in UTF-8, but there is something else"},
    {"\"\xE0\x9F\xBF\"", "1:2 expected a character in UTF-8, but there is something else"},
    {"\"\xF4\x90\x80\x80\"", "1:2 expected a character in UTF-8, but there is something else"},
    {"\"\xC3", "1:2 expected a character in UTF-8, but there is something else"},
    {"[01]", "1:2 expected a number without leading zeros, but there is one that has them"},
    {"-00", "1:1 expected a number without leading zeros, but there is one that has them"},
    {"1.", "1:3 expected a digit, but there is the end of the text"},
    {"1e+", "1:4 expected a digit, but there is the end of the text"},
    {"18446744073709551616",
     "1:1 expected an integer of at most 64 bits, but there is a longer one"},
    {"-9223372036854775809",
     "1:1 expected an integer of at most 64 bits, but there is a longer one"},
    {"[1.8e308]", "1:2 expected a number that a double holds, but there is a larger one"},
    {"0.001e312", "1:1 expected a number that a double holds, but there is a larger one"},
    {"1e99999999999999999999",
     "1:1 expected a number that a double holds, but there is a larger one"},
    {"[" + kDeepest + "]",
     "1:32 expected a value nested no deeper than 31 levels, but there is '['"},
    {R"({"\u0000a":1})", "1:2 expected a member's name without a NUL, but there is one with a NUL"},
    {"{\"a\":{\"b\":1},\n \"b\":2, \"\\u0061\":3}",
     "2:9 expected another member, but there is one whose name stands here already"},
};

TEST(KitParse, SaysWhereAndWhatWasExpected) {
  for (const auto& [text, expected] : kTexts) {
    EXPECT_EQ(answerTo(text), expected) << text;
  }
  EXPECT_EQ(answerTo("{\"a\":1,\"a\":2}", true), "{\"a\":2}");
  EXPECT_EQ(hearth::parse(nullptr).failure().fault, Fault::kBadText);
}

// Whatever is cut off a text, and whichever byte of it is another, the answer is one: json-c takes
// what the check lets pass, and gives back what was written.
TEST(KitParse, AgreesWithTheParserOnEveryBrokenText) {
  const std::string text = R"({"a":[1,-2.5e1,"\u00e9x\n",true],"b":{"c":null}})";
  const std::string others = "{}[],:\"\\0-.eE9nt \n\x01\xC3\xFF~/";
  for (std::size_t at = 0; at <= text.size(); ++at) {
    static_cast<void>(answerTo(text.substr(0, at)));
    for (const char other : others) {
      std::string changed = text;
      changed.replace(at, 1, 1, other);
      const std::string answer = answerTo(changed, true);
      if (answer[0] == '{') {
        EXPECT_EQ(answer, answerTo(answer, true)) << changed;
      }
    }
  }
}

TEST(KitParse, ReadsFiles) {
  const TempDir folder;
  const std::string good = folder.file("good", "[1]");
  const std::string bad = folder.file("bad", "[1,\n");
  EXPECT_EQ(plain(hearth::parseFile(good)->raw()), "[1]");
  const hearth::Failure failure = hearth::parseFile(bad).failure();
  EXPECT_EQ(failure.sentence,
            bad + ": line 2, column 1: expected a value, but there is the end of the text");
  EXPECT_EQ(failure.line, 2U);
  for (const auto& [name, fault] :
       {std::pair(folder / "none", Fault::kNoFile), std::pair(folder.path(), Fault::kNoFile),
        std::pair("/dev/null"s, Fault::kNoFile), std::pair(good + "\0"s, Fault::kBadArgument),
        std::pair(""s, Fault::kBadArgument)}) {
    const hearth::Failure answer = hearth::parseFile(name).failure();
    EXPECT_EQ(answer.fault, fault) << name;
    EXPECT_FALSE(answer.sentence.empty());
  }
}

}  // namespace
