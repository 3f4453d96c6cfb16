// Three tables of ranges: characters without a width, characters of double width, and capitals with
// the way to their small form. Capitals stand in their alphabets in one of two ways: all of them in
// a row and the small ones in another, at one distance; or in pairs, each before its small letter.
#include "tools/terminal/characters.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/utf8.h"

namespace hearth::tool {
namespace {

struct Range {
  uint32_t first, last;
};

// Marks that stand on other characters, and selectors of their variants.
constexpr Range kWithoutWidth[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
    {0x20D0, 0x20FF}, {0x302A, 0x302D}, {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
};

constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x4DBF},   {0x4E00, 0xA4CF},
    {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
    {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF},
    {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

constexpr int32_t kPairs = 0;  // a distance that no row has

struct Capitals {
  uint32_t first, last;
  int32_t distance;  // to the small letters; kPairs: every second one is the small letter
};
constexpr Capitals kCapitals[] = {
    {'A', 'Z', 32},           {0x00C0, 0x00D6, 32},     {0x00D8, 0x00DE, 32},
    {0x0100, 0x012F, kPairs}, {0x0132, 0x0137, kPairs}, {0x0139, 0x0148, kPairs},
    {0x014A, 0x0177, kPairs}, {0x0178, 0x0178, -121},   {0x0179, 0x017E, kPairs},
    {0x01CD, 0x01DC, kPairs}, {0x01DE, 0x01EF, kPairs}, {0x01F8, 0x021F, kPairs},
    {0x0222, 0x0233, kPairs}, {0x0386, 0x0386, 38},     {0x0388, 0x038A, 37},
    {0x038C, 0x038C, 64},     {0x038E, 0x038F, 63},     {0x0391, 0x03AB, 32},
    {0x03C2, 0x03C2, 1},      {0x0400, 0x040F, 80},     {0x0410, 0x042F, 32},
    {0x0460, 0x0481, kPairs}, {0x048A, 0x04BF, kPairs}, {0x04C0, 0x04C0, 15},
    {0x04C1, 0x04CE, kPairs}, {0x04D0, 0x052F, kPairs}, {0x0531, 0x0556, 48},
    {0x1E00, 0x1E95, kPairs}, {0x1EA0, 0x1EFF, kPairs}, {0xFF21, 0xFF3A, 32},
};

template <std::size_t kCount>
bool isIn(const Range (&ranges)[kCount], uint32_t code) {
  return std::any_of(std::begin(ranges), std::end(ranges), [code](const Range& range) {
    return code >= range.first && code <= range.last;
  });
}

std::size_t widthOf(const Character& character) {
  if (!character.isValid) {
    return 1;
  }
  return isIn(kWithoutWidth, character.code) ? 0 : isIn(kWide, character.code) ? 2 : 1;
}

uint32_t smallOf(uint32_t code) {
  for (const Capitals& row : kCapitals) {
    if (code >= row.first && code <= row.last) {
      const bool isSmall = row.distance == kPairs && (code - row.first) % 2 == 1;
      const int32_t distance = row.distance == kPairs ? 1 : row.distance;
      return isSmall ? code : static_cast<uint32_t>(static_cast<int32_t>(code) + distance);
    }
  }
  return code;
}

}  // namespace

std::size_t width(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    columns += widthOf(character);
    text.remove_prefix(character.size);
  }
  return columns;
}

std::string cutTo(std::string_view text, std::size_t columns) {
  if (width(text) <= columns) {
    return std::string(text);
  }
  std::string result;
  std::size_t taken = 1;  // for the ellipsis
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    taken += widthOf(character);
    if (taken > columns) {
      break;
    }
    result += text.substr(0, character.size);
    text.remove_prefix(character.size);
  }
  return result + "\u2026";
}

std::string folded(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (character.isValid) {
      appendCharacter(smallOf(character.code), result);
    } else {
      result += text.substr(0, character.size);
    }
    text.remove_prefix(character.size);
  }
  return result;
}

}  // namespace hearth::tool
