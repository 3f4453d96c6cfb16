// Replacements as a reader, another user and another thread see them. Failing calls and power cuts
// are in tests/faults.
#include "files/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <climits>

#include "files/temporary_file.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

constexpr char kStray[] = ".hearth-0123456789abcdef.tmp";

bool replaceText(const std::string& path, const std::string& text,
                 Durability durability = Durability::kFlushed) {
  return replaceFile(path.c_str(), text.data(), text.size(), durability);
}

struct stat statusOf(const std::string& path) {
  struct stat status {};
  lstat(path.c_str(), &status);
  return status;
}

using FileReplaceTest = Scratch;

TEST_F(FileReplaceTest, MakesOrReplacesTheFile) {
  mkdir("folder", 0777);
  const std::string longest(NAME_MAX, 'n');
  for (const std::string& path :
       {std::string("file"), folder_ / "absolute", std::string("folder/inside"),
        std::string("folder//../up"), longest}) {
    for (const std::string& text : {std::string("first, and longer"), std::string(),
                                    std::string(300000, 'x'), std::string("a\0b", 3)}) {
      for (const Durability durability : {Durability::kFlushed, Durability::kUnflushed}) {
        EXPECT_TRUE(replaceText(path, text, durability)) << path << " " << strerror(errno);
        EXPECT_EQ(text, textOf(path)) << path;
      }
    }
  }
  EXPECT_EQ((std::set<std::string>{"absolute", "file", "folder", "up", longest}), namesIn("."));
}

TEST_F(FileReplaceTest, KeepsOwnerAndModeAndMakesNewOnesWithTheUmask) {
  const bool isRoot = geteuid() == 0;
  const mode_t outer = umask(022);
  for (const mode_t mode : {0600U, 0644U, 0660U, 0666U, 0755U, 0200U, 04755U}) {
    putText("old", "old");
    ASSERT_TRUE(!isRoot || chown("old", 1234, 5678) == 0);
    chmod("old", mode);
    const struct stat before = statusOf("old");
    EXPECT_TRUE(replaceText("old", "new"));
    const struct stat after = statusOf("old");
    const mode_t lost = isRoot ? 0 : S_ISUID;  // by any write of who is not root
    EXPECT_EQ(before.st_mode & ~lost, after.st_mode) << std::oct << mode;
    EXPECT_EQ(before.st_uid, after.st_uid) << std::oct << mode;
    EXPECT_EQ(before.st_gid, after.st_gid) << std::oct << mode;
    EXPECT_NE(before.st_ino, after.st_ino) << "not in one step: " << std::oct << mode;
    unlink("old");
  }
  const std::pair<mode_t, mode_t> rows[] = {{0, 0644}, {022, 0644}, {027, 0640}, {077, 0600}};
  for (const auto& [mask, mode] : rows) {
    umask(mask);
    EXPECT_TRUE(replaceText("new", "new"));
    EXPECT_EQ(mode, statusOf("new").st_mode & 07777U) << std::oct << mask;
    unlink("new");
  }
  umask(outer);
}

// As another user, in a folder of root's that takes everybody's files.
TEST_F(FileReplaceTest, PermissionsBindWhoIsNotRoot) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "needs root to become others";
  }
  chmod(".", 0777);
  constexpr mode_t kRefused = 0;
  struct Row {
    uid_t owner;
    gid_t group;
    mode_t mode;
    mode_t result;  // the new mode
  };
  const Row rows[] = {
      {4000, 4000, 0444, kRefused}, {0, 0, 0644, kRefused}, {0, 4000, 0644, kRefused},
      {4000, 4000, 0640, 0640},     {0, 4000, 0664, 0664},  {0, 0, 0666, 0666},
      {0, 0, 0606, 0600},           {0, 0, 0646, 0644},     {4000, 0, 0660, 0600},
      {4000, 0, 0604, 0600},        {0, 4000, 02664, 0664}, {0, 4000, 0466, 0444},
  };
  for (const auto& [owner, group, mode, result] : rows) {
    SCOPED_TRACE(testing::Message() << owner << " " << group << std::oct << " " << mode);
    putText("file", "old");
    ASSERT_EQ(0, chown("file", owner, group));
    chmod("file", mode);
    const Ended ended = inChild([] {
      if (setegid(4000) == 0 && seteuid(4000) == 0) {
        printf("%d", replaceText("file", "new") ? 1 : errno);
        seteuid(0);  // who writes what a coverage build has counted
      }
    });
    const bool isRefused = result == kRefused;
    EXPECT_EQ(isRefused ? std::to_string(EACCES) : "1", ended.out);
    EXPECT_EQ(isRefused ? "old" : "new", textOf("file"));
    EXPECT_EQ(isRefused ? owner : 4000, statusOf("file").st_uid);
    EXPECT_EQ(isRefused ? mode : result, statusOf("file").st_mode & 07777U);
    unlink("file");
  }
}

