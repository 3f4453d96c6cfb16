// A change happens whole, in memory and in the file, or not at all.
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "hearth/kit.h"
#include "tests/localdb/database_fixture.h"

namespace {

using hearth::Change;
using hearth::Fault;
using hearth::Session;
using namespace std::chrono_literals;
using namespace std::string_literals;

class KitChange : public DatabaseTest {
 protected:
  static Change begin(hearth::Name path = "", const Session& session = Session::shared()) {
    hearth::Result<Change> change = Change::begin(API_WIFI, path, session, 60s);
    EXPECT_TRUE(change) << change.failure().sentence;
    return std::move(*change);
  }
  // What the contract's reader finds in memory, and what the file holds.
  static std::string held(const char* key = "default") {
    TreeMapObject* const database = LocalDbCtrl::lockDbObject(API_WIFI, "", key);
    const std::string memory = database != nullptr ? plain(*database) : "held";
    LocalDbCtrl::unlockDbObject(API_WIFI, key);
    const hearth::Result<hearth::Value> file = hearth::parseFile("wifi/wifi.ldb");
    return memory == plain(file->raw()) ? memory : memory + " but " + plain(file->raw());
  }
};

constexpr char kBefore[] = R"({"count":0,"radios":{"channel":1}})";
constexpr char kSchema[] = R"({"properties": {
  "radios": {"properties": {"channel": {"maximum": 13}, "psk": {"minLength": 8}}}}})";

TEST_F(KitChange, IsInTheFileAndInMemoryOnceItIsMade) {
  folder_.file("wifi/wifi_SCHEMA.ldb", kSchema);
  Change change = begin("radios");
  EXPECT_EQ(hearth::getOr(change, "channel", 0), 1);
  change.set("channel", 11).set("ssid", "a\0b"s).set("list", *hearth::parse("[1]"));
  EXPECT_TRUE(change.remove("list.[0]"));
  change->set("width", 40);
  EXPECT_EQ(hearth::getOr(change.database(), "radios.channel", 0), 11);
  EXPECT_EQ(fileHolds(API_WIFI, "radios.channel"), 1) << "nothing is written before the commit";
  const hearth::Result<void> done = change.commit();
  ASSERT_TRUE(done) << done.failure().sentence;
  EXPECT_EQ(held(),
            R"({"count":0,"radios":{"channel":11,"ssid":"a\u0000b","list":[],"width":40}})");
  EXPECT_EQ(change.commit().failure().fault, Fault::kEnded);
  EXPECT_EQ(change.handle(), nullptr);
  EXPECT_EQ(hearth::set(change, "count", 1).failure().fault, Fault::kBadArgument);
  EXPECT_TRUE(begin().set("count", 5).commit());
  EXPECT_EQ(fileHolds(API_WIFI, "count"), 5);
}

// One way not to make the change, and what it answers.
struct Way {
  const char* name;
  std::function<hearth::Result<void>(Change)> go;
  Fault fault;
};

const std::vector<Way> kWays = {
    {"an early return", [](Change) -> hearth::Result<void> { return {}; }, Fault::kNone},
    {"an exception",
     [](Change change) -> hearth::Result<void> {
       try {
         const Change thrownOver = std::move(change);
         throw std::runtime_error("x");
       } catch (const std::runtime_error&) {
         return {};
       }
     },
     Fault::kNone},
    {"an end",
     [](Change change) {
       change.end();
       return change.commit();
     },
     Fault::kEnded},
    {"another change in its place",
     [](Change change) {
       change = std::move(*Change::begin(API_QOS, ""));
       return hearth::Result<void>();
     },
     Fault::kNone},
    {"a move",
     [](Change change) {
       const Change other = std::move(change);
       return change.commit();  // NOLINT(bugprone-use-after-move)
     },
     Fault::kEnded},
    {"a schema's refusal", [](Change change) { return change.set("radios.channel", 14).commit(); },
     Fault::kRefused},
    {"a set that failed",
     [](Change change) { return change.set("count.x", 1).set("count", 2).commit(); },
     Fault::kNotStored},
    {"a value that a document cannot hold",
     [](Change change) {
       std::string path = "a";
       for (int level = 0; level < 40; ++level) {
         path += ".a";
       }
       return change.set(path, 1).commit();
     },
     Fault::kNotStored},
    {"the wrong thread",
     [](Change change) {
       return std::async(std::launch::async, [&] { return change.commit(); }).get();
     },
     Fault::kEnded},
    {"a session that was closed",
     [](Change change) {
       std::thread closing([] { LocalDbCtrl::removeDB("s"); });
       while (LocalDbCtrl::getDBByKey("s") != LocalDbCtrl::getDBByKey("default")) {
         std::this_thread::yield();
       }
       const hearth::Result<void> result = change.commit();
       closing.join();
       return result;
     },
     Fault::kNoSession},
};

