// Frames come from the unwinder of C++ exceptions, which every compiler's run-time library has.
// Where the C library has no unwind tables, as musl's has none, it knows a signal's frame by the
// code that the signal returns to, and a stack that goes through the C library's functions ends
// there. Names come from dladdr, so only exported functions have one.
#ifndef HEARTH_HAS_BACKTRACE
#include "log/backtrace.h"

#include <dlfcn.h>
#include <unwind.h>

#include <cstring>

#include "base/address.h"
#include "base/write_all.h"

namespace {

struct Frames {
  void** const at;
  const int most;
  int count;  // from -1: the first frame is backtrace's own
};

_Unwind_Reason_Code addFrame(_Unwind_Context* context, void* argument) {
  auto& frames = *static_cast<Frames*>(argument);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the unwinder tells numbers
  const auto address = reinterpret_cast<void*>(_Unwind_GetIP(context));
  if (frames.count == frames.most || address == nullptr) {
    return _URC_END_OF_STACK;
  }
  if (frames.count >= 0) {
    frames.at[frames.count] = address;
  }
  ++frames.count;
  return _URC_NO_REASON;
}

void write(int fd, const char* text) {
  hearth::writeAll(fd, text, strlen(text));
}

// "(function+0x12)", or the offset in the file alone.
void writePlace(int fd, const char* function, const void* start, const void* address) {
  const auto offset = static_cast<const char*>(address) - static_cast<const char*>(start);
  write(fd, "(");
  write(fd, function != nullptr ? function : "");
  write(fd, "+");
  // NOLINTNEXTLINE(performance-no-int-to-ptr): an offset is printed as an address is
  write(fd, offset != 0 ? hearth::Address(reinterpret_cast<const void*>(offset)).text() : "0x0");
  write(fd, ")");
}

}  // namespace

int backtrace(void** frames, int most) {
  Frames found{frames, most, -1};
  _Unwind_Backtrace(addFrame, &found);
  return found.count > 0 ? found.count : 0;
}

void backtrace_symbols_fd(void* const* frames, int count, int fd) {
  for (int i = 0; i < count; ++i) {
    Dl_info info{};
    if (dladdr(frames[i], &info) != 0 && info.dli_fname != nullptr) {
      const bool isNamed = info.dli_sname != nullptr;
      write(fd, info.dli_fname);
      writePlace(fd, info.dli_sname, isNamed ? info.dli_saddr : info.dli_fbase, frames[i]);
    }
    write(fd, "[");
    write(fd, hearth::Address(frames[i]).text());
    write(fd, "]\n");
  }
}

#endif
