// The two functions of the seam, on files: which documents are read, and which files are refused
// without a wait.
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
    EXPECT_EQ(conforms, json_validate_instance_from_file("instance", "schema")) << text;
  }
  putText("null", "null");
  EXPECT_EQ(0, json_validate_instance_from_file("null", "null"));
  EXPECT_EQ(0, json_validate_instance(nullptr, nullptr));
}

TEST_F(FileTest, RefusesWhatIsNoRegularFile) {
  putText("true", "true");
  ASSERT_EQ(0, mkfifo("pipe", 0600));
  const char* const none = nullptr;
  for (const char* const wrong : {"pipe", "missing", ".", "/dev/zero", "/dev/null", none}) {
    EXPECT_EQ(0, json_validate_instance_from_file(wrong, "true")) << testing::PrintToString(wrong);
    EXPECT_EQ(0, json_validate_instance_from_file("true", wrong)) << testing::PrintToString(wrong);
  }
}

}  // namespace
