// Finds a keyword by its name. Every member name of every schema goes through here, and most are
// looked up many times in one validation, so the search is a hash table made while compiling:
//
//   1. The first four characters of the name are read as one number, its head. A hash of the head
//      picks a bucket. Each bucket holds at most one head, so one comparison tells most names that
//      are no keywords.
//   2. Keywords with one head ("contains", "contentSchema") form a list. Each is compared by its
//      second four characters, again as one number, and by its drafts.
//   3. A name of eight characters or more is then compared to its end.
#include <cstddef>
#include <cstdint>

#include "schema/keywords/draft_sets.h"
#include "schema/keywords/keywords.h"
#include "schema/keywords/table.h"

namespace hearth::schema {
namespace {

constexpr std::size_t kBuckets = 128;

constexpr uint32_t byteAt(const char* name, unsigned i) {
  return static_cast<uint32_t>(static_cast<unsigned char>(name[i])) << 8 * i;
}

// Up to four characters of the name as one number. A shorter name has zeros behind it; nothing
// behind its end is read.
constexpr uint32_t headOf(const char* name) {
  if (!name[0] || !name[1]) {
    return byteAt(name, 0);
  }
  const uint32_t two = byteAt(name, 0) | byteAt(name, 1);
  return !name[2] ? two : two | byteAt(name, 2) | byteAt(name, 3);
}

// True for four characters: the name may go on behind them.
constexpr bool isWhole(uint32_t head) {
  return head >> 24 != 0;
}

// A multiplicative hash: its upper seven bits. The factor was found by trying; the static_assert
// below says when a new keyword needs another one.
constexpr std::size_t bucketOf(uint32_t head) {
  return head * 2860054109U >> 25;
}

struct HashTable {
  // By bucket.
  uint32_t heads[kBuckets];  // 0: empty
  uint8_t first[kBuckets];   // the first keyword with that head, an index into kKeywords
  // By keyword.
  uint32_t seconds[kKeywordCount];
  uint8_t next[kKeywordCount];  // the next one with the same head; kKeywordCount behind the last
  bool collides;                // two heads share a bucket
};

constexpr uint32_t secondOf(const char* name, uint32_t head) {
  return isWhole(head) ? headOf(name + 4) : 0;
}

// Each keyword goes to the front of its list, so the last one is put in first and the lists keep
// the order of kKeywords.
constexpr HashTable makeTable() {
  HashTable table{};
  for (std::size_t i = kKeywordCount; i-- > 0;) {
    const uint32_t head = headOf(kKeywords[i].name);
    const std::size_t bucket = bucketOf(head);
    const bool taken = table.heads[bucket] != 0;
    table.collides = table.collides || (taken && table.heads[bucket] != head);
    table.next[i] = taken ? table.first[bucket] : static_cast<uint8_t>(kKeywordCount);
    table.heads[bucket] = head;
    table.first[bucket] = static_cast<uint8_t>(i);
    table.seconds[i] = secondOf(kKeywords[i].name, head);
  }
  return table;
}
constexpr HashTable kTable = makeTable();
static_assert(!kTable.collides, "find another factor");

// A loop in place of strcmp: a call costs more than the few characters that are left.
inline bool sameText(const char* left, const char* right) {
  for (; *left == *right; ++left, ++right) {
    if (!*left) {
      return true;
    }
  }
  return false;
}

// Requires that the name has the head of keyword i. Tells names of one head apart, and drafts.
inline bool isKeyword(const char* name, uint32_t second, unsigned draft, std::size_t i) {
  return kTable.seconds[i] == second && (kKeywords[i].drafts & draft) &&
         (!isWhole(second) || sameText(kKeywords[i].name + 8, name + 8));
}

// Out of line: keeps the common first probe free of register spills.
[[gnu::noinline]] const Keyword* findInList(const char* name, uint32_t second, unsigned draft,
                                            std::size_t i) {
  while (i < kKeywordCount && !isKeyword(name, second, draft, i)) {
    i = kTable.next[i];
  }
  return i < kKeywordCount ? &kKeywords[i] : nullptr;
}

}  // namespace

const Keyword* findKeyword(const char* name, Draft draft) {
  const uint32_t head = headOf(name);
  const std::size_t bucket = bucketOf(head);
  if (kTable.heads[bucket] != head) {
    return nullptr;
  }
  const uint32_t second = secondOf(name, head);
  const std::size_t i = kTable.first[bucket];
  return isKeyword(name, second, draftBit(draft), i)
             ? &kKeywords[i]
             : findInList(name, second, draftBit(draft), kTable.next[i]);
}

// Only for sentences and pointers about failures: no need to be fast.
const char* nameOf(Id id) {
  for (const Keyword& keyword : kKeywords) {
    if (keyword.id == id) {
      return keyword.name;
    }
  }
  return "";
}

}  // namespace hearth::schema
