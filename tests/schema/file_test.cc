// The two functions of the seam, on files: what is read, and what is refused without a wait.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "schema/json_validate.h"

namespace {

class FileTest : public testing::Test {
 protected:
  FileTest() { EXPECT_NE(mkdtemp(folder_), nullptr); }
  ~FileTest() override { std::filesystem::remove_all(folder_); }

  std::string path(const char* name) const { return std::string(folder_) + '/' + name; }
  std::string file(const char* name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }

  char folder_[32] = "/tmp/hearth-schema-XXXXXX";
};

TEST_F(FileTest, ReadsDocumentsOfEveryKind) {
  const std::string number = file("schema", R"({"type":["number","null"]})");
  const struct {
    const char* text;
    int conforms;
  } rows[] = {{"1", 1}, {" 12.5 \n", 1}, {"null", 1}, {"\"1\"", 0}, {"", 0}, {"{", 0}, {"nul", 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(json_validate_instance_from_file(file("instance", row.text).c_str(), number.c_str()),
              row.conforms)
        << row.text;
  }
  const std::string null = file("null", "null");
  EXPECT_EQ(json_validate_instance_from_file(null.c_str(), null.c_str()), 0);
  EXPECT_EQ(json_validate_instance(nullptr, nullptr), 0);
}

TEST_F(FileTest, RefusesWhatIsNoRegularFile) {
  const std::string schema = file("schema", "true");
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  const std::string pipe = path("pipe");
  for (const std::string& wrong : {pipe, path("missing"), std::string(folder_),
                                   std::string("/dev/zero"), std::string("/dev/null")}) {
    EXPECT_EQ(json_validate_instance_from_file(wrong.c_str(), schema.c_str()), 0) << wrong;
    EXPECT_EQ(json_validate_instance_from_file(schema.c_str(), wrong.c_str()), 0) << wrong;
  }
  EXPECT_EQ(json_validate_instance_from_file(nullptr, schema.c_str()), 0);
  EXPECT_EQ(json_validate_instance_from_file(schema.c_str(), nullptr), 0);
}

}  // namespace
