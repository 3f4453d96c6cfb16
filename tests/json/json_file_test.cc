// Files with documents. json-c's own parser of texts is the oracle for every regular file.
#include "json/json_file.h"

#include <json-c/json.h>
#include <sys/inotify.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include "base/json_ref.h"
#include "base/unique_fd.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

using FileReadTest = Scratch;

std::string rendered(json_object* value) {
  const JsonRef owner(value);
  return value == nullptr ? "(none)" : json_object_to_json_string(value);
}

void checkText(const std::string& text) {
  putText("file", text);
  EXPECT_EQ(rendered(json_tokener_parse(text.c_str())), rendered(readJsonFile("file")))
      << text.substr(0, 80) << " of " << text.size();
}

TEST_F(FileReadTest, ReadsWhatJsonCReads) {
  const char* const rows[] = {"",
                              "{",
                              "{}",
                              "[1] trailing",
                              "null",
                              "12",
                              "-",
                              "'a'",
                              "\"a\\u0000b\"",
                              "/* c */ [1]",
                              "\xef\xbb\xbf[]",
                              "[\"\xff\"]",
                              "[1,]"};
  for (const char* const text : rows) {
    checkText(text);
  }
  std::string large = "[0";
  while (large.size() < 1000000) {
    large += ",{\"n\":1.5,\"s\":\"text\"}";
  }
  checkText(large);
  checkText(large + "]");
  checkText(std::string("[1]\0[2]", 7));
  checkText(std::string("[1\0]", 4));
  for (const std::size_t size : {31U, 32U, 4094U, 4095U, 4096U, 9000U}) {
    checkText(std::string(size, '[') + std::string(size, ']'));
    checkText(std::string(size, ' ') + "[]");
  }
  prctl(PR_SET_NAME, "[1,2]");
  for (const char* path :
       {"missing", ".", "/proc/self/smaps", "/proc/sys/kernel/pid_max", "/proc/thread-self/comm"}) {
    EXPECT_EQ(rendered(json_object_from_file(path)), rendered(readJsonFile(path))) << path;
  }
}

TEST_F(FileReadTest, RefusesWhatIsNoFileWithoutOpeningIt) {
  mkfifo("pipe", 0666);
  symlink("pipe", "link");
  const UniqueFd events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  ASSERT_GE(inotify_add_watch(events.get(), "pipe", IN_OPEN), 0);
  putText("huge", "[1]");
  ASSERT_EQ(0, truncate("huge", off_t{1} << 31));
  for (const char* path : {"pipe", "link", "/dev/zero", "huge", "/dev/null", "."}) {
    EXPECT_EQ(Reading::kNoValue, findJsonFile(path).reading) << path;
  }
  inotify_event event{};
  EXPECT_EQ(-1, read(events.get(), &event, sizeof(event))) << "the pipe was opened";
}

TEST_F(FileReadTest, TellsWhyThereIsNoValue) {
  putText("whole", "[1]");
  putText("cut", "[1");
  putText("comment", "[\"\"//");
  putText("null", "null");
  symlink("nowhere", "link");
  const std::pair<const char*, Reading> rows[] = {
      {"whole", Reading::kValue},     {"cut", Reading::kNoValue},
      {"comment", Reading::kNoValue}, {"null", Reading::kNoValue},
      {"link", Reading::kMissing},    {"whole/file", Reading::kMissing},
      {nullptr, Reading::kMissing},   {"/proc/self/mem", Reading::kUnreadable}};
  for (const auto& [path, reading] : rows) {
    const JsonFile file = findJsonFile(path);
    EXPECT_EQ(reading, file.reading) << (path != nullptr ? path : "(null)");
    EXPECT_EQ(reading == Reading::kValue, file.value != nullptr);
  }
}

TEST_F(FileReadTest, WritesWhatJsonCWrites) {
  const JsonRef value(json_tokener_parse(R"({"a":[1,{"b":"\u0000"}],"c":1.50})"));
  ASSERT_EQ(0, json_object_to_file_ext("theirs", value.get(), JSON_C_TO_STRING_PRETTY));
  EXPECT_TRUE(replaceFileWithJson("ours", value.get(), Durability::kFlushed));
  EXPECT_EQ(textOf("theirs"), textOf("ours"));
  EXPECT_FALSE(replaceFileWithJson("ours", nullptr, Durability::kFlushed));
}

}  // namespace
}  // namespace hearth
