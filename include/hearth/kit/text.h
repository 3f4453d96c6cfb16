// Texts as kit operations take them. Both types are made implicitly from what a caller has at hand
// and are used for the time of the call only.
#ifndef HEARTH_KIT_TEXT_H
#define HEARTH_KIT_TEXT_H

#if __cplusplus < 201703L
#error "hearth/kit.h needs C++17; hearth/hearth.h, the contract alone, needs C++11"
#endif

#include <string>
#include <string_view>

namespace hearth {

// Any bytes, NULs included. A null pointer is an empty text.
class Text {
 public:
  constexpr Text(const char* text)  // NOLINT(google-explicit-constructor)
      : view_(text != nullptr ? std::string_view(text) : std::string_view()) {}
  constexpr Text(std::string_view text) : view_(text) {}  // NOLINT(google-explicit-constructor)
  Text(const std::string& text) : view_(text) {}          // NOLINT(google-explicit-constructor)

  constexpr std::string_view view() const { return view_; }

 private:
  std::string_view view_;
};

// A text that ends at its first NUL, as paths, session keys and file names do. A null pointer, and
// a std::string with a NUL inside, are no such text: whoever takes one answers a failure instead of
// reading half of it.
class Name {
 public:
  constexpr Name(const char* text) : text_(text) {}  // NOLINT(google-explicit-constructor)
  Name(const std::string& text)                      // NOLINT(google-explicit-constructor)
      : text_(text.find('\0') == std::string::npos ? text.c_str() : nullptr) {}

  // Null when there is no such text.
  constexpr const char* get() const { return text_; }
  constexpr bool isNull() const { return text_ == nullptr; }
  constexpr bool isEmpty() const { return text_ == nullptr || *text_ == '\0'; }

 private:
  const char* text_;
};

}  // namespace hearth

#endif
