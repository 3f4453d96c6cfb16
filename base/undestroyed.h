// Static objects that live to the very end of the process.
//
// exit() destroys static objects while other threads still run: a thread that logs, or a handler
// that reports a crash, would then use a freed text. An Undestroyed object is made when the library
// is loaded, as any static object is, and never destroyed. Its memory stays reachable from the
// object, so leak checkers have nothing to report.
#ifndef HEARTH_BASE_UNDESTROYED_H
#define HEARTH_BASE_UNDESTROYED_H

#include <new>
#include <string>
#include <utility>

#include "hearth/export.h"

namespace hearth {

// Room of exactly a T's size, in which the constructor makes a T. No destructor ever runs for it.
template <typename T>
class Undestroyed {
 public:
  template <typename... Arguments>
  explicit Undestroyed(Arguments&&... arguments) {
    new (room_) T(std::forward<Arguments>(arguments)...);
  }
  Undestroyed(const Undestroyed&) = delete;
  Undestroyed& operator=(const Undestroyed&) = delete;

 private:
  alignas(T) unsigned char room_[sizeof(T)];
};

}  // namespace hearth

// The mark that libstdc++ puts into the symbol of a variable whose type holds a std::string.
#if defined(_GLIBCXX_USE_CXX11_ABI) && _GLIBCXX_USE_CXX11_ABI
#define HEARTH_STRING_MARK "B5cxx11"
#else
#define HEARTH_STRING_MARK ""
#endif

// Defines a public static data member whose type holds a std::string, and that is not destroyed:
//
//   HEARTH_UNDESTROYED_MEMBER("8BEConfig8LOG_FILE", logFile, std::string)("./BE.log");
//
// The class declares the member with its plain type. The definition is a variable of namespace
// hearth, under a name that nobody uses, which takes over the member's symbol: class and member,
// each after its length. A wrong symbol does not link. All code uses the member by its own name, so
// that the library and a program that has moved the object into its own memory (a copy relocation)
// mean the same object. The defining file is compiled with -fno-lto: an optimiser that saw
// declaration and definition side by side would find that their types differ.
#define HEARTH_UNDESTROYED_MEMBER(symbol, name, ...) \
  HEARTH_API hearth::Undestroyed<__VA_ARGS__> name __asm__("_ZN" symbol HEARTH_STRING_MARK "E")

#endif
