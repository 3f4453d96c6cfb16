// Punycode writes the ASCII characters of a label first, then a '-', then where the other
// characters go. These are put in by code point, the lowest first, so each is told by one number:
// how many steps lie between it and the one before it, where a step goes from one place in the text
// to the next, and from the last place on to the first one of the next code point.
//
// The numbers stand behind each other without anything between them, in digits a-z0-9 to the base
// 36 with the lowest first. A digit below a threshold is the last of its number. The thresholds
// follow a bias that adapts to the sizes of the numbers so far, which keeps the next ones short.
#include "schema/format/punycode.h"

#include <algorithm>
#include <cstdint>

#include "base/ascii.h"
#include "base/utf8.h"

namespace hearth::schema {
namespace {

constexpr uint32_t kBase = 36, kLeast = 1, kMost = 26;  // the digits, and the thresholds
constexpr std::size_t kLongestLabel = 63;

// The characters of a label, without memory of their own.
class Points {
 public:
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] const uint32_t* begin() const { return points_; }
  [[nodiscard]] const uint32_t* end() const { return points_ + size_; }
  // Requires that there is room.
  void insert(std::size_t at, uint32_t point) {
    std::copy_backward(points_ + at, points_ + size_, points_ + size_ + 1);
    points_[at] = point;
    ++size_;
  }
  void add(uint32_t point) { points_[size_++] = point; }

 private:
  uint32_t points_[kLongestLabel + 1];
  std::size_t size_ = 0;
};

// The bias after the numbers seen so far; one object per text. The first number, which leads out of
// ASCII, is far larger than the others and is damped.
class Bias {
 public:
  // Of the digit at position k, which counts in steps of kBase.
  [[nodiscard]] uint32_t threshold(uint32_t k) const {
    return k <= bias_ ? kLeast : std::min(k - bias_, kMost);
  }
  // Learns from a number, after which the text has so many points.
  void adapt(uint32_t delta, uint32_t points) {
    constexpr uint32_t kSkew = 38, kDamp = 700;
    delta = isFirst_ ? delta / kDamp : delta / 2;
    isFirst_ = false;
    delta += delta / points;
    uint32_t k = 0;
    for (; delta > (kBase - kLeast) * kMost / 2; k += kBase) {
      delta /= kBase - kLeast;
    }
    bias_ = k + (kBase - kLeast + 1) * delta / (delta + kSkew);
  }

 private:
  uint32_t bias_ = 72;
  bool isFirst_ = true;
};

// Digits are letters first, in either case, then 0 to 9 for 26 to 35.
int digitValue(char c) {
  return isDigit(c) ? c - '0' + 26 : isLetter(c) ? (c | 0x20) - 'a' : -1;
}
char digitOf(uint32_t value) {
  return static_cast<char>(value < 26 ? 'a' + value : '0' + value - 26);
}

// Reads one number off the text and adds it to `sum`. False when a digit is wrong or missing, or
// the number is beyond 32 bits, which no label needs.
bool addNumber(const Bias& bias, std::string_view& text, uint64_t& sum) {
  uint64_t weight = 1;
  for (uint32_t k = kBase;; k += kBase) {
    const int digit = text.empty() ? -1 : digitValue(text.front());
    if (digit < 0) {
      return false;
    }
    text.remove_prefix(1);
    sum += static_cast<uint32_t>(digit) * weight;
    const uint32_t threshold = bias.threshold(k);
    if (static_cast<uint32_t>(digit) < threshold) {
      return true;
    }
    weight *= kBase - threshold;
    if (weight > UINT32_MAX || sum > UINT32_MAX) {
      return false;
    }
  }
}

void writeNumber(const Bias& bias, uint32_t number, std::string& text) {
  for (uint32_t k = kBase;; k += kBase) {
    const uint32_t threshold = bias.threshold(k);
    if (number < threshold) {
      break;
    }
    text += digitOf(threshold + (number - threshold) % (kBase - threshold));
    number = (number - threshold) / (kBase - threshold);
  }
  text += digitOf(number);
}

}  // namespace

// The last '-' stands between the ASCII characters and the numbers.
bool decodePunycode(std::string_view text, std::string& utf8) {
  if (text.size() > kLongestLabel) {
    return false;
  }
  const std::size_t dash = text.rfind('-');
  Points points;
  if (dash != std::string_view::npos) {
    for (const char c : text.substr(0, dash)) {
      points.add(static_cast<unsigned char>(c));
    }
    text.remove_prefix(dash + 1);
  }
  Bias bias;
  uint64_t point = 128;
  uint64_t at = 0;
  while (!text.empty()) {
    const uint64_t before = at;
    if (!addNumber(bias, text, at)) {
      return false;
    }
    // The number counts on from the last place; each time round the text is one code point further.
    const uint64_t size = points.size() + 1;
    bias.adapt(static_cast<uint32_t>(at - before), static_cast<uint32_t>(size));
    point += at / size;
    at %= size;
    if (point > kLastCodePoint) {
      return false;
    }
    points.insert(static_cast<std::size_t>(at), static_cast<uint32_t>(point));
    ++at;
  }
  for (const uint32_t code : points) {
    appendCharacter(code, utf8);
  }
  return true;
}

// Goes through the code points from the lowest beyond ASCII; for each, all places in the text are
// passed, and those that hold it are written down.
bool encodePunycode(std::string_view utf8, std::string& text) {
  Points points;
  while (!utf8.empty()) {
    uint32_t code = 0;
    if (points.size() > kLongestLabel || !takeCharacter(utf8, code)) {
      return false;
    }
    points.add(code);
    if (code < 128) {
      text += static_cast<char>(code);
    }
  }
  // How many characters are written.
  auto done = static_cast<uint32_t>(text.size());
  if (done > 0) {
    text += '-';
  }
  Bias bias;
  uint32_t delta = 0;
  for (uint32_t point = 128; done < points.size(); ++point, ++delta) {
    uint32_t next = UINT32_MAX;
    // The lowest code point that is not written yet.
    for (const uint32_t code : points) {
      next = code >= point ? std::min(next, code) : next;
    }
    // Skips the code points that the text does not have, a round for each.
    delta += (next - point) * (done + 1);
    point = next;
    for (const uint32_t code : points) {
      delta += code < point;  // a place that exists by now
      if (code == point) {
        writeNumber(bias, delta, text);
        bias.adapt(delta, ++done);
        delta = 0;
      }
    }
  }
  return text.size() <= kLongestLabel;
}

}  // namespace hearth::schema
