// The exported operations on login records. Each of the three record operations asks whether there
// is anything to do, loads the records, and works on the one of its address. init and deinit write
// an empty file, without the lock.
#include <cstdio>
#include <ctime>

#include "base/json_ref.h"
#include "base/no_cancellation.h"
#include "hearth/be_login_record.h"
#include "log/library_log.h"
#include "login/login_wait.h"
#include "login/record_file.h"

std::atomic<bool> BELoginRecord::isRunning{false};
pthread_mutex_t BELoginRecord::lock = PTHREAD_MUTEX_INITIALIZER;

namespace hearth {
namespace {

// True when an operation on this address has anything to do.
bool mayStart(const char* ipAddress) {
  if (ipAddress == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Null ipaddress\n");
    return false;
  }
  return BELoginRecord::isRunning;
}

// Loads the records, or stops the store: a file that holds none would count nobody from now on.
bool loadOrStop(Records& records) {
  if (records.load()) {
    return true;
  }
  BELoginRecord::isRunning = false;
  return false;
}

// The minutes that an address still has to wait: the full penalty if nobody knows since when.
uint32_t waitFor(const Attempts& attempts) {
  if (attempts.last != nullptr) {
    return waitMinutes(attempts.count, attempts.last, time(nullptr));
  }
  const uint32_t penalty = penaltyMinutes(attempts.count);
  if (penalty > 0) {
    HEARTH_LOG(LOG_ERROR, "Something error occurred\n");
  }
  return penalty;
}

}  // namespace
}  // namespace hearth

// The messages of init and deinit go straight to standard output: the logger may not be set up yet.
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
  if (!hearth::writeRecordFile(array.get())) {
    puts("Fail to create record file");
    return;
  }
  printf("%s: new record file is created\n", "init");
  isRunning = true;  // last, so that no operation meets the file of an earlier run
}

// Leaves the store running if it runs: it then counts on in the empty file.
void BELoginRecord::deinit() {
  const hearth::NoCancellation guard;
  const hearth::JsonRef array(json_object_new_array());
  if (array == nullptr) {
    return;
  }
  if (!hearth::writeRecordFile(array.get())) {
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
  if (!hearth::loadOrStop(records)) {
    return 1;
  }
  records.countAttempt(ipAddress);
  return 1;
}

LOGIN_ATTEMPT_INFO BELoginRecord::getAttempt(const char* ipAddress) {
  LOGIN_ATTEMPT_INFO info = {1, 0};
  if (!hearth::mayStart(ipAddress)) {
    return info;
  }
  hearth::Records records;
  if (!hearth::loadOrStop(records)) {
    return info;
  }
  hearth::Attempts attempts;
  if (records.read(ipAddress, attempts)) {
    info = {attempts.count, hearth::waitFor(attempts)};
  }
  return info;
}

int BELoginRecord::eraseAttempt(const char* ipAddress) {
  if (!hearth::mayStart(ipAddress)) {
    return 1;
  }
  hearth::Records records;
  if (!hearth::loadOrStop(records)) {
    return 1;
  }
  records.resetAttempts(ipAddress);
  return 1;
}
