// Every allocation of a request fails, alone and with all that follow: nothing of hearth crashes or
// leaks, what is reported as done is done, and the next request succeeds.
#include "tests/faults/memory_faults.h"

#include <dlfcn.h>
#include <json-c/json.h>
#include <sys/mman.h>

#include <csignal>
#include <cstring>
#include <list>
#include <memory>

#include "base/json_ref.h"
#include "hearth/hearth.h"
#include "log/backtrace.h"
#include "tests/support/scratch.h"

namespace {

using Handle = std::unique_ptr<TreeMapObject>;
using hearth::JsonRef;

constexpr char kConfiguration[] =
    R"({"data_location":"a/data/location/longer/than/a/small/string","log_mask":1,)"
    R"("log_info_enable":0,"log_debug_enable":0,"log_warning_enable":0,"log_to_file":0,)"
    R"("url_rewrite_path":"/a/prefix/that/takes/memory/","system":{"timer":{"session":5}}})";
constexpr char kFolder[] = "a/data/location/longer/than/a/small/string/qos/";
constexpr char kDatabase[] = "a/data/location/longer/than/a/small/string/qos/qos.ldb";
constexpr char kSchemaFile[] =
    "a/data/location/longer/than/a/small/string/qos/QOS_CONFIGURATION_LIST_REQ_SCHEMA.ldb";
constexpr char kSession[] = "a-session-key-longer-than-a-small-string";
constexpr char kOld[] = R"({"count":1,"list":[{"n":1},{"n":2}],"name":"of some length","d":1.50,)"
                        R"("1":1,"2":2,"3":3,"4":4,"5":5,"6":6,"7":7})";
constexpr char kSchema[] =
    R"({"properties":{"name":{"type":"string","pattern":"^[a-z ]+$","maxLength":20}}})";

// The answers that a request got, to be checked when there is memory again.
struct Told {
  bool isLoaded = false;
  bool isSet = false;
  int added = -1;
  int length = 2;  // of the list
  bool conforms = false;
  bool wrongConforms = false;
  bool fileConforms = false;
  bool isSaved = false;
  Handle copy;
  std::list<TreeMapObject*> found;

