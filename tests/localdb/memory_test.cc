// What the local database asks of the heap: nothing for a refused lock, and no more than it gets.
#include <cstdlib>
#include <new>

#include "tests/localdb/database_fixture.h"

namespace {

// Of this thread: allocations made so far, and how many more succeed (negative: all do).
thread_local int allocations = 0;
thread_local int allowed = -1;

void* allocate(std::size_t size) noexcept {
  ++allocations;
  if (allowed == 0) {
    return nullptr;
  }
  --allowed;
  return std::malloc(size);
}

// Not inlined, or GCC takes new and free for a pair that does not match.
__attribute__((noinline)) void release(void* memory) noexcept {
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = allocate(size);
  return memory != nullptr ? memory : throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}

namespace {

using MemoryTest = DatabaseTest;
constexpr char kSession[] = "a-session-key-that-is-longer-than-a-small-string";

TEST_F(MemoryTest, IsNotTakenForARefusal) {
  LocalDbCtrl::cloneNewDB(kSession);
  for (const std::string& key : {std::string(kSession), std::string(1000, 'k')}) {
    ASSERT_TRUE(locked(API_WIFI, key.c_str()));
    const int before = allocations;
    EXPECT_EQ(LocalDbCtrl::lockDbObject(API_WIFI, "", key.c_str()), nullptr);
    EXPECT_EQ(allocations - before, 0) << key;
    EXPECT_EQ(LocalDbCtrl::unlockDbObject(API_WIFI, key.c_str()), 0);
  }
}

// Lets one allocation more succeed each time, until the operation does.
template <typename Operation>
int triesUntil(Operation succeeds) {
  for (int tries = 0;; ++tries) {
    allowed = tries;
    const bool isDone = succeeds();
    allowed = -1;
    if (isDone) {
      return tries;
    }
  }
}

TEST_F(MemoryTest, MayRunOut) {
  LOCALDB_HANDLER* const usual = LocalDbCtrl::getDBByKey("default");
  EXPECT_GT(triesUntil([] { return LocalDbCtrl::cloneNewDB(kSession) == 1; }), 2);
  EXPECT_GT(triesUntil([] {
              const std::unique_ptr<TreeMapObject> radios(
                  LocalDbCtrl::lockDbObject(API_WIFI, "radios", kSession));
              return radios != nullptr;
            }),
            1);
  EXPECT_EQ(LocalDbCtrl::unlockDbObject(API_WIFI, kSession), 0);
  EXPECT_EQ(LocalDbCtrl::getDBByKey("default"), usual);
  EXPECT_GT(triesUntil([=] {
              LocalDbCtrl::init();
              return LocalDbCtrl::controllers.size() == 1;
            }),
            1);
}

}  // namespace
