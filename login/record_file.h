// The records of login attempts in their file, ".loginrecord.cfg" of the working directory: an
// array of objects, one for each address, with its count and the time of its last attempt.
#ifndef HEARTH_LOGIN_RECORD_FILE_H
#define HEARTH_LOGIN_RECORD_FILE_H

#include <cstdint>

#include "base/json_ref.h"
#include "base/mutex_lock.h"
#include "base/no_cancellation.h"

namespace hearth {

// Writes the array as the whole file, new or not. False when the file keeps what it holds.
[[nodiscard]] bool writeRecordFile(json_object* array);

// The records during one operation, which holds BELoginRecord::lock from the reading of the file to
// its writing. The operation is not cut off halfway by a cancellation.
//
// A record is borrowed from this object. Its members may be anything, for people edit the file; a
// change puts right the members that it writes and keeps the others.
class Records {
 public:
  Records();

  // Reads the file. False when it holds no array; a line says why. The other members require true.
  [[nodiscard]] bool load();

  // The first record of the address; null when there is none.
  [[nodiscard]] json_object* find(const char* ipAddress) const;

  // Adds a record of the address with one attempt, made now. False, adding nothing, when memory ran
  // out.
  [[nodiscard]] bool add(const char* ipAddress);

  // Writes the file if the change before it was made, `isChanged`. A change that memory ran out
  // for, or that cannot be written, is lost: a line says so, and the file keeps what it holds.
  void write(bool isChanged) const;

 private:
  const NoCancellation whole_;
  const MutexLock lock_;
  JsonRef array_;
};

// The count of a record; 0 when it has no number.
[[nodiscard]] int32_t attemptsOf(json_object* record);

// The text of a record's last time, borrowed from the record; null when it has none.
[[nodiscard]] const char* lastAttemptOf(json_object* record);

// Change a record: count one attempt more, made now; set the count back to 0. False when memory ran
// out, which may leave a part of the change.
[[nodiscard]] bool countAttempt(json_object* record);
[[nodiscard]] bool resetAttempts(json_object* record);

}  // namespace hearth

#endif
