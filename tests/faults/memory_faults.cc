// Defines malloc and its kin: each counts its call, refuses it if that is due, and else has it done
// by the functions behind this library, the C library's own.
#include "tests/faults/memory_faults.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "log/backtrace.h"

namespace {

int refused = 0;
bool refusalLasts = false;
int allocations = 0;
bool counts = false;
int blocks = 0;

// The stack of the first refusal.
constexpr int kMostFrames = 30;
void* frames[kMostFrames];
int frameCount = 0;

bool isRefused() {
  if (!counts || ++allocations < refused || (allocations > refused && !refusalLasts)) {
    return false;
  }
  if (allocations == refused) {
    frameCount = backtrace(frames, kMostFrames);
  }
  errno = ENOMEM;
  return true;
}

template <typename Function>
Function* behind(Function* /*ours*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void* counted(void* memory) {
  blocks += memory != nullptr ? 1 : 0;
  return memory;
}

}  // namespace

void failAllocation(int nth, bool lasts) {
  refused = nth;
  refusalLasts = lasts;
  allocations = 0;
  frameCount = 0;
  counts = true;
}

int countedAllocations() {
  counts = false;
  return allocations;
}

bool wasRefusedIn(const char* function) {
  for (int i = 0; i < frameCount; ++i) {
    Dl_info info{};
    if (dladdr(frames[i], &info) != 0 && info.dli_sname != nullptr &&
        std::strcmp(info.dli_sname, function) == 0) {
      return true;
    }
  }
  return false;
}

int blocksInUse() {
  return blocks;
}

extern "C" void* malloc(std::size_t size) {
  static auto* const allocate = behind(malloc, "malloc");
  return isRefused() ? nullptr : counted(allocate(size));
}

// Without the C library's own, which may call malloc and would be counted twice.
extern "C" void* calloc(std::size_t count, std::size_t size) {
  static auto* const allocate = behind(malloc, "malloc");
  std::size_t all = 0;
  if (__builtin_mul_overflow(count, size, &all) || isRefused()) {
    return nullptr;
  }
  void* const memory = counted(allocate(all));
  return memory != nullptr ? std::memset(memory, 0, all) : nullptr;
}

extern "C" void* realloc(void* memory, std::size_t size) {
  if (isRefused()) {
    return nullptr;
  }
  static auto* const allocate = behind(realloc, "realloc");
  void* const moved = allocate(memory, size);
  return memory == nullptr ? counted(moved) : moved;
}

extern "C" void free(void* memory) {
  blocks -= memory != nullptr ? 1 : 0;
  static auto* const release = behind(free, "free");
  release(memory);
}

// Not the C library's own, which has no unwind tables on some architectures: a backtrace from its
// call of malloc would end there.
extern "C" char* strdup(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* const copy = malloc(size);
  return copy != nullptr ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}
