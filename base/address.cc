// The digits are written from the last one to the first, so the text begins where they end.
#include "base/address.h"

#include <cstdint>

namespace hearth {

Address::Address(const void* address) : text_("(nil)") {
  if (address == nullptr) {
    return;
  }
  char* at = digits_ + sizeof(digits_);
  *--at = '\0';
  for (auto rest = reinterpret_cast<uintptr_t>(address); rest != 0; rest /= 16) {
    *--at = "0123456789abcdef"[rest % 16];
  }
  *--at = 'x';
  *--at = '0';
  text_ = at;
}

}  // namespace hearth
