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

struct Attempts {
  int32_t count;     // 0 when the record has no number
  const char* last;  // the text of the last time; null when the record has none
};

// The records during one operation, which holds BELoginRecord::lock from the reading of the file to
// its writing. The operation is not cut off halfway by a cancellation.
//
// The members of a record may be anything, for people edit the file. A change puts right the
// members that it writes and keeps the others.
class Records {
 public:
  Records();

  // Reads the file. False when it holds no array; a line says why. The other members require true.
  [[nodiscard]] bool load();

  // Reads the first record of the address; `last` is borrowed from this object. False when there is
  // no record.
  [[nodiscard]] bool read(const char* ipAddress, Attempts& attempts) const;

  // Counts one attempt of the address, made now, and writes the file. An address without a record
  // gets one. A change that memory runs out for, or that cannot be written, is lost: a line says
  // so, and the file keeps what it holds.
  void countAttempt(const char* ipAddress) const;

  // Sets the count of the address back to 0 and writes the file, as above. Writes nothing for an
  // address without a record.
  void resetAttempts(const char* ipAddress) const;

 private:
  [[nodiscard]] json_object* find(const char* ipAddress) const;
  [[nodiscard]] bool add(const char* ipAddress) const;
  void write(bool isChanged) const;

  const NoCancellation whole_;
  const MutexLock lock_;
  JsonRef array_;
};

}  // namespace hearth

#endif
