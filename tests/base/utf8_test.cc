#include "base/utf8.h"

#include <gtest/gtest.h>

namespace hearth {
namespace {

TEST(Utf8, ReadsEveryCharacterThatItWrites) {
  for (uint32_t code = 0; code <= kLastCodePoint; ++code) {
    std::string text;
    appendCharacter(code, &text);
    const Character first = firstCharacter(text + "\x80");
    ASSERT_EQ(first.isValid, !isSurrogate(code)) << code;
    ASSERT_EQ(first.code == code && first.size == text.size(), first.isValid) << code;
  }
}

// How many texts of so many bytes are one character, by Unicode's table of well-formed sequences.
// Behind the second byte stands only what is at the edges of what may stand there.
TEST(Utf8, ReadsNothingElse) {
  size_t found[5] = {};
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
  EXPECT_EQ(found[1], 0x80U);
  EXPECT_EQ(found[2], 0x800U - 0x80);
  EXPECT_EQ(found[3], (0x10000U - 0x800 - 0x800) / 64 * 2);
  EXPECT_EQ(found[4], (0x110000U - 0x10000) / 64 / 64 * 4);
}

TEST(Utf8, CutsBetweenCharacters) {
  struct Row {
    std::string_view text;
    size_t most;
    std::string_view start;
    size_t characters;
  };
  for (const Row& row :
       {Row{"", 3, "", 0}, Row{"abc", 3, "abc", 3}, Row{"aäb", 2, "a", 3}, Row{"aäb", 3, "aä", 3},
        Row{"\U0001f600", 3, "", 1}, Row{"\x80\x80\x80\x80\x80\x80", 5, "\x80", 0},
        Row{"\x80\x80\x80", 2, "", 0}}) {
    EXPECT_EQ(startOf(row.text, row.most), row.start) << row.text;
    EXPECT_EQ(countCharacters(row.text), row.characters) << row.text;
  }
  EXPECT_TRUE(isUtf8("aä\u20ac\U0001f600"));
  EXPECT_FALSE(isUtf8("aä\xc3"));
}

}  // namespace
}  // namespace hearth
