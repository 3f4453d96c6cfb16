#include "localdb/handler_record.h"

#include <cstdint>
#include <new>

#include "log/mutex_lock.h"

namespace hearth {
namespace {

// The table of records: chains in a fixed number of buckets. It is constant-initialised and never
// destroyed, so handlers may be made before and end after every other static object.
constexpr std::size_t kBuckets = 64;
HandlerRecord* buckets[kBuckets];

HandlerRecord*& bucketOf(const LOCALDB_HANDLER* handler) {
  return buckets[reinterpret_cast<std::uintptr_t>(handler) / sizeof(LOCALDB_HANDLER) % kBuckets];
}

// The link that points to the handler's record, or to the end of its chain.
HandlerRecord** linkTo(const LOCALDB_HANDLER* handler) {
  HandlerRecord** link = &bucketOf(handler);
  while (*link != nullptr && (*link)->handler != handler) {
    link = &(*link)->next;
  }
  return link;
}

}  // namespace

pthread_mutex_t registryLock = PTHREAD_MUTEX_INITIALIZER;

void EndUse::operator()(HandlerRecord* record) const {
  if (record->users.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete record->handler;
  }
}

void addRecord(LOCALDB_HANDLER& handler) {
  auto* const record = new (std::nothrow) HandlerRecord;
  if (record == nullptr) {
    return;
  }
  record->handler = &handler;
  const MutexLock lock(registryLock);
  HandlerRecord*& bucket = bucketOf(&handler);
  record->next = bucket;
  bucket = record;
}

std::unique_ptr<HandlerRecord> takeRecord(const LOCALDB_HANDLER& handler) {
  const MutexLock lock(registryLock);
  HandlerRecord** const link = linkTo(&handler);
  std::unique_ptr<HandlerRecord> record(*link);
  if (record != nullptr) {
    *link = record->next;
  }
  return record;
}

HandlerRecord* findRecord(const LOCALDB_HANDLER* handler) {
  return *linkTo(handler);
}

HandlerUse startUse(const LOCALDB_HANDLER* handler) {
  HandlerUse use(findRecord(handler));
  if (use != nullptr) {
    use->users.fetch_add(1, std::memory_order_relaxed);
  }
  return use;
}

}  // namespace hearth
