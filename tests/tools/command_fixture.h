// The language of the command's tests. A row is a line for the shell, run in a copy of the sample
// gateway, and what must come of it:
//
//   {"hearth get f.json i", "7\n"}                     succeeds with this output and no error
//   {"hearth set f.json x.[5] 1", "", "stored as"}     succeeds with this output and this error
//   {"hearth get wfii a", 2, "did you mean 'wifi'?"}   fails with this exit code and this error
//   Row("hearth check", 1, "").printing("*")           fails, and has output all the same
//
// The output is all of standard output, "*" for anything; the error is a part of standard error,
// and an empty one means that nothing is there. f.json is kSmall; ./data is the sample gateway.
#ifndef HEARTH_TESTS_TOOLS_COMMAND_FIXTURE_H
#define HEARTH_TESTS_TOOLS_COMMAND_FIXTURE_H

#include <map>
#include <regex>

#include "tests/support/scratch.h"

struct Row {
  Row(std::string itsLine, std::string itsOut = "", std::string itsErr = "")
      : line(std::move(itsLine)), out(std::move(itsOut)), err(std::move(itsErr)) {}
  Row(std::string itsLine, int itsExit, std::string itsErr)
      : line(std::move(itsLine)), exit(itsExit), err(std::move(itsErr)) {}

  Row printing(const std::string& text) const {
    Row row = *this;
    row.out = text;
    return row;
  }

  std::string line;
  int exit = 0;
  std::string out, err;
};

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    std::filesystem::copy(HEARTH_SAMPLE, dir_ / "data", std::filesystem::copy_options::recursive);
    dir_.file("f.json", kSmall);
  }

  // The contents of all files but those of the test itself.
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

  // Runs the line. A line that fails must have changed no file.
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
    EXPECT_EQ(row.exit, WEXITSTATUS(status)) << err;
    if (row.out != "*") {
      EXPECT_EQ(row.out, dir_.contentsOf("out"));
    }
    EXPECT_TRUE(err.find(row.err) != std::string::npos && err.empty() == row.err.empty())
        << "expected: " << row.err << "\nin: " << err;
    if (row.exit != 0) {
      EXPECT_TRUE(before == files()) << "a failure changed a file";
      // The error is one line, behind any notes, and harmless on a terminal.
      const std::regex lines("((hearth: note: [^\\n]*\\n)*hearth: [^\\n]+\\n)?");
      EXPECT_TRUE(std::regex_match(err, lines)) << err;
      EXPECT_EQ(std::string::npos, err.find_first_of("\x1b\r\b\x7f")) << err;
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
