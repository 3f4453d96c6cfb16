// The file is small and its records few, so it is read whole, searched from the front and written
// whole. Writing replaces the file in one step. It may be writable where it cannot be replaced: on
// a full disk, in a folder that takes no new file, as a mount point. Then it is written over in
// place, because an attempt that goes uncounted is worse than a file that a crash may leave
// half-written: the next start empties it anyway.
#include "login/record_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>

#include "base/unique_fd.h"
#include "base/write_all.h"
#include "files/replace_file.h"
#include "hearth/be_login_record.h"
#include "json/json_file.h"
#include "json/render.h"
#include "log/library_log.h"

namespace hearth {
namespace {

constexpr char kFile[] = ".loginrecord.cfg";
constexpr char kAddress[] = "ipAddress";
constexpr char kAttempts[] = "attempts";
constexpr char kLastAttempt[] = "lastAttempt";

// Compares by length, since a JSON text may hold zero bytes.
bool isRecordOf(json_object* element, const char* ipAddress) {
  json_object* const address = memberOf(element, kAddress);
  const std::size_t size = strlen(ipAddress);
  return json_object_is_type(address, json_type_string) != 0 &&
         static_cast<std::size_t>(json_object_get_string_len(address)) == size &&
         memcmp(json_object_get_string(address), ipAddress, size) == 0;
}

// Puts a member that the caller has just made, and takes over its reference. False when memory ran
// out, for the member or for its place.
bool put(json_object* record, const char* name, json_object* made) {
  if (made != nullptr && json_object_object_add(record, name, made) == 0) {
    return true;
  }
  json_object_put(made);
  return false;
}

// Puts the count, and the current time as that of the last attempt.
bool putAttempt(json_object* record, int32_t attempts) {
  char now[24];
  snprintf(now, sizeof(now), "%lu", static_cast<unsigned long>(time(nullptr)));
  return put(record, kAttempts, json_object_new_int(attempts)) &&
         put(record, kLastAttempt, json_object_new_string(now));
}

int32_t countOf(json_object* record) {
  return json_object_get_int(memberOf(record, kAttempts));
}

// Counts one attempt more. The count stays at its largest number.
bool putOneMore(json_object* record) {
  const int32_t attempts = countOf(record);
  return putAttempt(record,
                    attempts < std::numeric_limits<int32_t>::max() ? attempts + 1 : attempts);
}

// Writes a block at a position of the file.
bool writeAt(int fd, off_t offset, const char* data, std::size_t size) {
  return lseek(fd, offset, SEEK_SET) == offset && writeAll(fd, data, size);
}

// Writes over what the file holds. The part that makes the file longer goes first: if the disk is
// full, that part fails, the file is cut back to its old length, and nothing is lost.
bool overwrite(const char* text, std::size_t size) {
  const UniqueFd file(open(kFile, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status;
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return false;
  }
  const off_t old = status.st_size;
  const auto whole = static_cast<off_t>(size);
  const off_t rest = std::min(whole, old);
  const bool isWritten =
      writeAt(file.get(), rest, text + rest, static_cast<std::size_t>(whole - rest)) &&
      writeAt(file.get(), 0, text, static_cast<std::size_t>(rest));
  return ftruncate(file.get(), isWritten ? whole : old) == 0 && isWritten;
}

}  // namespace

bool writeRecordFile(json_object* array) {
  if (replaceFileWithJson(kFile, array, Durability::kUnflushed)) {
    return true;
  }
  std::size_t size = 0;
  const char* const text = render(array, JSON_C_TO_STRING_PRETTY, size);
  return text != nullptr && overwrite(text, size);
}

Records::Records() : lock_(BELoginRecord::lock) {}

bool Records::load() {
  array_.reset(readJsonFile(kFile));
  if (json_object_is_type(array_.get(), json_type_array) != 0) {
    return true;
  }
  if (array_ == nullptr) {  // missing, unreadable, no JSON, or JSON's null
    HEARTH_LOG(LOG_ERROR, "Cannot access Database file\n");
  } else {
    HEARTH_LOG(LOG_ERROR, "File has wrong format\n");
  }
  return false;
}

// The first record of the address; null when there is none.
json_object* Records::find(const char* ipAddress) const {
  const std::size_t count = json_object_array_length(array_.get());
  for (std::size_t i = 0; i < count; ++i) {
    json_object* const element = json_object_array_get_idx(array_.get(), i);
    if (isRecordOf(element, ipAddress)) {
      return element;
    }
  }
  return nullptr;
}

// Appends a record with one attempt, made now. False, appending nothing, when memory ran out.
bool Records::add(const char* ipAddress) const {
  JsonRef record(json_object_new_object());
  if (record == nullptr || !put(record.get(), kAddress, json_object_new_string(ipAddress)) ||
      !putAttempt(record.get(), 1) || json_object_array_add(array_.get(), record.get()) != 0) {
    return false;
  }
  static_cast<void>(record.release());  // the array's now
  return true;
}

// Writes the file, unless memory ran out for the change before.
void Records::write(bool isChanged) const {
  if (!isChanged || !writeRecordFile(array_.get())) {
    HEARTH_LOG(LOG_ERROR, "Cannot write Database file, the change is lost\n");
  }
}

bool Records::read(const char* ipAddress, Attempts& attempts) const {
  json_object* const record = find(ipAddress);
  if (record == nullptr) {
    return false;
  }
  attempts = {countOf(record), json_object_get_string(memberOf(record, kLastAttempt))};
  return true;
}

void Records::countAttempt(const char* ipAddress) const {
  json_object* const record = find(ipAddress);
  write(record != nullptr ? putOneMore(record) : add(ipAddress));
}

void Records::resetAttempts(const char* ipAddress) const {
  json_object* const record = find(ipAddress);
  if (record != nullptr) {
    write(put(record, kAttempts, json_object_new_int(0)));
  }
}

}  // namespace hearth