  ~Told() {
    for (const TreeMapObject* const handle : found) {
      delete handle;
    }
  }
};

// True for the refusals that json-c does not survive: its parser goes on without the part, in 0.15
// also without the buffer, that it found no memory for, and then may crash, leak, or leave
// something out.
bool wasRefusedToParser() {
  const bool isMadeWithoutBuffer = json_c_version_num() < (16 << 8);
  return wasRefusedIn("json_tokener_parse_ex") ||
         (isMadeWithoutBuffer && wasRefusedIn("json_tokener_new_ex"));
}

// How far a child has come, for its parent to see.
int* lastRefused = nullptr;

constexpr int kDied = 50;
constexpr int kDiedInParser = 51;

// Ends a child that gets a fatal signal. The innermost frame outside the C library is to blame.
void blame(int /*signal*/) {
  void* frames[40];
  const int count = backtrace(frames, 40);
  bool isPastHandler = false;
  for (int i = 0; i < count; ++i) {
    Dl_info info{};
    dladdr(frames[i], &info);
    const bool isLibc = strstr(info.dli_fname, "/libc.so") != nullptr ||
                        strstr(info.dli_fname, "/ld-musl") != nullptr;
    isPastHandler = isPastHandler || isLibc;
    if (isPastHandler && !isLibc) {
      const bool isJsonC = strstr(info.dli_fname, "/libjson-c.so") != nullptr;
      _exit(isJsonC && wasRefusedToParser() ? kDiedInParser : kDied);
    }
  }
  _exit(kDied);
}

void startUp() {
  BEConfig::isInit = false;
  BEConfig::URL_REWRITE = "url_rewrite.txt";
  BEConfig::init("configuration");
  Logger::init();
  signal(SIGSEGV, blame);
  LocalDbCtrl::init();
  LocalDbCtrl::cloneNewDB(kSession);
}

void change(TreeMapObject& document, TreeMapObject& wrong, Told& told) {
  told.copy.reset(document.clone(nullptr));
  told.found = document.find("n", 2);
  json_object* const two = json_object_new_int(2);
  told.isSet = two != nullptr && JsonData::setJObj(document.jobj, "count", two) == 0;
  json_object_put(two);
  document.set("made.[0].on.the.way", "text");
  const Handle list(document.get("list"));
  if (list != nullptr) {
    told.added = list->addArrayItem(7);
    list->delArrayItem(0);
    told.length = list->len();
  }
  told.conforms = LocalDbCtrl::validateObject(&document, API_QOS, 0) == 0;
  told.wrongConforms = LocalDbCtrl::validateObject(&wrong, API_QOS, 0) == 0;
  told.fileConforms = JsonData::validateFile(kDatabase, kSchemaFile) == 0;
}

void request(TreeMapObject& wrong, Told& told) {
  startUp();
  TreeMapObject* const document = LocalDbCtrl::lockDbObject(API_QOS, "", kSession);
  if (document != nullptr) {
    told.isLoaded = document->jobj != nullptr;
    change(*document, wrong, told);
    told.isSaved = LocalDbCtrl::saveDbObject(API_QOS, kSession) == 0;
  }
  BELoginRecord::setAttempt("192.168.100.100");
  BELoginRecord::getAttempt("192.168.100.100");
}

void end() {
  LocalDbCtrl::removeDB(kSession);
  LocalDbCtrl::removeDB("default");
  BELoginRecord::isRunning = false;
}

void expectAsTold(const Told& told) {
  const std::string text = textOf(kDatabase);
  const Handle file(JsonData::createObject(text.c_str()));
  const JsonRef old(json_tokener_parse(kOld));
  ASSERT_NE(nullptr, file) << text;
  EXPECT_FALSE(told.wrongConforms);
  if (told.isSaved) {
    EXPECT_TRUE(told.isLoaded) << "what was not loaded cannot be saved";
    json_object_object_foreach(old.get(), name, member) {
      json_object* const saved = JsonData::getJObj(file->jobj, name);
      EXPECT_EQ(json_object_get_type(member), json_object_get_type(saved)) << name;
    }
    EXPECT_EQ(told.isSet ? 2 : 1, file->get<int>("count"));
    const Handle list(file->get("list"));
    EXPECT_EQ(told.length, list->len());
    const Handle last(list->at(static_cast<unsigned>(told.length) - 1));
    EXPECT_TRUE(told.added < 0 || json_object_get_int(last->jobj) == 7) << text;
  } else {
    EXPECT_EQ(kOld, text);
  }
  EXPECT_TRUE(told.copy == nullptr || json_object_equal(old.get(), told.copy->jobj));
  for (const TreeMapObject* const handle : told.found) {
    EXPECT_EQ(2, handle->get<int>("n"));
  }
}

bool isAllDone(const Told& told) {
  return told.isLoaded && told.isSet && told.added == 2 && told.length == 2 && told.conforms &&
         told.fileConforms && told.isSaved && told.copy != nullptr && told.found.size() == 1;
}

// One request from start-up to end. The refused allocation is the n-th; none at 0. Gives the number
// of allocations.
int runRequest(TreeMapObject& wrong, int nth, bool lasts) {
  putText(kDatabase, kOld);
  Told told;
  failAllocation(nth, lasts);
  request(wrong, told);
  const int allocations = countedAllocations();
  if (lasts || !wasRefusedToParser()) {
    expectAsTold(told);
    EXPECT_TRUE(nth > 0 || isAllDone(told));
  }
  end();
  return allocations;
}

// Requests whose first, second ... allocation fails, each followed by one that has memory.
[[noreturn]] void runFrom(int nth, bool lasts) {
  signal(SIGABRT, blame);
  BEConfig::LOG_ERROR_ENABLE = lasts ? 0 : 1;
  TreeMapObject wrong(R"({"name":"UPPER"})");
  runRequest(wrong, 0, false);
  void* warmUp[1];
  backtrace(warmUp, 1);
  const std::size_t openFiles = namesIn("/proc/self/fd").size();
  bool isLast = false;
  while (!isLast && !testing::Test::HasFailure()) {
    SCOPED_TRACE(testing::Message() << "allocation " << nth << (lasts ? " and all later" : ""));
    *lastRefused = nth;
    const int blocks = blocksInUse();
    isLast = runRequest(wrong, nth, lasts) < nth;
    EXPECT_TRUE(blocks == blocksInUse() || wasRefusedToParser() || wasRefusedIn("lh_table_resize"))
        << blocksInUse() - blocks << " leaked";
    EXPECT_EQ(openFiles, namesIn("/proc/self/fd").size());
    runRequest(wrong, 0, false);
    ++nth;
  }
  exit(testing::Test::HasFailure() ? 1 : 0);
}

using MemoryFaultsTest = ScratchInMemory;

TEST_F(MemoryFaultsTest, PretendNothingAndLoseNothing) {
  lastRefused = static_cast<int*>(
      mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  std::filesystem::create_directories(kFolder);
  putText("configuration", kConfiguration);
  putText(kSchemaFile, kSchema);
  for (const bool lasts : {false, true}) {
    *lastRefused = 0;
    Ended ended{kDiedInParser, "", ""};
    while (ended.status == kDiedInParser) {
      ended = inChild([=] { runFrom(*lastRefused + 1, lasts); });
    }
    EXPECT_EQ(0, ended.status) << "allocation " << *lastRefused << "\n" << ended.out << ended.err;
    EXPECT_GT(*lastRefused, 100);
  }
  munmap(lastRefused, sizeof(int));
}

// A lock that memory was short for has what it asked for or is refused; the next one has it. Each
// in a child: json-c may end that.
TEST_F(MemoryFaultsTest, OfOneLockAreForgottenByTheNext) {
  constexpr int kLast = 2;
  std::filesystem::create_directories("qos");
  putText("qos/qos.ldb", kOld);
  BEConfig::DATA_LOCATION = ".";
  int refused = 0;
  Ended ended{0, "", ""};
  for (int nth = 1; ended.status != kLast; ++nth) {
    ended = inChild([nth] {
      LocalDbCtrl::init();
      failAllocation(nth, false);
      const Handle first(LocalDbCtrl::lockDbObject(API_QOS, "count", "default"));
      const bool isLast = countedAllocations() < nth;
      const Handle next(first == nullptr ? LocalDbCtrl::lockDbObject(API_QOS, "count", "default")
                                         : nullptr);
      const bool isRight = (first != nullptr) != (next != nullptr) || wasRefusedToParser();
      exit(isLast ? kLast : isRight ? 0 : 1);
    });
    EXPECT_NE(1, ended.status) << "allocation " << nth;
    ++refused;
  }
  EXPECT_GT(refused, 10);
}

}  // namespace
