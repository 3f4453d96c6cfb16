// What the fuzz targets share: a claim that stops the run, and a folder in memory to work in.
#ifndef HEARTH_FUZZ_FUZZ_H
#define HEARTH_FUZZ_FUZZ_H

#include <fcntl.h>
#include <json-c/json.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/json_ref.h"

namespace fuzz {

using hearth::JsonRef;
using hearth::memberOf;

// A claim about the input at hand; the fuzzer keeps the input that breaks it.
inline void claim(bool holds, const char* what, const std::string& detail = "") {
  if (!holds) {
    fprintf(stderr, "does not hold: %s %s\n", what, detail.c_str());
    abort();
  }
}

// The working directory becomes a new folder, removed at the end of the process when nothing but
// the named files is in it.
class Folder {
 public:
  Folder() { claim(mkdtemp(path_) != nullptr && chdir(path_) == 0, "there is a folder in memory"); }
  ~Folder() {
    for (const char* const name : {"in", "out", "with-line-end", ".loginrecord.cfg"}) {
      unlink(name);
    }
    rmdir(path_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  static void write(const char* name, const std::string& contents) {
    const int file = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    claim(::write(file, contents.data(), contents.size()) == static_cast<ssize_t>(contents.size()),
          "the folder takes files");
    close(file);
  }

  static std::string read(const char* name) {
    const int file = open(name, O_RDONLY | O_CLOEXEC);
    std::string contents;
    char part[4096];
    for (ssize_t got; (got = ::read(file, part, sizeof part)) > 0;) {
      contents.append(part, static_cast<std::size_t>(got));
    }
    close(file);
    return contents;
  }

 private:
  char path_[32] = "/dev/shm/hearth-fuzz-XXXXXX";
};

inline std::string plain(json_object* value) {
  return json_object_to_json_string_ext(value, JSON_C_TO_STRING_PLAIN);
}

}  // namespace fuzz

#endif
