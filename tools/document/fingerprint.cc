#include "tools/document/fingerprint.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "base/json_parser.h"
#include "hearth/kit/render.h"

namespace hearth::tool {
namespace {

std::string digitsOf(std::string_view bytes) {
  constexpr uint64_t kBasis = 0xcbf29ce484222325U;
  constexpr uint64_t kPrime = 0x100000001b3U;
  uint64_t hash = kBasis;
  for (const char c : bytes) {
    hash = (hash ^ static_cast<unsigned char>(c)) * kPrime;
  }
  char digits[17];
  std::snprintf(digits, sizeof(digits), "%016" PRIx64, hash);
  return digits;
}

}  // namespace

std::string fingerprintOf(View document) {
  return digitsOf(toText(document));
}

std::string fingerprintOfText(std::string_view text) {
  const ParsedJson parsed = parseJson(text);
  return parsed.isValid() ? fingerprintOf(View(parsed.value.get())) : digitsOf(text);
}

}  // namespace hearth::tool