TEST_F(FileReplaceTest, FollowsLinksToTheirTarget) {
  mkdir("folder", 0777);
  mkdir("folder/sub", 0777);
  putText("folder/target", "old");
  symlink("folder/target", "direct");
  symlink("../target", "folder/sub/up");
  symlink("folder/sub/up", "chain");
  symlink((folder_ / "folder/new").c_str(), "dangling");
  symlink("folder/sub", "way");
  for (const char* path : {"direct", "chain", "way/up", "folder/sub/../target"}) {
    EXPECT_TRUE(replaceText(path, path)) << path;
    EXPECT_EQ(path, textOf("folder/target"));
  }
  EXPECT_TRUE(replaceText("dangling", "made"));
  EXPECT_EQ("made", textOf("folder/new"));
  for (const char* link : {"direct", "chain", "dangling", "folder/sub/up"}) {
    EXPECT_TRUE(S_ISLNK(statusOf(link).st_mode)) << link;
  }
  putText("one", "old");
  ASSERT_EQ(0, link("one", "other"));
  EXPECT_TRUE(replaceText("one", "new"));
  EXPECT_EQ("old", textOf("other")) << "the other hard link keeps its document";
}

TEST_F(FileReplaceTest, RefusesWithoutTouchingAnything) {
  mkdir("folder", 0777);
  putText("file", "old");
  symlink("loop", "loop");
  symlink("missing/x", "astray");
  mkfifo("pipe", 0666);
  const std::pair<std::string, int> rows[] = {
      {"", EISDIR},
      {"folder", EISDIR},
      {"folder/", EISDIR},
      {"..", EISDIR},
      {"missing/file", ENOENT},
      {"file/x", ENOTDIR},
      {"loop", ELOOP},
      {"astray", ENOENT},
      {"pipe", ENXIO},
      {"/dev/full", ENOSPC},
      {std::string(NAME_MAX + 1, 'n'), ENAMETOOLONG},
      {std::string(PATH_MAX, '/') + "file", ENAMETOOLONG},
  };
  const auto names = namesIn(".");
  for (const auto& [path, error] : rows) {
    EXPECT_FALSE(replaceText(path, "new")) << path;
    EXPECT_EQ(error, errno) << path.substr(0, 80);
  }
  EXPECT_FALSE(replaceFile(nullptr, "", 0, Durability::kFlushed));
  removeStrayTemporaries(nullptr);
  EXPECT_EQ(names, namesIn("."));
  EXPECT_EQ("old", textOf("file"));
}

TEST_F(FileReplaceTest, WritesDevicesAndPipesStraight) {
  symlink("/dev/null", "null");
  EXPECT_TRUE(replaceText("/dev/null", "new"));
  EXPECT_TRUE(replaceText("null", "new"));
  mkfifo("pipe", 0666);
  std::string got;
  std::thread reader([&got] { got = textOf("pipe"); });
  const std::string text(1000000, 'x');
  while (!replaceText("pipe", text)) {
    ASSERT_EQ(ENXIO, errno);
  }
  reader.join();
  EXPECT_EQ(text, got);
  EXPECT_EQ("new", inChild([] { static_cast<void>(replaceText("/dev/stdout", "new")); }).out);
}

TEST_F(FileReplaceTest, StraysGoAndLiveOnesStay) {
  const std::set<std::string> others = {".hearth-0123456789abcdeg.tmp", ".hearth-.tmp",
                                        ".hearth-0123456789abcdef", "0123456789abcdef.tmp"};
  for (const std::string& name : others) {
    putText(name, "");
  }
  putText("target", "old");
  putText(kStray, "");
  mkdir(".hearth-bbbbbbbbbbbbbbbb.tmp", 0777);
  symlink("target", ".hearth-aaaaaaaaaaaaaaaa.tmp");
  mkfifo(".hearth-cccccccccccccccc.tmp", 0666);
  const UniqueFd here(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  TemporaryFile live(here.get());
  ASSERT_TRUE(live.make(0600));
  EXPECT_TRUE(replaceText("target", "new"));
  EXPECT_FALSE(namesIn(".").count(kStray));
  EXPECT_EQ(others.size() + 5, namesIn(".").size())
      << "folder, target, link, pipe and the live one too";
  putText(kStray, "");
  EXPECT_TRUE(replaceText("target", "new"));
  EXPECT_FALSE(namesIn(".").count(kStray)) << "another process has crashed meanwhile";
  putText(kStray, "");
  removeStrayTemporaries((folder_ / "any").c_str());
  EXPECT_FALSE(namesIn(".").count(kStray)) << "at a start";
  EXPECT_TRUE(live.become("target"));
  EXPECT_EQ(others.size() + 4, namesIn(".").size());
}

// Saves go on while others look for strays, and every reader meets a whole document.
TEST_F(FileReplaceTest, IsWholeForEveryThread) {
  std::atomic<int> failures{0};
  std::atomic<int> savers{2};
  replaceText("file", std::string(5000, '0'));
  inThreads(3, [&](unsigned int number) {
    for (std::size_t i = 0; i < 200 && number > 0; ++i) {
      failures += !replaceText("file", std::string(5000 + 40 * i, number == 1 ? 'a' : 'b'));
    }
    for (savers -= number > 0; savers > 0 && number == 0;) {
      removeStrayTemporaries("file");
      const std::string text = textOf("file");
      failures += text.size() < 5000 || text.find_first_not_of(text[0]) != std::string::npos;
    }
  });
  EXPECT_EQ(0, failures);
  EXPECT_EQ(std::set<std::string>{"file"}, namesIn("."));
}

}  // namespace
}  // namespace hearth
