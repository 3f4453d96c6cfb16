// Taking an area: each failure told apart, waiting, sessions, and what a reader sees.
#include <chrono>
#include <thread>
#include <tuple>

#include "hearth/kit.h"
#include "tests/localdb/database_fixture.h"

namespace {

using hearth::AreaLock;
using hearth::Fault;
using hearth::Session;
using namespace std::chrono_literals;
using namespace std::string_literals;

class KitLock : public DatabaseTest {
 protected:
  // The count that a reader sees, or the fault; nothing stays held after either.
  static std::string seen(const Session& session = Session::shared(), hearth::Name path = "count",
                          unsigned int area = API_WIFI) {
    const hearth::Result<AreaLock> lock = AreaLock::take(area, path, session);
    EXPECT_EQ(static_cast<bool>(lock), lock.failure().sentence.empty());
    return lock ? hearth::shown(*lock) : faultName(lock.failure().fault);
  }
  static std::string faultName(Fault fault) {
    return "fault " + std::to_string(static_cast<int>(fault));
  }
  static bool isFree(unsigned int area = API_WIFI) {
    return std::async(std::launch::async,
                      [=] { return static_cast<bool>(AreaLock::take(area, "")); })
        .get();
  }
  // Puts other contents into the area's file, as another process would: by renaming.
  void replaceFile(const std::string& contents) const {
    std::filesystem::rename(folder_.file("wifi/new", contents), folder_ / "wifi/wifi.ldb");
  }
};

TEST_F(KitLock, TellsFailuresApart) {
  const std::tuple<unsigned int, hearth::Name, const char*, Fault, const char*> rows[] = {
      {API_WIFI, "radios.channel", kFreshFile, Fault::kNone, ""},
      {API_WIFI, "", kFreshFile, Fault::kNone, ""},
      {8, "", kFreshFile, Fault::kNoArea, "there is no area 8"},
      {~0U, "", kFreshFile, Fault::kNoArea, "there is no area 4294967295"},
      {API_WIFI, nullptr, kFreshFile, Fault::kBadArgument, "the path is null, or has a NUL inside"},
      {API_WIFI, "a\0b"s, kFreshFile, Fault::kBadArgument, "the path is null, or has a NUL inside"},
      {API_WIFI, "no.[3]", kFreshFile, Fault::kNoValue, R"(the area wifi has nothing at "no.[3]")"},
      {API_WIFI, "a", R"({"a": null})", Fault::kNoValue, R"(the area wifi has nothing at "a")"},
      {API_WIFI, "", "{\n\"a\"}", Fault::kBadDatabase,
       "./wifi/wifi.ldb: line 2, column 4: expected \":\", but there is '}'"},
      {API_WIFI, "", "", Fault::kBadDatabase,
       "./wifi/wifi.ldb: line 1, column 1: expected a value, but there is the end of the text"},
      {API_WIFI, "", "null", Fault::kBadDatabase,
       "./wifi/wifi.ldb: there is no value that a database can be"},
      {API_WIFI, "", "missing", Fault::kNoDatabase,
       "the area wifi has no database: ./wifi/wifi.ldb: No such file or directory"},
      {API_WIFI, "", "folder", Fault::kNoDatabase,
       "the area wifi has no database: ./wifi/wifi.ldb: no regular file"},
  };
  for (const bool isLoaded : {false, true}) {
    for (const auto& [area, path, contents, fault, sentence] : rows) {
      SCOPED_TRACE(testing::Message() << contents << " " << sentence << isLoaded);
      const std::string file = folder_ / "wifi/wifi.ldb";
      std::filesystem::remove_all(file);
      folder_.file("wifi/wifi.ldb", kFreshFile);
      LocalDbCtrl::init();
      if (isLoaded) {
        ASSERT_EQ(seen(), "0");
      }
      if (contents == "missing"s || contents == "folder"s) {
        std::filesystem::remove(file);
      } else {
        replaceFile(contents);
      }
      if (contents == "folder"s) {
        std::filesystem::create_directory(file);
      }
      const hearth::Failure failure = AreaLock::take(area, path).failure();
      EXPECT_EQ(failure.fault, fault);
      EXPECT_EQ(failure.sentence, sentence);
      EXPECT_EQ(hearth::Change::begin(area, path).failure().sentence, sentence);
      std::filesystem::remove_all(file);
      folder_.file("wifi/wifi.ldb", kFreshFile);
      EXPECT_TRUE(isFree());
    }
  }
}

TEST_F(KitLock, WaitsForAHolderAsLongAsItIsTold) {
  Holder contract(API_WIFI, "default");
  const hearth::Failure held = AreaLock::take(API_WIFI, "", Session::shared(), 1ms).failure();
  EXPECT_EQ(held.fault, Fault::kBusy);
  EXPECT_EQ(held.sentence, "another request or process holds the area wifi; try again");
  EXPECT_EQ(hearth::Change::begin(API_WIFI, "").failure().fault, Fault::kBusy);
  std::future<std::string> waiting = std::async(std::launch::async, [] {
    return AreaLock::take(API_WIFI, "", Session::shared(), std::chrono::milliseconds::max())
        .failure()
        .sentence;
  });
  std::this_thread::sleep_for(50ms);  // for the other to find the area held, as it should
  contract.end([] { return answerTo("unlock"); });
  EXPECT_EQ(waiting.get(), "");

  hearth::Result<hearth::Change> change = hearth::Change::begin(API_WIFI, "");
  ASSERT_TRUE(change);
  ASSERT_EQ(Session::open("other").failure().sentence, "");
  EXPECT_EQ(seen(Session::shared()), faultName(Fault::kBusy));
  EXPECT_EQ(seen(*Session::of("other")), "0") << "a session's own slot is free to read";
  waiting = std::async(std::launch::async, [] {
    return hearth::Change::begin(API_WIFI, "", *Session::of("other"), 60000ms).failure().sentence;
  });
  EXPECT_EQ(hearth::Change::begin(API_WIFI, "", *Session::of("other"), -1ms).failure().fault,
            Fault::kBusy);
  change->end();
  EXPECT_EQ(waiting.get(), "");
}

TEST_F(KitLock, ShowsWhatTheFileHoldsAtEachLock) {
  EXPECT_EQ(seen(), "0");
  for (int count = 1; count < 6; ++count) {  // of one size, and within one tick of the clock
    replaceFile("{\"count\": " + std::to_string(count) + "}");
    EXPECT_EQ(seen(), std::to_string(count));
  }
  folder_.file("wifi/wifi.ldb", "{\"count\": 7}");  // the same file, with other contents
  EXPECT_EQ(seen(), "7");
  replaceFile("{");
  EXPECT_EQ(seen(), faultName(Fault::kBadDatabase));
  TreeMapObject* const kept = LocalDbCtrl::lockDbObject(API_WIFI, "", "default");
  EXPECT_EQ(plain(*kept), "{\"count\":7}") << "what was in memory is still there";
  LocalDbCtrl::unlockDbObject(API_WIFI, "default");
}

TEST_F(KitLock, ReadsAFileOnceThatHasSettled) {
  std::this_thread::sleep_for(50ms);
  hearth::Result<AreaLock> first = AreaLock::take(API_WIFI, "");
  const json_object* const value = hearth::View(*first).raw();
  first->end();
  EXPECT_FALSE(hearth::View(*first)) << "an ended lock shows nothing";
  const hearth::Result<AreaLock> second = AreaLock::take(API_WIFI, "");
  EXPECT_EQ(hearth::View(*second).raw(), value);
}

// A file so young that another one could look the same is not trusted: it is read at each lock.
TEST_F(KitLock, ReadsAYoungFileEachTime) {
  bool wasYoung = false;
  for (int attempt = 0; attempt < 20 && !wasYoung; ++attempt) {
    replaceFile("[]");
    const auto locked = [] {
      const hearth::Result<AreaLock> lock = AreaLock::take(API_WIFI, "");
      return hearth::View(*lock).raw();
    };
    const json_object* const first = locked();
    const json_object* const second = locked();
    wasYoung = !hearth::detail::stateOf(API_WIFI, "wifi/wifi.ldb")->isSettled();
    EXPECT_TRUE(!wasYoung || first != second);
  }
}

TEST(KitFileState, IsSettledWhenALaterOneDiffers) {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  hearth::detail::FileState state;
  const auto settledAt = [&](time_t secondsAgo, long nanoseconds) {
    state.changed = {now.tv_sec - secondsAgo, nanoseconds};
    return state.isSettled();
  };
  EXPECT_FALSE(settledAt(0, now.tv_nsec));
  EXPECT_TRUE(settledAt(2, now.tv_nsec | 1));
  EXPECT_FALSE(settledAt(1, 0)) << "this file system may count in seconds";
  EXPECT_TRUE(settledAt(4, 0));
  EXPECT_FALSE(settledAt(-100, 1)) << "the clock was set back";
}

TEST_F(KitLock, KeepsAClosedSessionOffTheSharedDatabases) {
  const Session anna = *Session::open("anna");
  EXPECT_EQ(Session::open("anna").failure().fault, Fault::kBusy);
  EXPECT_EQ(seen(anna), "0");
  anna.close();
  EXPECT_EQ(AreaLock::take(API_WIFI, "", anna).failure().sentence,
            "the session \"anna\" is closed");
  EXPECT_EQ(seen(anna), faultName(Fault::kNoSession));
  EXPECT_EQ(seen(*Session::of("never")), faultName(Fault::kNoSession));
  EXPECT_EQ(seen(*Session::orShared("anna")), "0");
  EXPECT_EQ(seen(*Session::of("default")), "0");
  for (const hearth::Name key : {hearth::Name(nullptr), hearth::Name(""), hearth::Name("a\0b"s)}) {
    EXPECT_EQ(Session::of(key).failure().fault, Fault::kBadArgument);
    EXPECT_EQ(Session::open(key).failure().fault, Fault::kBadArgument);
    EXPECT_EQ(Session::orShared(key).failure().fault, Fault::kBadArgument);
  }
  LocalDbCtrl::removeDB("default");
  EXPECT_EQ(seen(), faultName(Fault::kNoSession));
  EXPECT_EQ(hearth::Change::begin(API_WIFI, "").failure().fault, Fault::kNoSession);
}

// The key leaves the registry before its slots are let go: who waits for one of them then must not
// get that of "default" instead.
TEST_F(KitLock, NeverFallsThroughToTheSharedDatabasesWhileItWaits) {
  ASSERT_TRUE(Session::open("s"));
  Holder holder(API_WIFI, "s");
  std::future<Fault> waiting = std::async(std::launch::async, [] {
    return AreaLock::take(API_WIFI, "", *Session::of("s"), 60000ms).failure().fault;
  });
  std::this_thread::sleep_for(50ms);  // for the other to be waiting, as it should
  std::thread closing([] { Session::of("s")->close(); });
  EXPECT_EQ(waiting.get(), Fault::kNoSession);
  holder.end([] { return answerTo("unlock", "s"); });
  closing.join();
  EXPECT_TRUE(isFree());
}

}  // namespace
