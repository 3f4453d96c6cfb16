// Objects that live to the very end of the process.
//
// exit() destroys static objects while other threads still run: a thread that logs, or a handler
// that reports a crash, would then use a freed text. What such late users need is made when the
// library is loaded, as any static object is, and never destroyed. Its memory stays reachable from
// the object, so that leak checkers have nothing to report.
#ifndef HEARTH_BASE_UNDESTROYED_H
#define HEARTH_BASE_UNDESTROYED_H

#include <new>
#include <string>
#include <utility>

#include "hearth/export.h"

namespace hearth {

// Room of exactly a T's size in which one is made, and which has nothing to destroy.
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

// The mark that a variable's symbol carries when its type holds a std::string of libstdc++.
#if defined(_GLIBCXX_USE_CXX11_ABI) && _GLIBCXX_USE_CXX11_ABI
#define HEARTH_STRING_MARK "B5cxx11"
#else
#define HEARTH_STRING_MARK ""
#endif

// Defines a public static data member whose type holds a std::string, without its destructor:
//
//   HEARTH_UNDESTROYED_MEMBER("8BEConfig8LOG_FILE", logFile, std::string)("./BE.log");
//
// The class declares the member with its own type. The definition stands in namespace hearth under
// a name that nobody uses, and takes the member's symbol: class and member, each after its length.
// A wrong symbol does not link. The member is used by its own name everywhere, so that a program
// that moves the object into its own memory (a copy relocation) and the library mean the same one.
// The file is compiled with -fno-lto: an optimiser that sees declaration and definition side by
// side would find that their types differ.
#define HEARTH_UNDESTROYED_MEMBER(symbol, name, ...) \
  HEARTH_API hearth::Undestroyed<__VA_ARGS__> name __asm__("_ZN" symbol HEARTH_STRING_MARK "E")

#endif
