// Every code point written and read back, and every text of one to four bytes that could be a
// character.
#include "base/utf8.h"

#include <gtest/gtest.h>

namespace hearth {
namespace {

TEST(Utf8, ReadsEveryCharacterThatItWrites) {
  for (uint32_t code = 0; code <= kLastCodePoint; ++code) {
    std::string text;
    appendCharacter(code, text);
    const Character first = firstCharacter(text + "\x80");
    const bool isCharacter = !isSurrogate(code);
    ASSERT_EQ(isCharacter, first.isValid) << code;
    ASSERT_EQ(isCharacter, first.code == code && first.size == text.size()) << code;
  }
}

// Counts the texts of each size that are one character, against the numbers that follow from
// Unicode's table of well-formed sequences. The first two bytes take all values; the later ones
// take the edges of the range that is allowed there.
TEST(Utf8, ReadsNothingElse) {
  std::size_t found[5] = {};
  const auto look = [&](std::string_view text) {
    const Character first = firstCharacter(text);
    EXPECT_TRUE(first.isValid ||
                (first.size == 1 && first.code == static_cast<unsigned char>(text[0])));
    found[text.size()] += first.isValid && first.size == text.size();
  };
  for (unsigned i = 0; i < 1U << 16; ++i) {
    char bytes[] = {static_cast<char>(i & 0xFF), static_cast<char>(i >> 8), 0, 0};
    look({bytes, 2});
    for (const char third : {'\x7F', '\x80', '\xBF', '\xC0'}) {
      bytes[2] = third;
      look({bytes, 3});
      for (const char last : {'\x7F', '\x80', '\xBF', '\xC0'}) {
        bytes[3] = last;
        look({bytes, 4});
      }
    }
    if (i < 1U << 8) {
      look({bytes, 1});
    }
  }
  EXPECT_EQ(0x80U, found[1]);
  EXPECT_EQ(0x800U - 0x80, found[2]);
  EXPECT_EQ((0x10000U - 0x800 - 0x800) / 64 * 2, found[3]);
  EXPECT_EQ((0x110000U - 0x10000) / 64 / 64 * 4, found[4]);
}

TEST(Utf8, CutsBetweenCharacters) {
  struct Row {
    std::string_view text;
    std::size_t mostBytes;
    std::string_view start;
    std::size_t characters;
  };
  const Row rows[] = {
      {"", 3, "", 0},
      {"abc", 3, "abc", 3},
      {"aäb", 2, "a", 3},
      {"aäb", 3, "aä", 3},
      {"\U0001f600", 3, "", 1},
      {"\x80\x80\x80\x80\x80\x80", 5, "\x80", 0},
      {"\x80\x80\x80", 2, "", 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.start, startOf(row.text, row.mostBytes)) << row.text;
    EXPECT_EQ(row.characters, countCharacters(row.text)) << row.text;
  }
  EXPECT_TRUE(isUtf8("aä\u20ac\U0001f600"));
  EXPECT_FALSE(isUtf8("aä\xc3"));
}

}  // namespace
}  // namespace hearth
