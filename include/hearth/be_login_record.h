// Login attempts per client address, kept in the file ".loginrecord.cfg" of the working directory,
// and the time that an address must wait before its next attempt.
//
// The first four attempts are free; n attempts cost n - 4 minutes, counted from the latest one.
#ifndef HEARTH_BE_LOGIN_RECORD_H
#define HEARTH_BE_LOGIN_RECORD_H

#include <pthread.h>
#include <stdint.h>

#include <atomic>

#include "hearth/export.h"

struct LOGIN_ATTEMPT_INFO {
  int32_t attempts;      // attempts since the record was made or reset; 1 when there is no record
  uint32_t waitMinutes;  // whole minutes still to wait; 0 when none
};

// The file is the only state: every operation reads it whole, and those that change it replace it
// whole, or write it in place where it cannot be replaced (a full disk, a folder that takes no new
// file, a file that is a mount point). An operation that finds it unreadable, or its root not an
// array, logs an error and stops the store: from then on nothing is counted and no address waits,
// until the backend calls init again, which starts with an empty file.
class HEARTH_API BELoginRecord {
 public:
  BELoginRecord() = delete;

  // The store is started: init has made its file, and no operation has found it broken since.
  static std::atomic<bool> isRunning;

  // Held by the three record operations from before the file is read until after it is written. Not
  // taken by init and deinit: a backend that calls those while requests run holds it around the
  // call.
  static pthread_mutex_t lock;

  // Starts the store on an empty file: counts of an earlier run are gone. BEConfig::init calls it
  // when the configuration asks; after an operation has stopped the store, the backend does.
  // Failure: a file that cannot be written is reported on standard output, and the store stays
  // stopped; a store that is running already is left alone, with a warning.
  // Threads: none may be in a record operation meanwhile; see lock.
  static void init();

  // Empties the file. The store stays as it was, started or stopped.
  // Failure: reported on standard output.
  // Threads: none may be in a record operation meanwhile; see lock.
  static void deinit();

  // Counts one attempt of the address, at the current time.
  // Failure: a null address is logged; a stopped store does nothing; an attempt that cannot be
  // written to the file is lost, which is logged as an error. The result is 1 in every case.
  // Ownership: the address is copied, exactly as given.
  // Threads: any.
  static int setAttempt(const char* ipAddress);

  // What the address has tried, and how long it must wait. The file is not changed.
  // Failure: attempts 1 and no wait for a null address (logged), an unknown one, and a stopped
  // store. Threads: any.
  static LOGIN_ATTEMPT_INFO getAttempt(const char* ipAddress);

  // Sets the count of the address back to 0, after a login that succeeded. An unknown address
  // changes nothing.
  // Failure: as setAttempt; the result is 1 in every case.
  // Threads: any.
  static int eraseAttempt(const char* ipAddress);
};

#endif
