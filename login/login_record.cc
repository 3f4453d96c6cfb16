// The login records: an array in a file, read whole by every operation and replaced whole by those
// that change it, with the store's lock held from the one to the other.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>

#include "base/json_ref.h"
#include "base/mutex_lock.h"
#include "base/no_cancellation.h"
#include "base/unique_fd.h"
#include "base/write_all.h"
#include "files/replace_file.h"
#include "hearth/be_login_record.h"
#include "json/json_file.h"
#include "json/render.h"
#include "log/library_log.h"
#include "login/login_wait.h"

std::atomic<bool> BELoginRecord::isRunning{false};
pthread_mutex_t BELoginRecord::lock = PTHREAD_MUTEX_INITIALIZER;

namespace hearth {
namespace {

constexpr char kFile[] = ".loginrecord.cfg";
constexpr char kAddress[] = "ipAddress";
constexpr char kAttempts[] = "attempts";
constexpr char kLastAttempt[] = "lastAttempt";

bool isRecordOf(json_object* element, const char* ipAddress) {
  json_object* const address = memberOf(element, kAddress);
  const std::size_t size = strlen(ipAddress);
  return json_object_is_type(address, json_type_string) != 0 &&
         static_cast<std::size_t>(json_object_get_string_len(address)) == size &&
         memcmp(json_object_get_string(address), ipAddress, size) == 0;
}

// Puts a member that the caller has just made, and gives up its reference. False when memory ran
// out.
bool put(json_object* record, const char* name, json_object* made) {
  if (made != nullptr && json_object_object_add(record, name, made) == 0) {
    return true;
  }
  json_object_put(made);
  return false;
}

bool putAttempt(json_object* record, int32_t attempts) {
  char now[24];
  snprintf(now, sizeof(now), "%lu", static_cast<unsigned long>(time(nullptr)));
  return put(record, kAttempts, json_object_new_int(attempts)) &&
         put(record, kLastAttempt, json_object_new_string(now));
}

bool writeAt(int fd, off_t offset, const char* data, std::size_t size) {
  return lseek(fd, offset, SEEK_SET) == offset && writeAll(fd, data, size);
}

// Writes over what the file holds. What makes it longer goes first: if the disk is full, nothing
// is lost by then. A crash meanwhile costs nothing: the next start empties the file.
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

// False when the file keeps what it holds. It may be writable where it cannot be replaced: on a
// full disk, in a folder that takes no new file, as a mount point.
bool save(json_object* array) {
  if (replaceFileWithJson(kFile, array, Durability::kUnflushed)) {
    return true;
  }
  std::size_t size = 0;
  const char* const text = render(array, JSON_C_TO_STRING_PRETTY, size);
  return text != nullptr && overwrite(text, size);
}

// The records during one operation.
class Records {
 public:
  Records() : lock_(BELoginRecord::lock), array_(readJsonFile(kFile)) {}

  // False when the file holds no records: that is logged, and stops the store.
  [[nodiscard]] bool areUsable() const;

  // The first record of the address, null when there is none.
  [[nodiscard]] json_object* find(const char* ipAddress) const;

  [[nodiscard]] bool append(const char* ipAddress);

  // Writes them, unless memory ran out for the change. A change that cannot be written is lost, and
  // the store goes on with what the file holds.
  void write(bool isChanged) const;

 private:
  const NoCancellation whole_;
  const MutexLock lock_;
  const JsonRef array_;
};

bool Records::areUsable() const {
  if (json_object_is_type(array_.get(), json_type_array) != 0) {
    return true;
  }
  if (array_ == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Cannot access Database file\n");
  } else {
    HEARTH_LOG(LOG_ERROR, "File has wrong format\n");
  }
  BELoginRecord::isRunning = false;
  return false;
}

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

bool Records::append(const char* ipAddress) {
  JsonRef record(json_object_new_object());
  if (record == nullptr || !put(record.get(), kAddress, json_object_new_string(ipAddress)) ||
      !putAttempt(record.get(), 1) || json_object_array_add(array_.get(), record.get()) != 0) {
    return false;
  }
  static_cast<void>(record.release());
  return true;
}

void Records::write(bool isChanged) const {
  if (!isChanged || !save(array_.get())) {
    HEARTH_LOG(LOG_ERROR, "Cannot write Database file, the change is lost\n");
  }
}

bool countAgain(json_object* record) {
  const int32_t attempts = json_object_get_int(memberOf(record, kAttempts));
  return putAttempt(record,
                    attempts < std::numeric_limits<int32_t>::max() ? attempts + 1 : attempts);
}

uint32_t waitOf(json_object* record, int32_t attempts) {
  if (penaltyMinutes(attempts) == 0) {
    return 0;
  }
  const char* const lastAttempt = json_object_get_string(memberOf(record, kLastAttempt));
  if (lastAttempt == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Something error occurred\n");
    return penaltyMinutes(attempts);
  }
  return waitMinutes(attempts, lastAttempt, time(nullptr));
}

// True when an operation on this address has anything to do.
bool mayStart(const char* ipAddress) {
  if (ipAddress == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Null ipaddress\n");
    return false;
  }
  return BELoginRecord::isRunning;
}

}  // namespace
}  // namespace hearth

void BELoginRecord::init() {
  const hearth::NoCancellation guard;
  if (isRunning) {
    HEARTH_LOG(LOG_WARNING, "The process is running\n");
    return;
  }
  const hearth::JsonRef array(json_object_new_array());
  if (array == nullptr) {
    puts("Process cannot start due to memory error");
    return;
  }
  if (!hearth::save(array.get())) {
    puts("Fail to create record file");
    return;
  }
  printf("%s: new record file is created\n", "init");
  isRunning = true;
}

void BELoginRecord::deinit() {
  const hearth::NoCancellation guard;
  const hearth::JsonRef array(json_object_new_array());
  if (array == nullptr) {
    return;
  }
  if (!hearth::save(array.get())) {
    puts("Fail to create record file");
    return;
  }
  printf("%s: erased record file\n", "deinit");
}

int BELoginRecord::setAttempt(const char* ipAddress) {
  if (!hearth::mayStart(ipAddress)) {
    return 1;
  }
  hearth::Records records;
  if (!records.areUsable()) {
    return 1;
  }
  json_object* const record = records.find(ipAddress);
  records.write(record != nullptr ? hearth::countAgain(record) : records.append(ipAddress));
  return 1;
}

LOGIN_ATTEMPT_INFO BELoginRecord::getAttempt(const char* ipAddress) {
  LOGIN_ATTEMPT_INFO info = {1, 0};
  if (!hearth::mayStart(ipAddress)) {
    return info;
  }
  const hearth::Records records;
  if (!records.areUsable()) {
    return info;
  }
  json_object* const record = records.find(ipAddress);
  if (record != nullptr) {
    info.attempts = json_object_get_int(hearth::memberOf(record, hearth::kAttempts));
    info.waitMinutes = hearth::waitOf(record, info.attempts);
  }
  return info;
}

int BELoginRecord::eraseAttempt(const char* ipAddress) {
  if (!hearth::mayStart(ipAddress)) {
    return 1;
  }
  const hearth::Records records;
  if (!records.areUsable()) {
    return 1;
  }
  json_object* const record = records.find(ipAddress);
  if (record != nullptr) {
    records.write(hearth::put(record, hearth::kAttempts, json_object_new_int(0)));
  }
  return 1;
}
