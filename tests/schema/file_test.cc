// The two functions of the seam, on files: what is read, and what is refused without a wait.
#include <sys/stat.h>

#include <utility>

#include "schema/json_validate.h"
#include "tests/support/scratch.h"

namespace {

using FileTest = Scratch;

TEST_F(FileTest, ReadsDocumentsOfEveryKind) {
  putText("schema", R"({"type":["number","null"]})");
  const std::pair<const char*, int> rows[] = {{"1", 1},     {" 12.5 \n", 1}, {"null", 1}, {"", 0},
                                              {"\"1\"", 0}, {"{", 0},        {"nul", 0}};
  for (const auto& [text, conforms] : rows) {
    putText("instance", text);
    EXPECT_EQ(json_validate_instance_from_file("instance", "schema"), conforms) << text;
  }
  putText("null", "null");
  EXPECT_EQ(json_validate_instance_from_file("null", "null"), 0);
  EXPECT_EQ(json_validate_instance(nullptr, nullptr), 0);
}

TEST_F(FileTest, RefusesWhatIsNoRegularFile) {
  putText("true", "true");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const char* const none = nullptr;
  for (const char* const wrong : {"pipe", "missing", ".", "/dev/zero", "/dev/null", none}) {
    EXPECT_EQ(json_validate_instance_from_file(wrong, "true"), 0) << testing::PrintToString(wrong);
    EXPECT_EQ(json_validate_instance_from_file("true", wrong), 0) << testing::PrintToString(wrong);
  }
}

}  // namespace
