// Compiles patterns and matches them within limits.
//
// Both may be written to do harm. Groups deep in each other would take the stack while compiling,
// so their depth is limited. A match may try exponentially many ways, so each is given a number of
// points to which it may come back, and a limit on memory; one that needs more is refused as a
// pattern that takes too much work. All of it spends effort before it happens.
//
// Compiled patterns are kept in a table, found by the address of their text. A pattern whose place
// is taken by another one takes it over; at worst each match compiles anew, which effort bounds
// too.
#include "schema/pattern/pattern.h"

#include <algorithm>
#include <cstdint>

namespace hearth::schema {
namespace {

// Groups in each other. Deeper ones would take more stack to compile than a small thread has.
constexpr uint32_t kGroupDepth = 20;
constexpr uint32_t kHeapLimitKiB = 4096;

// How many backtracking points a match may use up. The limits are tried in turn, so that a match
// that needs few is charged for few.
constexpr uint32_t kMatchLimits[] = {100, 5'000, 250'000};

PCRE2_SPTR bytes(std::string_view text) {
  return reinterpret_cast<PCRE2_SPTR>(text.data());
}

}  // namespace

Patterns::~Patterns() {
  for (Compiled& entry : cache_) {
    release(entry);
  }
  pcre2_match_context_free(matchContext_);
  pcre2_compile_context_free(compileContext_);
}

void Patterns::release(Compiled& entry) {
  pcre2_match_data_free(entry.data);
  pcre2_code_free(entry.code);
  entry = Compiled{};
}

// Makes the contexts that hold the limits, when the first pattern needs them.
bool Patterns::prepare() {
  if (matchContext_ != nullptr) {
    return true;
  }
  if (compileContext_ == nullptr) {
    compileContext_ = pcre2_compile_context_create(nullptr);
  }
  matchContext_ = pcre2_match_context_create(nullptr);
  if (compileContext_ == nullptr || matchContext_ == nullptr) {
    return effort_.stop(Trouble::kNoMemory);
  }
  pcre2_set_parens_nest_limit(compileContext_, kGroupDepth);
  pcre2_set_heap_limit(matchContext_, kHeapLimitKiB);
  return true;
}

Patterns::Compiled& Patterns::entryOf(const char* name) {
  const uintptr_t bits = reinterpret_cast<uintptr_t>(name);
  return cache_[(bits >> 4 ^ bits >> 9) % kCached];
}

// Compiles what is in PCRE2's words already. Its options make up for what cannot be translated: $
// matches at the very end only, a reference to a group that did not match is empty, and [] matches
// nothing.
bool Patterns::compile(std::string_view source, bool repeats, Compiled& entry) {
  constexpr uint32_t kUsual =
      PCRE2_UTF | PCRE2_DOLLAR_ENDONLY | PCRE2_MATCH_UNSET_BACKREF | PCRE2_ALLOW_EMPTY_CLASS;
  // Groups to which nothing refers need not be captured.
  const bool refers = source.find("\\g{") != std::string_view::npos;
  const uint32_t chosen = refers ? kUsual : kUsual | PCRE2_NO_AUTO_CAPTURE;
  int error = 0;
  PCRE2_SIZE offset = 0;
  entry.code =
      pcre2_compile(bytes(source), source.size(), chosen, &error, &offset, compileContext_);
  if (entry.code == nullptr) {
    constexpr int kNoMemory = 121, kLookbehindNotFixed = 125;
    if (error == kNoMemory) {
      effort_.stop(Trouble::kNoMemory);
    }
    entry.isBeyondPcre2 = error == kLookbehindNotFixed;
    return false;
  }
  entry.data = pcre2_match_data_create_from_pattern(entry.code, nullptr);
  std::size_t size = 0;
  pcre2_pattern_info(entry.code, PCRE2_INFO_SIZE, &size);
  uint32_t options = 0;
  pcre2_pattern_info(entry.code, PCRE2_INFO_ALLOPTIONS, &options);
  entry.isAnchored = (options & PCRE2_ANCHORED) != 0;
  entry.repeats = repeats;
  return (entry.data != nullptr || effort_.stop(Trouble::kNoMemory)) && effort_.spend(size / 16);
}

bool Patterns::matches(std::string_view pattern, std::string_view text) {
  Compiled& entry = entryOf(pattern.data());
  if (entry.name != pattern.data()) {
    release(entry);
    std::string translated;
    bool repeats = false;
    if (!prepare() || !effort_.spend(20 + pattern.size())) {
      return false;
    }
    if (!translatePattern(pattern, translated, repeats) || !compile(translated, repeats, entry)) {
      return effort_.stop(Trouble::kBadPattern);
    }
    entry.name = pattern.data();
  }
  return search(entry, text);
}

// A pattern of our own is trusted, so only the match is paid for. When this PCRE2 is too old for
// it, the text is given the benefit of the doubt.
bool Patterns::matchesOwn(const char* pattern, std::string_view text) {
  Compiled& entry = entryOf(pattern);
  if (entry.name != pattern) {
    release(entry);
    if (!prepare()) {
      return false;
    }
    if (!compile(pattern, true, entry)) {
      return !effort_.isStopped();
    }
    entry.name = pattern;
  }
  return search(entry, text);
}

// Compiled and thrown away: no text is matched with it.
bool Patterns::isPattern(std::string_view pattern) {
  std::string translated;
  Compiled entry;
  bool repeats = false;
  if (!prepare() || !effort_.spend(20 + pattern.size()) ||
      !translatePattern(pattern, translated, repeats)) {
    return false;
  }
  const bool isPattern = compile(translated, repeats, entry) || entry.isBeyondPcre2;
  release(entry);
  return isPattern;
}

// What a match costs at worst: at every start as many points as the limit, and one pass over the
// rest of the text, for which PCRE2 does not count. An anchored pattern has one start; without a
// quantifier neither comes into play.
std::size_t Patterns::costOf(const Compiled& entry, std::size_t size, uint32_t limit) {
  const uint64_t starts = entry.isAnchored ? 1 : uint64_t{size} + 1;
  const uint64_t pass = entry.repeats ? size / 16 : 0;
  const uint64_t cost = 1 + starts * std::max<uint64_t>(entry.repeats ? limit / 16 : 1, pass);
  return static_cast<std::size_t>(std::min<uint64_t>(cost + size / 16, SIZE_MAX));
}

// Matches with one limit after the other until one suffices.
bool Patterns::search(const Compiled& entry, std::string_view text) {
  for (const uint32_t limit : kMatchLimits) {
    if (!effort_.spend(costOf(entry, text.size(), limit))) {
      return false;
    }
    pcre2_set_match_limit(matchContext_, limit);
    const int found =
        pcre2_match(entry.code, bytes(text), text.size(), 0, 0, entry.data, matchContext_);
    if (found == PCRE2_ERROR_NOMEMORY) {
      return effort_.stop(Trouble::kNoMemory);
    }
    // A higher limit on points would not help against these two.
    if (found == PCRE2_ERROR_HEAPLIMIT || found == PCRE2_ERROR_DEPTHLIMIT) {
      break;
    }
    if (found != PCRE2_ERROR_MATCHLIMIT) {
      return found >= 0;  // text that is not UTF-8 matches nothing
    }
  }
  return effort_.stop(Trouble::kPatternLimit);
}

}  // namespace hearth::schema
