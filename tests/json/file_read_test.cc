// json-c's own file reader is the oracle for every regular file.
#include "json/file_read.h"

#include <json-c/json.h>
#include <sys/stat.h>

#include <thread>

#include "json/json_ref.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

using FileReadTest = Scratch;

std::string rendered(json_object* value) {
  const JsonRef owner(value);
  return value == nullptr ? "(none)" : json_object_to_json_string(value);
}

TEST_F(FileReadTest, ReadsWhatJsonCReads) {
  const std::string deep31 = std::string(31, '[') + std::string(31, ']');
  const std::string deep32 = std::string(32, '[') + std::string(32, ']');
  std::string large = "[0";
  while (large.size() < 1000000) {
    large += ",{\"n\":1.5,\"s\":\"text\"}";
  }
  const std::string kTexts[] = {"",
                                " ",
                                "{",
                                "{}",
                                "[1,2",
                                "[1] trailing",
                                "null",
                                "true",
                                "12",
                                "12\n",
                                "-1.5e3 ",
                                "\"a\\u0000b\"",
                                "'a'",
                                "{\"a\":1,\"a\":2}",
                                "/* c */ [1]",
                                "\xef\xbb\xbf[]",
                                "[\"\xff\"]",
                                std::string("[1]\0[2]", 7),
                                std::string("[1\0]", 4),
                                "nan",
                                "[1,]",
                                deep31,
                                deep32,
                                large + "]",
                                large,
                                std::string(4094, ' ') + "[]",
                                std::string(4095, ' ') + "[]",
                                std::string(9000, ' ')};
  for (const std::string& text : kTexts) {
    putText("file", text);
    EXPECT_EQ(rendered(json_object_from_file("file")), rendered(readJsonFile("file")))
        << text.substr(0, 80) << " of " << text.size();
  }
  for (const char* path : {"missing", ".", "/proc/self/status", "/proc/sys/kernel/pid_max"}) {
    EXPECT_EQ(rendered(json_object_from_file(path)), rendered(readJsonFile(path))) << path;
  }
}

TEST_F(FileReadTest, RefusesWhatWouldBlockOrNeverEnd) {
  mkfifo("pipe", 0666);
  putText("huge", "[1]");
  ASSERT_EQ(0, truncate("huge", off_t{1} << 31));
  for (const char* path : {"pipe", "/dev/zero", "huge", "/dev/null"}) {
    EXPECT_EQ(nullptr, readJsonFile(path)) << path;
  }
}

}  // namespace
}  // namespace hearth
