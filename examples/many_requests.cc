// What many requests do to each other: refusal instead of waiting, sessions with copies of their
// own, a crowd that loses nothing, and a client that guesses passwords.
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "backend.h"
#include "chapters.h"

namespace {

constexpr int kAreas = 8;
constexpr int kThreads = 8;
constexpr int kRounds = 4;
constexpr std::chrono::seconds kPatience(60);  // of the whole crowd, before requests give up

struct Tally {
  const std::chrono::steady_clock::time_point deadline =
      std::chrono::steady_clock::now() + kPatience;
  std::atomic<int> saved{0};
  std::atomic<int> turnedAway{0};
  std::atomic<int> gaveUp{0};
};

// One request: adds one to the area's revision and saves. A refusal is answered with another try.
void countOne(API_TYPE_T area, Tally& tally) {
  while (std::chrono::steady_clock::now() < tally.deadline) {
    AreaLock database(area, "", kDefaultSession);
    if (database) {
      database->set("revision", database->get<int>("revision") + 1);
      tally.saved += database.save() ? 1 : 0;
      return;
    }
    ++tally.turnedAway;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ++tally.gaveUp;
}

// A request thread's work: every area in turn, each thread beginning with another one.
void workThrough(int first, Tally& tally) {
  for (int i = 0; i < kRounds * kAreas; ++i) {
    countOne(static_cast<API_TYPE_T>((first + i) % kAreas), tally);
  }
}

int revisionOf(API_TYPE_T area) {
  const AreaLock database(area, "", kDefaultSession);
  return database ? database->get<int>("revision") : -1;
}

// Tries the area from another request thread.
bool anotherRequestGets(API_TYPE_T area) {
  bool got = false;
  std::thread([&got, area] {
    got = static_cast<bool>(AreaLock(area, "", kDefaultSession));
  }).join();
  return got;
}

int leaseSeconds(const AreaLock& lan) {
  return lan->get<int>("ipv4.dhcp.leaseSeconds");
}

}  // namespace

void turnSecondLockerAway(Story& story) {
  story.chapter("A second request for a held area is turned away");
  AreaLock security(API_SECURITY, "firewall", kDefaultSession);
  if (!story.check(static_cast<bool>(security), "Anna's request holds the security area")) {
    return;
  }
  story.check(!anotherRequestGets(API_SECURITY), "Ben's is refused, while Anna still holds it");
  story.tell("The log says: " + lastLineOf(BEConfig::LOG_FILE.c_str()));
  story.check(anotherRequestGets(API_QOS), "another area is free all the while");
  security.unlock();
  story.check(anotherRequestGets(API_SECURITY), "after Anna's unlock Ben gets it");
}

void giveSessionsTheirOwn(Story& story) {
  story.chapter("Two sessions with handlers of their own");
  story.check(LocalDbCtrl::cloneNewDB("s-anna") == 1 && LocalDbCtrl::cloneNewDB("s-ben") == 1,
              "Anna and Ben each get one, loaded from the files");
  story.check(LocalDbCtrl::cloneNewDB("s-ben") == 0, "Ben gets no second one");
  {
    AreaLock anna(API_NETWORK, "lans.[0]", "s-anna");
    AreaLock ben(API_NETWORK, "lans.[0]", "s-ben");
    if (!story.check(anna && ben, "both hold the network area at the same time")) {
      return;
    }
    const int before = leaseSeconds(ben);
    anna->set("ipv4.dhcp.leaseSeconds", 43200);
    story.check(
        leaseSeconds(anna) == 43200 && before != 43200 && leaseSeconds(ben) == before,
        "Anna shortens the leases to 43200 seconds; Ben still sees " + std::to_string(before));
    story.check(anna.save(), "Anna saves");
    story.check(leaseSeconds(ben) == before, "Ben's copy is his own and does not change");
  }
  LocalDbCtrl::removeDB("s-ben");
  story.tell("Ben's session ends and a new one begins.");
  story.check(LocalDbCtrl::cloneNewDB("s-ben") == 1, "it gets a handler");
  {
    const AreaLock ben(API_NETWORK, "lans.[0]", "s-ben");
    story.check(ben && leaseSeconds(ben) == 43200, "and sees what Anna saved");
  }
  LocalDbCtrl::removeDB("s-ben");
  LocalDbCtrl::removeDB("s-anna");
  story.check(LocalDbCtrl::getDBByKey("s-anna") == LocalDbCtrl::getDBByKey("default"),
              "without handlers of their own both are back on \"default\"");
}

void countInACrowd(Story& story) {
  story.chapter("Many request threads at work on all areas at once");
  story.tell(std::to_string(kThreads) + " threads go " + std::to_string(kRounds) +
             " times through all 8 areas; each request adds 1 to \"revision\" and saves.");
  std::vector<int> before;
  before.reserve(kAreas);
  for (int area = 0; area < kAreas; ++area) {
    before.push_back(revisionOf(static_cast<API_TYPE_T>(area)));
  }
  Tally tally;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back(workThrough, i, std::ref(tally));
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  story.check(tally.saved == kThreads * kRounds * kAreas && tally.gaveUp == 0,
              std::to_string(tally.saved) + " requests saved, after " +
                  std::to_string(tally.turnedAway) + " refusals");
  for (int index = 0; index < kAreas; ++index) {
    const auto area = static_cast<API_TYPE_T>(index);
    const int was = before[area];
    const int is = revisionOf(area);
    story.check(was >= 0 && is == was + kThreads * kRounds,
                std::string(LocalDbCtrl::getApiDir(area)) + ": " + std::to_string(was) + " + " +
                    std::to_string(kThreads * kRounds) + " = " + std::to_string(is));
  }
}

void slowDownGuessing(Story& story) {
  story.chapter("A client that tries to log in too often");
  const char* const kGuesser = "192.168.78.51";
  story.tell(std::string(kGuesser) + " fails to log in, again and again.");
  for (int attempt = 1; attempt <= 6; ++attempt) {
    BELoginRecord::setAttempt(kGuesser);
    const LOGIN_ATTEMPT_INFO info = BELoginRecord::getAttempt(kGuesser);
    const unsigned int due = attempt > 4 ? static_cast<unsigned int>(attempt - 4) : 0;
    story.check(info.attempts == attempt && info.waitMinutes == due,
                "attempt " + std::to_string(attempt) + ": " +
                    (info.waitMinutes == 0 ? "no wait"
                                           : "wait " + std::to_string(info.waitMinutes) +
                                                 (info.waitMinutes == 1 ? " minute" : " minutes")));
  }
  story.check(BELoginRecord::getAttempt("192.168.77.20").waitMinutes == 0,
              "192.168.77.20 may try at once");
  BELoginRecord::eraseAttempt(kGuesser);
  const LOGIN_ATTEMPT_INFO info = BELoginRecord::getAttempt(kGuesser);
  story.check(info.attempts == 0 && info.waitMinutes == 0,
              "after a login that succeeds the count is back at 0");
}
