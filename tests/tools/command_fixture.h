// The language of the command's tests: every row is a line for the shell, run in a copy of the
// sample gateway, and what must come of it.
#ifndef HEARTH_TESTS_TOOLS_COMMAND_FIXTURE_H
#define HEARTH_TESTS_TOOLS_COMMAND_FIXTURE_H

#include <map>
#include <regex>

#include "tests/support/scratch.h"

// A line that succeeds with this output, or fails with this error. The output is all of standard
// output, "*" for anything; the error is a part of standard error, which is empty where that is.
struct Row {
  Row(const std::string& itsLine, const std::string& itsOut = "", const std::string& itsErr = "")
      : Row(itsLine, 0, itsOut, itsErr) {}
  Row(const std::string& itsLine, int itsExit, const std::string& itsErr)
      : Row(itsLine, itsExit, "", itsErr) {}
  Row(std::string itsLine, int itsExit, std::string itsOut, std::string itsErr)
      : line(std::move(itsLine)), exit(itsExit), out(std::move(itsOut)), err(std::move(itsErr)) {}
  const std::string line;
  const int exit;
  const std::string out, err;
};

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    std::filesystem::copy(HEARTH_SAMPLE, dir_ / "data", std::filesystem::copy_options::recursive);
    dir_.file("f.json", kSmall);
  }

  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir_.path())) {
      const std::string name = std::filesystem::relative(entry.path(), dir_.path()).string();
      if (entry.is_regular_file() && name != "out" && name != "err") {
        result[name] = dir_.contentsOf(name);
      }
    }
    return result;
  }

  // Runs the line; a command that fails must have changed no file.
  void run(const Row& row) {
    SCOPED_TRACE(row.line);
    const auto before = files();
    const std::string script = "cd '" + dir_.path() +
                               "' || exit 99\nhearth() { " HEARTH_COMMAND
                               " \"$@\"; }\nexec >out 2>err\n" +
                               row.line + "\n";
    const int status = system(script.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    const std::string err = dir_.contentsOf("err");
    EXPECT_EQ(WEXITSTATUS(status), row.exit) << err;
    if (row.out != "*") {
      EXPECT_EQ(dir_.contentsOf("out"), row.out);
    }
    EXPECT_TRUE(err.find(row.err) != std::string::npos && err.empty() == row.err.empty()) << err;
    if (row.exit != 0) {
      EXPECT_TRUE(files() == before) << "a failure changed a file";
      // One line of a message, all of which can be shown anywhere.
      const std::regex lines("((hearth: note: [^\\n]*\\n)*hearth: [^\\n]+\\n)?");
      EXPECT_TRUE(std::regex_match(err, lines)) << err;
      EXPECT_EQ(err.find_first_of("\x1b\r\b\x7f"), std::string::npos) << err;
    }
  }

  void runAll(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      run(row);
    }
  }

  static constexpr char kSmall[] =
      R"({"a":{"b":[10,null,{"c":"x"}],"n":null,"s":"7"},"d.e":1,"[f":2,"i":7,"t":true,"g":1.5,)"
      "\"ctl\":\"\\u001b[2J\x7f\xc2\x9b\xe2\x80\xae\\n\",\"\":0}";
  const TempDir dir_;
};

#endif
