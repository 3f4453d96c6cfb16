// What Debian's unwinder (libgcc_s.so.1) finds with glibc only.
#define _GNU_SOURCE
#include <link.h>
#include <string.h>

// What glibc calls struct dl_find_object.
struct found {
  unsigned long long flags;
  void* start;
  void* end;
  struct link_map* map;
  void* table;
  unsigned long long reserved[7];
};

struct search {
  const char* address;
  struct found* found;
};

static int look(struct dl_phdr_info* object, size_t size, void* argument) {
  const struct search* const search = argument;
  struct found found;
  memset(&found, 0, sizeof found);
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)* const part = &object->dlpi_phdr[i];
    char* const start = (char*)object->dlpi_addr + part->p_vaddr;
    char* const end = start + part->p_memsz;
    if (part->p_type == PT_GNU_EH_FRAME) {
      found.table = start;
    } else if (part->p_type == PT_LOAD && search->address >= start && search->address < end) {
      found.start = start;
      found.end = end;
    }
  }
  if (found.start == NULL || found.table == NULL) {
    return 0;
  }
  *search->found = found;
  return 1;
}

// Finds the loaded object of an address and its table of frames. 0, or -1 where there is none.
int _dl_find_object(void* address, struct found* found) {
  struct search search = {address, found};
  return dl_iterate_phdr(look, &search) ? 0 : -1;
}

// The library has these itself, under an old version that musl's loader passes over. Only its own
// start looks for them.
unsigned __cpu_model[4];
int __cpu_indicator_init(void) {
  return 0;
}
