// Defines the C library's functions for files, each in the variants of 32-bit systems. Each counts
// its call, lets the fault happen if it is due, and else calls the real function. No header that
// declares these functions is included, since their declarations differ from these in details.
#include "tests/faults/file_faults.h"

#include <dlfcn.h>
#include <sys/types.h>

#include <cerrno>
#include <type_traits>

extern "C" int raise(int signal) noexcept;

namespace {

constexpr int kSigKill = 9;

FileFault fault;
int faultyCall = 0;
int calls = 0;
bool counts = false;
void (*watch)(const FileCall& call) = nullptr;

bool isFaulty() {
  return counts && ++calls >= faultyCall && faultyCall > 0 && (calls == faultyCall || fault.lasts);
}

template <typename Result, typename... Args>
Result real(const char* name, Args... args) {
  return reinterpret_cast<Result (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

template <typename Result>
Result failed() {
  errno = fault.error;
  if constexpr (std::is_pointer_v<Result>) {
    return nullptr;
  } else {
    return static_cast<Result>(-1);
  }
}

// Any call but those below. A call that fails does nothing.
template <typename Result, typename... Args>
Result call(const char* name, Args... args) {
  if (isFaulty()) {
    if (fault.error == FileFault::kKill) {
      raise(kSigKill);
    }
    if (fault.error > 0) {
      return failed<Result>();
    }
  }
  return real<Result>(name, args...);
}

template <typename Buffer>
ssize_t transfer(const char* name, int fd, Buffer buffer, size_t size) {
  if (isFaulty()) {
    if (fault.error > 0) {
      return failed<ssize_t>();
    }
    size -= size / 2;
    if (fault.error == FileFault::kKill) {
      real<ssize_t>(name, fd, buffer, size);
      raise(kSigKill);
    }
  }
  return real<ssize_t>(name, fd, buffer, size);
}

template <typename Result>
Result watched(Result result, FileCall call) {
  if (counts && watch != nullptr) {
    const int kept = errno;
    counts = false;
    call.failed = result < 0;
    watch(call);
    counts = true;
    errno = kept;
  }
  return result;
}

}  // namespace

void watchFileCalls(void (*watcher)(const FileCall& call)) {
  watch = watcher;
}

void failFileCall(int nth, const FileFault& itsFault) {
  fault = itsFault;
  faultyCall = nth;
  calls = 0;
  counts = true;
}

int countedFileCalls() {
  counts = false;
  return calls;
}

#define CALL(result, name, parameters, ...)  \
  extern "C" result name parameters {        \
    return call<result>(#name, __VA_ARGS__); \
  }

#define OPEN(name)                                                               \
  CALL(int, name, (const char* path, int flags, mode_t mode), path, flags, mode) \
  CALL(int, name##64, (const char* path, int flags, mode_t mode), path, flags, mode)
#define OPENAT(name)                                                          \
  extern "C" int name(int folder, const char* path, int flags, mode_t mode) { \
    const int opened = call<int>(#name, folder, path, flags, mode);           \
    return watched(opened, {"openat", opened, flags, false});                 \
  }
#define STAT(suffix)                                                                          \
  CALL(int, stat##suffix, (const char* path, void* status), path, status)                     \
  CALL(int, lstat##suffix, (const char* path, void* status), path, status)                    \
  CALL(int, fstat##suffix, (int fd, void* status), fd, status)                                \
  CALL(int, fstatat##suffix, (int folder, const char* path, void* status, int flags), folder, \
       path, status, flags)

OPEN(open)
OPENAT(openat)
OPENAT(openat64)
STAT()
STAT(64)
// A 32-bit system whose time has 64 bits calls these.
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names
CALL(int, __stat64_time64, (const char* path, void* status), path, status)
CALL(int, __lstat64_time64, (const char* path, void* status), path, status)
CALL(int, __fstat64_time64, (int fd, void* status), fd, status)
CALL(int, __fstatat64_time64, (int folder, const char* path, void* status, int flags), folder, path,
     status, flags)
// NOLINTEND(bugprone-reserved-identifier)
CALL(void*, fopen, (const char* path, const char* mode), path, mode)
CALL(void*, fopen64, (const char* path, const char* mode), path, mode)
CALL(void*, fdopendir, (int fd), fd)
CALL(void*, readdir, (void* folder), folder)
CALL(void*, readdir64, (void* folder), folder)
CALL(int, fdatasync, (int fd), fd)
CALL(int, ftruncate, (int fd, long size), fd, size)
CALL(int, ftruncate64, (int fd, long long size), fd, size)
CALL(int, fchmod, (int fd, mode_t mode), fd, mode)
CALL(int, fchown, (int fd, uid_t owner, gid_t group), fd, owner, group)
CALL(int, flock, (int fd, int operation), fd, operation)
CALL(int, faccessat, (int folder, const char* path, int mode, int flags), folder, path, mode, flags)
CALL(int, rename, (const char* from, const char* to), from, to)
CALL(int, unlink, (const char* path), path)
CALL(ssize_t, readlinkat, (int folder, const char* path, char* target, size_t size), folder, path,
     target, size)

extern "C" ssize_t read(int fd, void* data, size_t size) {
  return transfer("read", fd, data, size);
}
extern "C" ssize_t write(int fd, const void* data, size_t size) {
  return watched(transfer("write", fd, data, size), {"write", fd, 0, false});
}
extern "C" int fsync(int fd) {
  return watched(call<int>("fsync", fd), {"fsync", fd, 0, false});
}
extern "C" int renameat(int from, const char* old, int to, const char* made) {
  return watched(call<int>("renameat", from, old, to, made), {"renameat", to, 0, false});
}
extern "C" int unlinkat(int folder, const char* path, int flags) {
  return watched(call<int>("unlinkat", folder, path, flags), {"unlinkat", folder, flags, false});
}

// Closes the descriptor even if the call fails, as the system does.
extern "C" int close(int fd) {
  const bool fails = isFaulty();
  if (fails && fault.error == FileFault::kKill) {
    raise(kSigKill);
  }
  const int closed = real<int>("close", fd);
  return fails && fault.error > 0 ? failed<int>() : closed;
}
