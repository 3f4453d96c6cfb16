// What a power cut would find, told from the order of the calls: a save writes its temporary,
// flushes it, renames it and flushes the folder; each of these is tried again when a signal
// interrupts it, and one that fails ends the save there.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "hearth/hearth.h"
#include "tests/faults/file_faults.h"
#include "tests/support/scratch.h"

namespace {

using Words = std::vector<std::string>;

constexpr char kOld[] = R"({"count":1})";
constexpr char kNew[] = "{\n  \"count\":2\n}";

Words words;    // one for each call that durability depends on, with a "!" when it failed
int calls = 0;  // on files, of any kind
int temporary = -1;

std::string wordFor(const FileCall& call) {
  const std::string name = call.name;
  struct stat status {};
  if (name == "openat" && (call.flags & O_CREAT) == 0) {
    return (call.flags & O_CLOEXEC) == 0 ? "open inheritable" : "open";
  }
  if (name == "openat") {
    temporary = call.fd;
    return std::string("make") + ((call.flags & O_EXCL) != 0 ? " new" : "") +
           ((call.flags & O_NOFOLLOW) != 0 ? " unlinked" : "") +
           ((call.flags & O_CLOEXEC) != 0 ? " private" : "");
  }
  if (name == "renameat" || name == "unlinkat") {
    return name;
  }
  const bool isFolder = fstat(call.fd, &status) == 0 && S_ISDIR(status.st_mode);
  return name + (call.fd == temporary ? "" : isFolder ? " folder" : " another");
}

void note(const FileCall& call) {
  words.push_back(wordFor(call) + (call.failed ? "!" : ""));
}

const Words kSave = {"open",        "make new unlinked private", "write", "fsync", "renameat",
                     "fsync folder"};

struct Durable {
  const char* name;
  const char* file;
  void (*prepare)();
  int (*save)();
};

const Durable kDurable[] = {
    {"a document", "document", [] {},
     [] {
       TreeMapObject document(R"({"count":2})");
       return JsonData::saveObjectToFile("document", &document);
     }},
    {"a database", "qos/qos.ldb",
     [] {
       LocalDbCtrl::init();
       LocalDbCtrl::lockDbObject(API_QOS, "", "default")->set("count", 2);
     },
     [] { return LocalDbCtrl::saveDbObject(API_QOS, "default"); }},
};

class DurabilityTest : public ScratchInMemory {
 protected:
  DurabilityTest() {
    std::filesystem::create_directory("qos");
    BEConfig::DATA_LOCATION = ".";
    BEConfig::LOG_ERROR_ENABLE = 0;
    watchFileCalls(note);
  }
  ~DurabilityTest() override {
    watchFileCalls(nullptr);
    BEConfig::LOG_ERROR_ENABLE = 1;
  }

  // The answer of a save of kNew over kOld whose n-th call meets the fault; its words are in words.
  static int saved(const Durable& durable, int nth, const FileFault& fault) {
    putText(durable.file, kOld);
    durable.prepare();
    words.clear();
    failFileCall(nth, fault);
    const int answer = durable.save();
    calls = countedFileCalls();
    return answer;
  }

  // Runs one save for each of its calls on files, that call failing in this way. Calls `check` with
  // the position of the failed word and the answer.
  static void eachFailing(const Durable& durable, const FileFault& fault,
                          const std::function<void(long at, int answer)>& check) {
    std::size_t failed = 0;
    for (int nth = 1, all = 1; nth <= all; ++nth) {
      saved(durable, 0, {});  // so that the next finds the folder searched for strays
      all = calls;
      const int answer = saved(durable, nth, fault);
      const auto word = std::find_if(words.begin(), words.end(),
                                     [](const std::string& w) { return w.back() == '!'; });
      if (word != words.end()) {
        SCOPED_TRACE(testing::Message() << durable.name << ", " << fault.name << ": " << *word);
        check(word - words.begin(), answer);
        ++failed;
      }
    }
    EXPECT_EQ(kSave.size(), failed) << "each of the words once";
  }
};

TEST_F(DurabilityTest, ASaveFlushesBeforeAndAfterItRenames) {
  for (const Durable& durable : kDurable) {
    saved(durable, 0, {});
    EXPECT_EQ(0, saved(durable, 0, {}));
    EXPECT_EQ(kSave, words) << durable.name;
    EXPECT_EQ(kNew, textOf(durable.file));

    eachFailing(durable, {"interrupted", EINTR, false}, [&](long at, int answer) {
      EXPECT_EQ(0, answer);
      words.erase(words.begin() + at);
      EXPECT_EQ(kSave, words);
      EXPECT_EQ(kNew, textOf(durable.file));
    });
    eachFailing(durable, {"device error", EIO, false}, [&](long at, int answer) {
      const bool isReplaced = words[static_cast<std::size_t>(at)] == "fsync folder!";
      const bool isMade = at > 1 && !isReplaced;
      EXPECT_EQ(isMade ? Words{"unlinkat"} : Words{}, Words(words.begin() + at + 1, words.end()));
      EXPECT_EQ(isReplaced ? 0 : 2, answer);
      EXPECT_EQ(isReplaced ? kNew : kOld, textOf(durable.file));
    });
  }
}

TEST_F(DurabilityTest, ASearchForStraysThatFailsIsMadeAgain) {
  const std::string stray = ".hearth-0123456789abcdef.tmp";
  for (int nth = 1, all = 1; nth <= all; ++nth) {
    putText(stray, "left by a crash");
    saved(kDurable[0], nth, {"device error", EIO, false});
    saved(kDurable[0], 0, {});
    all = std::max(all, calls);
    EXPECT_EQ(0U, namesIn(".").count(stray)) << "after a failure of call " << nth;
    std::filesystem::remove(stray);
  }
}

TEST_F(DurabilityTest, ALoginIsCountedWithoutFlushing) {
  BELoginRecord::init();
  BELoginRecord::setAttempt("a");
  words.clear();
  failFileCall(0, {});
  BELoginRecord::setAttempt("a");
  countedFileCalls();
  EXPECT_EQ((Words{"open", "make new unlinked private", "write", "renameat"}), words);
}

}  // namespace
