// What a process pays for hearth: the libraries that come with it, and the heap for a database and
// for a session of its own. Linked to nothing of hearth's, so that the load can be seen.
//
//   memory LIBRARY DATABASE      in the folder that holds "data", the sessions' databases
#include <dlfcn.h>
#include <link.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

namespace {

std::set<std::string> seen;

unsigned long pages(unsigned long from, unsigned long to) {
  const auto page = static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
  return (to + page - 1) / page * page - from / page * page;
}

// Prints every object that has come in since the last walk. Only writable pages, those that become
// read-only after relocation included, cost memory of the process's own; the others are the file's.
int tellNewObject(dl_phdr_info* info, std::size_t, void* silent) {
  if (!seen.insert(info->dlpi_name).second || silent != nullptr) {
    return 0;
  }
  unsigned long shared = 0;
  unsigned long own = 0;
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const auto& part = info->dlpi_phdr[i];
    if (part.p_type == PT_LOAD) {
      ((part.p_flags & PF_W) != 0 ? own : shared) +=
          pages(part.p_vaddr, part.p_vaddr + part.p_memsz);
    }
  }
  const char* const slash = std::strrchr(info->dlpi_name, '/');
  std::printf("%-24s %8lu KiB of file, %5lu KiB own\n",
              slash == nullptr ? info->dlpi_name : slash + 1, shared / 1024, own / 1024);
  return 0;
}

std::size_t heap() {
  return mallinfo2().uordblks;
}

// The library's function of that symbol; ends the program if there is none.
template <typename Function>
Function* functionOf(void* library, const char* symbol) {
  void* const address = dlsym(library, symbol);
  if (address == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
  }
  Function* function = nullptr;
  std::memcpy(&function, &address, sizeof function);
  return function;
}

}  // namespace

int main(int, char** arguments) {
  dl_iterate_phdr(tellNewObject, &seen);
  const std::size_t before = heap();
  void* const library = dlopen(arguments[1], RTLD_NOW);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  dl_iterate_phdr(tellNewObject, nullptr);
  const std::size_t loaded = heap();
  std::printf("%-24s %8zu bytes\n", "heap for loading", loaded - before);

  auto* const load =
      functionOf<void*(const char*)>(library, "_ZN8JsonData20createObjectFromFileEPKc");
  if (load(arguments[2]) == nullptr) {
    return 1;
  }
  struct stat file {};
  (void)stat(arguments[2], &file);
  std::printf("%-24s %8zu bytes, file of %ld bytes\n", "heap for a database", heap() - loaded,
              static_cast<long>(file.st_size));

  functionOf<void()>(library, "_ZN11LocalDbCtrl4initEv")();
  const std::size_t started = heap();
  const int made = functionOf<int(const char*)>(library, "_ZN11LocalDbCtrl10cloneNewDBEPKc")("one");
  std::printf("%-24s %8zu bytes\n", "heap for a session", heap() - started);
  return made == 1 ? 0 : 1;
}
