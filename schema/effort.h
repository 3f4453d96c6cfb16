// What one validation may cost, and what ended it early. Whoever does work that a mean schema or
// instance could make large spends from the budget first and stops when it is refused.
#ifndef HEARTH_SCHEMA_EFFORT_H
#define HEARTH_SCHEMA_EFFORT_H

#include <cstddef>
#include <cstdint>

namespace hearth::schema {

// Why a validation ended before its end. The answer is then "does not conform", whatever `not` or
// another combination would make of it.
enum class Trouble : uint8_t {
  kNone,
  kTooDeep,
  kEndless,  // a reference that leads back to itself
  kTooMuchWork,
  kNoMemory,
  kBadSchema,  // neither an object nor a boolean
  kBadValue,   // of a keyword
  kLongIdentifier,
  kUnresolved,  // a reference
  kBadPattern,
  kPatternLimit,
  kUnknownVocabulary,
};

// True when the schema is at fault, and no limit of ours.
constexpr bool isOfSchema(Trouble trouble) {
  return trouble != Trouble::kTooDeep && trouble != Trouble::kTooMuchWork &&
         trouble != Trouble::kNoMemory && trouble != Trouble::kPatternLimit;
}

// Schemas, and containers inside values that are compared, stand at most this deep in each other.
constexpr unsigned kMaxDepth = 100;

// The walk down takes no more stack than this, which only the large frames of a build with
// sanitizers reach before that depth. With the compiler of patterns on top it fits a thread of 128
// KiB.
constexpr std::size_t kMaxStack = std::size_t{64} * 1024;

class Effort {
 public:
  // False when the budget is used up, which stops the validation, or when it was stopped before.
  [[nodiscard]] bool spend(std::size_t steps) {
    if (steps > left_ || isStopped()) {
      return stop(Trouble::kTooMuchWork);
    }
    left_ -= steps;
    return true;
  }

  // Stops the validation; the first reason stays. Answers false, for the caller to pass on.
  bool stop(Trouble trouble) {
    if (trouble_ == Trouble::kNone) {
      trouble_ = trouble;
    }
    return false;
  }

  // Takes a stop back: what made it turned out not to count.
  void forget() { trouble_ = Trouble::kNone; }

  [[nodiscard]] bool isStopped() const { return trouble_ != Trouble::kNone; }
  [[nodiscard]] Trouble trouble() const { return trouble_; }

 private:
  // A step is a keyword looked at, a value compared, a member visited: some tens of nanoseconds on
  // a desk computer, so that the whole is less than a second there. A request takes thousands.
  std::size_t left_ = 10'000'000;
  Trouble trouble_ = Trouble::kNone;
};

}  // namespace hearth::schema

#endif
