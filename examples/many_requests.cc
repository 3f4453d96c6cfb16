// What many requests do to each other: refusal instead of waiting, sessions with copies of their
// own, a crowd that loses nothing, and a client that guesses passwords.
#include <hearth/kit.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "chapters.h"

namespace {

constexpr unsigned int kAreas = 8;
constexpr unsigned int kThreads = 8;
constexpr unsigned int kRounds = 4;
constexpr std::chrono::seconds kPatience(60);
constexpr char kLease[] = "ipv4.dhcp.leaseSeconds";

// One request: adds one to the area's revision, once those before it are done.
bool countOne(unsigned int area) {
  hearth::Result<hearth::Change> change =
      hearth::Change::begin(area, "", hearth::Session::shared(), kPatience);
  return change && change->set("revision", hearth::getOr(*change, "revision", 0) + 1).commit();
}

// A request thread's work: every area in turn, each thread beginning with another one.
void workThrough(unsigned int first, std::atomic<int>& saved) {
  for (unsigned int i = 0; i < kRounds * kAreas; ++i) {
    saved += countOne((first + i) % kAreas) ? 1 : 0;
  }
}

int revisionOf(unsigned int area) {
  const hearth::Result<hearth::AreaLock> database = hearth::AreaLock::take(area, "");
  return database ? hearth::getOr(*database, "revision", -1) : -1;
}

// Tries the area from another request thread; empty when that gets it.
std::string whyAnotherIsRefused(API_TYPE_T area) {
  std::string sentence;
  std::thread([&] { sentence = hearth::AreaLock::take(area, "").failure().sentence; }).join();
  return sentence;
}

int leaseSeconds(const hearth::Session& session) {
  const hearth::Result<hearth::AreaLock> lan =
      hearth::AreaLock::take(API_NETWORK, "lans.[0]", session);
  return lan ? hearth::getOr(*lan, kLease, -1) : -1;
}

}  // namespace

void turnSecondLockerAway(Story& story) {
  story.chapter("A second request for a held area is turned away");
  hearth::Result<hearth::AreaLock> security = hearth::AreaLock::take(API_SECURITY, "firewall");
  if (!story.check(static_cast<bool>(security), "Anna's request holds the security area")) {
    return;
  }
  const std::string refusal = whyAnotherIsRefused(API_SECURITY);
  story.check(!refusal.empty(), "Ben's is told: " + refusal);
  story.check(whyAnotherIsRefused(API_QOS).empty(), "another area is free all the while");
  security->end();
  story.check(whyAnotherIsRefused(API_SECURITY).empty(), "after Anna's unlock Ben gets it");
}

void giveSessionsTheirOwn(Story& story) {
  story.chapter("Two sessions with databases of their own");
  const hearth::Result<hearth::Session> anna = hearth::Session::open("s-anna");
  const hearth::Result<hearth::Session> ben = hearth::Session::open("s-ben");
  if (!story.check(anna && ben, "Anna and Ben each get one, loaded from the files")) {
    return;
  }
  story.check(!hearth::Session::open("s-ben"), "Ben gets no second one");
  const int before = leaseSeconds(*ben);
  {
    const hearth::Result<hearth::AreaLock> reading =
        hearth::AreaLock::take(API_NETWORK, "lans.[0]", *ben);
    hearth::Result<hearth::Change> change = hearth::Change::begin(API_NETWORK, "lans.[0]", *anna);
    if (!story.check(reading && change, "Ben reads the network area while Anna changes it")) {
      return;
    }
    story.check(static_cast<bool>(change->set(kLease, 43200).commit()),
                "Anna makes the leases 43200 seconds");
    story.check(before != 43200 && hearth::getOr(*reading, kLease, 0) == before,
                "what Ben is reading does not change under him: " + std::to_string(before));
  }
  story.check(leaseSeconds(*ben) == 43200, "the next time he looks he sees what Anna saved");
  ben->close();
  anna->close();
  story.tell("Both sessions end; a late request of Anna's is told: " +
             hearth::AreaLock::take(API_NETWORK, "", *anna).failure().sentence);
  story.check(leaseSeconds(*anna) == -1, "it does not work on the shared databases");
  story.check(leaseSeconds(hearth::Session::shared()) == 43200, "which have the new leases too");
}

void countInACrowd(Story& story) {
  story.chapter("Many request threads at work on all areas at once");
  story.tell(std::to_string(kThreads) + " threads go " + std::to_string(kRounds) +
             " times through all 8 areas; each request adds 1 to \"revision\" and commits.");
  std::vector<int> before;
  before.reserve(kAreas);
  for (unsigned int area = 0; area < kAreas; ++area) {
    before.push_back(revisionOf(area));
  }
  std::atomic<int> saved{0};
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (unsigned int i = 0; i < kThreads; ++i) {
    threads.emplace_back(workThrough, i, std::ref(saved));
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  story.check(saved == kThreads * kRounds * kAreas, std::to_string(saved) + " requests committed");
  for (unsigned int area = 0; area < kAreas; ++area) {
    const int was = before[area];
    const int is = revisionOf(area);
    story.check(was >= 0 && is == was + static_cast<int>(kThreads * kRounds),
                std::string(*hearth::areaName(area)) + ": " + std::to_string(was) + " + " +
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