TEST_F(KitChange, LeavesMemoryAndFileAsTheyWereElse) {
  folder_.file("wifi/wifi_SCHEMA.ldb", kSchema);
  ASSERT_EQ(held(), kBefore);
  const std::string text = folder_.contentsOf("wifi/wifi.ldb");
  for (const Way& way : kWays) {
    SCOPED_TRACE(way.name);
    ASSERT_TRUE(Session::open("s"));
    Change change = begin("", *Session::of("s"));
    change.set("radios.channel", 13).set("radios.psk", "long enough");
    const hearth::Result<void> result = way.go(std::move(change));
    EXPECT_EQ(result.failure().fault, way.fault);
    EXPECT_EQ(result.failure().sentence.empty(), way.fault == Fault::kNone);
    EXPECT_EQ(folder_.contentsOf("wifi/wifi.ldb"), text);
    EXPECT_EQ(held("s"), kBefore);
    LocalDbCtrl::removeDB("s");
    EXPECT_TRUE(Change::begin(API_WIFI, ""));
  }
}

TEST_F(KitChange, SaysWhyItIsRefused) {
  const auto refused = [](bool isStrict, const char* key) {
    hearth::ChangeOptions options;
    options.limit = 9;
    options.isStrict = isStrict;
    return begin().set("radios.channel", 14).set("radios.psk", key).commit(options).failure();
  };
  const hearth::Failure missing = refused(true, "1");
  EXPECT_EQ(missing.fault, Fault::kNoSchema);
  EXPECT_EQ(missing.sentence, "there is no schema ./wifi/wifi_SCHEMA.ldb");
  folder_.file("wifi/wifi_SCHEMA.ldb", kSchema);
  const hearth::Failure failure = refused(false, "hunter2");
  EXPECT_EQ(failure.sentence, "/radios/channel: must be at most 13, but is 14");
  ASSERT_EQ(failure.broken.size(), 2U);
  EXPECT_EQ(failure.broken[1].place, "/radios/psk");
  EXPECT_EQ(failure.broken[1].sentence, "does not satisfy \"minLength\"");
  for (const char* const none : {"{", "7", R"({"type": 1})"}) {
    folder_.file("wifi/wifi_SCHEMA.ldb", none);
    EXPECT_EQ(refused(false, "x").fault, Fault::kBadSchema) << none;
  }
  std::filesystem::remove(folder_ / "wifi/wifi_SCHEMA.ldb");
  EXPECT_EQ(refused(false, "x").fault, Fault::kNone) << "without a schema everything goes";
}

TEST_F(KitChange, SaysThatTheFileCouldNotBeWritten) {
  Change change = begin();
  std::filesystem::remove_all(folder_ / "wifi");
  const hearth::Failure failure = change.set("count", 1).commit().failure();
  EXPECT_EQ(failure.fault, Fault::kNotSaved);
  EXPECT_EQ(failure.sentence, "./wifi/wifi.ldb could not be written; it is as it was");
  EXPECT_EQ(Change::begin(API_WIFI, "").failure().fault, Fault::kNoDatabase);
}

TEST_F(KitChange, LetsGoOfAllThatItTakes) {
  const auto descriptors = [] { return namesIn("/proc/self/fd").size(); };
  const std::size_t before = descriptors();
  for (int i = 0; i < 20; ++i) {
    Change change = begin("radios");
    change.end();
    change = begin();
  }
  EXPECT_EQ(descriptors(), before);
}

// Adds 1 to a member of its own, and to one that all share.
void count(const char* member, int times, const Session& session) {
  for (int i = 0; i < times; ++i) {
    hearth::Result<Change> change = Change::begin(API_WIFI, "", session, 60s);
    if (change) {
      change->set(member, hearth::getOr(*change, member, 0) + 1)
          .set("count", hearth::getOr(*change, "count", 0) + 1);
      static_cast<void>(change->commit());
    }
  }
}

// Threads of two sessions in two processes: none loses what another has saved.
TEST_F(KitChange, LosesNothingBetweenThreadsSessionsAndProcesses) {
  constexpr int kTimes = 15;
  constexpr int kThreads = 3;
  fflush(nullptr);
  pid_t children[2];
  for (pid_t& child : children) {
    child = fork();
    if (child == 0) {
      alarm(300);
      static_cast<void>(Session::open("own"));
      const bool isFirst = &child == children;
      inThreads(kThreads, [&](unsigned int number) {
        const std::string member = (isFirst ? "a" : "b") + std::to_string(number);
        count(member.c_str(), kTimes, number == 0 ? *Session::of("own") : Session::shared());
      });
      exit(0);
    }
  }
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  for (const char* const member : {"a0", "a1", "a2", "b0", "b1", "b2"}) {
    EXPECT_EQ(fileHolds(API_WIFI, member), kTimes) << member;
  }
  EXPECT_EQ(fileHolds(API_WIFI, "count"), 2 * kThreads * kTimes);
  const hearth::Result<hearth::AreaLock> lock = hearth::AreaLock::take(API_WIFI, "count");
  EXPECT_EQ(hearth::get<int>(*lock), 2 * kThreads * kTimes)
      << "the parent sees it at its next lock";
}

}  // namespace
