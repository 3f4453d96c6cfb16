// What a kit operation answers: a value, or a failure that says what was wrong.
//
//   hearth::Result<hearth::Change> change = hearth::Change::begin(API_WIFI, "radios.[0]", session);
//   if (!change) {
//     return answer(change.failure().sentence);
//   }
//
// Nothing in the kit throws but the standard library's own std::bad_alloc. Everything compiles with
// -fno-exceptions and -fno-rtti.
#ifndef HEARTH_KIT_RESULT_H
#define HEARTH_KIT_RESULT_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace hearth {

// What kind of failure it is, for code that decides by it.
enum class Fault : uint8_t {
  kNone,         // there is no failure
  kBadArgument,  // a null or empty name, a NUL inside a path, a document that is not there
  kNoArea,       // no such API area
  kNoMessage,    // no such message in the area
  kNoSession,    // the session is not registered, or was removed meanwhile
  kBusy,         // held by another thread or process for longer than the caller would wait
  kNoDatabase,   // the area has no database file, or it cannot be read
  kBadDatabase,  // the area's database file does not parse
  kNoValue,      // nothing is at the path
  kNotStored,    // the value cannot be put at this path, or is none that JSON has
  kRefused,      // a schema does not allow the value; Failure::broken says why
  kNoSchema,     // there is no schema, and the caller asked for one
  kBadSchema,    // the schema does not parse, or is no schema
  kNotSaved,     // the file could not be written; it is as it was
  kEnded,        // the change or lock has ended already, or was moved away
  kNoFile,       // no such file, or it cannot be read
  kBadText,      // the text is not JSON; Failure::line and column say where
  kNoMemory,
  kSystem  // the system refused something else; the sentence names it
};

// One rule of a schema that a value breaks; the texts are those of hearth/violations.h, without
// secrets.
struct BrokenRule {
  std::string place;     // JSON pointer to the value at fault, "" for the whole
  std::string rule;      // JSON pointer to the rule in the schema
  std::string keyword;   // the rule's keyword, "" when the schema as a whole is at fault
  std::string member;    // the member that is missing or whose name is refused, else ""
  std::string sentence;  // begins with the place: "must be at most 64 characters long, but has 80"
};

struct Failure {
  Fault fault = Fault::kNone;
  std::string sentence;            // for a person; without a line end, and without secrets
  std::size_t line = 0;            // of what does not parse, from 1; else 0
  std::size_t column = 0;          // in characters, from 1; else 0
  std::vector<BrokenRule> broken;  // of kRefused and kBadSchema, in the order of the schema
};

// A value or a failure. Owns either. As safe between threads as what it holds.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : state_(std::move(value)) {}            // NOLINT(google-explicit-constructor)
  Result(Failure failure) : state_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return std::holds_alternative<T>(state_); }

  // The value. Requires: there is one; a program that reads the value of a failure is stopped by
  // std::abort.
  T& operator*() & { return held(); }
  const T& operator*() const& { return const_cast<Result*>(this)->held(); }
  T&& operator*() && { return std::move(held()); }
  T* operator->() { return &held(); }
  const T* operator->() const { return &const_cast<Result*>(this)->held(); }

  // The failure; one with Fault::kNone and an empty sentence when there is a value.
  const Failure& failure() const {
    static const Failure none;
    const Failure* const failure = std::get_if<Failure>(&state_);
    return failure != nullptr ? *failure : none;
  }

 private:
  T& held() {
    T* const value = std::get_if<T>(&state_);
    if (value == nullptr) {
      std::abort();
    }
    return *value;
  }

  std::variant<T, Failure> state_;
};

// Success or a failure.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Failure failure) : failure_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return failure_.fault == Fault::kNone; }
  const Failure& failure() const { return failure_; }

 private:
  Failure failure_;
};

namespace detail {

inline Failure failure(Fault fault, std::string sentence) {
  Failure made;
  made.fault = fault;
  made.sentence = std::move(sentence);
  return made;
}

inline std::string inQuotes(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 2);
  return result.append("\"").append(text).append("\"");
}

}  // namespace detail
}  // namespace hearth

#endif
