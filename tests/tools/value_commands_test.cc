// Commands that read and change values in one document or area.
#include "tests/tools/command_fixture.h"

namespace {

TEST_F(CommandTest, GetsAValueOrSaysWhyNot) {
  runAll({
      {"hearth get wifi 'radios.[0].channel'", "6\n"},
      {"hearth get wifi 'radios.[0].networks.[0].ssid'", "Garden Path\n"},
      {"hearth get --json f.json a.s", "\"7\"\n"},
      {"hearth get f.json a.n; hearth get f.json 'a.b.[1]'", "null\nnull\n"},
      {"hearth get f.json .", "0\n"},
      {"hearth get f.json 'a.b'", "[\n  10,\n  null,\n  {\n    \"c\": \"x\"\n  }\n]\n"},
      {"hearth get f.json a.n.x", 1, "'f.json': 'a.n' is null: there is nothing in it"},
      {"hearth get f.json i.x", 1, "'i' is an integer: there is nothing in it"},
      {"hearth get f.json a.bb", 1, "'a' has no member 'bb'; did you mean 'b'?"},
      {"hearth get f.json a.zzzz", 1, "; its members are 'b', 'n', 's'"},
      {"hearth get f.json a.b.c", 1, "so 'c' leads nowhere; give an index, [0] to [2]"},
      {"hearth get f.json 'a.[0]'", 1, "'a' is an object, so [0] leads nowhere"},
      {"hearth get f.json 'a.b.[3]'", 1, "has only 3 elements; [3] is past its end"},
      {"hearth get f.json d.e", 1, "has a member named 'd.e', which no path can address"},
      {"hearth get f.json 'a.b.[x]'", 2, "'[x]' is no index"},
      {"hearth get f.json 'a.b.[-1]'", 2, "'[-1]' is no index"},
      {"hearth get f.json '[f'", 2, "'[f' is no index"},
      {"hearth get f.json 'a.b.[99999999999999999999]'", 2, "is no index"},
      {"hearth get f.json \"$(printf '\\377')\"", 2, "path '\\xff' is not UTF-8"},
      {"hearth get f.json \"$(printf '\\033[2Jq')\"", 1, "no member '\\x1b[2Jq'"},
      {"hearth get f.json \"$(head -c 100000 /dev/zero | tr '\\0' .)\"", 1,
       "'.' is an integer: there is nothing in it"},
  });
}

TEST_F(CommandTest, RefusesWhatIsNoDocument) {
  dir_.file("cut.json", "{\"a\":\n  1,");
  dir_.file("bad.json", "{\n  \"a\" 1}");
  dir_.file("binary.json", std::string("\0\x80\xff\x1b[2J", 7));
  dir_.file("deep.json", std::string(40, '[') + std::string(40, ']'));
  dir_.file("null.json", "null");
  runAll({
      {"hearth get wfii a", 2, "no area and no file 'wfii'; did you mean 'wifi'?"},
      {"hearth get ./none.json a", 3, "'./none.json': No such file or directory"},
      {"hearth --data nowhere get wifi a", 3, "'nowhere/wifi/wifi.ldb': No such file"},
      {"HEARTH_DATA=else hearth get wifi a", 3, "'else/wifi/wifi.ldb'"},
      {"hearth --data $(head -c 300 /dev/zero | tr '\\0' x) get wifi a", 2, "too long"},
      {"hearth get cut.json a", 3, "not JSON: unexpected end of data (line 2, column 5)"},
      {"hearth set bad.json a 1", 3, "expected (line 2, column 7)"},
      {"hearth show binary.json", 3, "not JSON"},
      {"hearth show deep.json", 3, "nested deeper than 32 levels"},
      {"hearth show null.json", 3, "holds null, which is no document"},
      {"hearth show ./data", 3, "is a directory"},
      {"mkfifo p && hearth show ./p", 3, "is no regular file"},
      {"hearth show /dev/zero", 3, "is no regular file"},
      {"hearth import misc - </dev/zero", 3, "standard input: larger than 256 MiB"},
  });
}

TEST_F(CommandTest, StoresAValueOfTheRightType) {
  const auto stored = [](const std::string& words, const std::string& json) {
    return Row{"hearth set f.json " + words + " && hearth get --json f.json new", json + "\n"};
  };
  runAll({
      stored("new 11", "11"),
      stored("new -- -12", "-12"),
      stored("new -13", "-13"),
      stored("new --string -14", "\"-14\""),
      stored("new 15", "\"15\""),  // a text stays a text
      stored("new --json null", "null"),
      stored("new 0.10", "0.10"),
      stored("new --json null && hearth set f.json new 007", "\"007\""),
      stored("new --json '[1,{\"k\":{}}]'", "[\n  1,\n  {\n    \"k\": {}\n  }\n]"),
      stored("new --bool true", "true"),
      stored("new false", "false"),
      stored("new --double 5", "5.0"),
      stored("new --string '' --", "\"\""),
      stored("new 99999999999999999999", "\"99999999999999999999\""),
      {"hearth set f.json --json big 99999999999 && hearth get f.json big", "99999999999\n"},
      {"echo '{\"x\":1}' | hearth set f.json a.b --from - && hearth get f.json a.b.x", "1\n"},
      {"hearth set f.json i x", 2, "value 'x' would replace an integer"},
      {"hearth set f.json t 1", 2, "would replace a boolean"},
      {"hearth set f.json a 1", 2, "would replace an object of 3 members; say --json"},
      {"hearth set f.json new 1.5 --int", 2, "value '1.5' is not an integer"},
      {"hearth set f.json new 1 --int --bool", 2, "--int and --bool do not go together"},
      {"hearth set f.json new '{\"a\":1,}' --json", 2, "is not JSON"},
      {"hearth set f.json new \"$(printf '\\377')\"", 2, "is not UTF-8"},
      {"hearth set f.json new", 2, "VALUE is missing"},
      {"hearth set f.json new -x", 2, "-x"},
      {"hearth set f.json '' 1", 2, "set needs a path"},
      {"hearth set f.json new --from none.json", 3, "'none.json': No such file"},
  });
}

TEST_F(CommandTest, MakesWhatIsMissingAndSaysWhereItWent) {
  dir_.file("array.json", "[{\"k\":1}]");
  runAll({
      {"hearth set f.json x.[0].y.z 1 && hearth get f.json x.[0].y.z", "1\n"},
      {"hearth set f.json 'a.b.[3]' 4 && hearth get f.json 'a.b.[3]'", "4\n"},
      {"hearth set f.json 'a.b.[77].q' 5", "",
       "note: 'a.b.[77].q' is past the end of its array: stored as 'a.b.[4].q'"},
      {"hearth get f.json 'a.b.[4].q'", "5\n"},
      {"hearth set f.json 'w.[2].[3]' 1", "", "stored as 'w.[0].[0]'"},
      {"hearth add array.json '' --json '{\"k\":2}' && hearth get array.json '[1].k'", "[1]\n2\n"},
      {"hearth add f.json a.b x", "a.b.[5]\n"},
      {"hearth add f.json a.c x", 1, "'a' has no member 'c'"},
      {"hearth add f.json a x", 1, "'a' is an object of 3 members; add appends to arrays"},
      {"hearth set array.json k 1", 1, "the document is an array of 2 elements, so 'k' leads"},
      {"hearth set f.json i.x 1", 1, "'i' is an integer: there is nothing in it"},
      {"hearth set f.json a.n.x 1", 1, "'a.n' is null: there is nothing in it"},
      {"hearth set f.json a.b.c 1", 1, "so 'c' leads nowhere"},
      {"hearth set f.json 'a.[0]' 1", 1, "'a' is an object"},
      {"hearth set f.json $(head -c 65 /dev/zero | tr '\\0' .) 1", 2, "has 65 steps"},
      {"hearth set f.json $(printf %031d 0 | sed 's/0/y./g')y --json '[[[]]]'", 3,
       "cannot be saved: nested deeper than 32 levels"},
  });
}

TEST_F(CommandTest, RemovesAMemberOrElement) {
  runAll({
      {"hearth del f.json 'a.b.[0]' && hearth del f.json 'a.b.[0]' && hearth get f.json a.b.[0].c",
       "x\n"},
      {"hearth del f.json a.n && hearth del f.json . && hearth del f.json ctl"},
      {"hearth show --compact f.json",
       "{\"a\":{\"b\":[{\"c\":\"x\"}],\"s\":\"7\"},\"d.e\":1,\"[f\":2,\"i\":7,\"t\":true,\"g\":1.5}"
       "\n"},
      {"hearth del f.json a.n", 1, "'a' has no member 'n'"},
      {"hearth del f.json d.e", 1, "which no path can address"},
      {"hearth del f.json ''", 2, "del needs a path"},
  });
}

TEST_F(CommandTest, SavesAnAreaAsTheLibraryDoes) {
  run({"hearth import wifi data/wifi/wifi.ldb"});  // empty arrays as this json-c prints them
  const std::string before = dir_.contentsOf("data/wifi/wifi.ldb");
  run({"hearth set wifi 'radios.[0].channel' 11"});
  std::string after = before;
  after.replace(after.find("\"channel\":6,"), 12, "\"channel\":11,");
  EXPECT_EQ(after, dir_.contentsOf("data/wifi/wifi.ldb"));
#if HEARTH_TOOLS_SHOW_VIOLATIONS
  runAll({
      {"hearth set wifi 'radios.[0].channel' 300", 5,
       "the result does not conform: at 'radios.[0].channel': must be"},
      {"hearth del wifi country", 5, "at the document: must have the member \"country\""},
  });
#endif
  runAll({
      {"hearth set wifi 'radios.[0].channel' 300 --no-schema"},
      Row("hearth check", 1, "").printing("*"),
  });
}

TEST_F(CommandTest, ChangesNothingThatItWasNotAskedTo) {
  using std::string_literals::operator""s;
  const std::pair<std::string, std::string> refused[] = {
      {"{\"a\":1} // behind it\n", "line 1, column 9: expected the end of the text"},
      {"{\"a\":1}\0"s, "the end of the text, but there is a NUL"},
      {"{\"a\":\"\xff\"}", "expected a character in UTF-8"},
      {"{\"a\":1,\n\"b\":99999999999999999999}",
       "line 2, column 5: expected an integer of at most"},
      {"{\"a\":1,\"a\":2}", "one whose name stands here already"},
      {"{\"b\":\"-0\\\"-0\",\n\"a\":-0}", "line 2, column 5: the integer -0 would become 0"},
      {"{\"a\":1e400}", "expected a number that a double holds"},
      {"{\"a\":NaN}", "expected a value"},
  };
  for (const auto& [text, why] : refused) {
    dir_.file("odd.json", text);
    run({"hearth set odd.json new 2", 1, "what it was not asked to: "});
    run({"hearth set odd.json new 2", 1, why});
  }
  run({"hearth set --force odd.json b 2 && hearth get odd.json b", "2\n"});
  dir_.file("kept.json", R"({"a":-0.0,"b":1.50,"c":18446744073709551615,"d":1E5,"e":"-0"})");
  run({"hearth set kept.json f 1 && tr -d ' \\n' <kept.json",
       R"({"a":-0.0,"b":1.50,"c":18446744073709551615,"d":1E5,"e":"-0","f":1})"});
  for (const std::string word : {"NaN", "Infinity", "-Infinity", "1e400", "nan"}) {
    run({"hearth set f.json --json -- new " + word, 2, "is not JSON"});
    run({"hearth set f.json -- g " + word, 2, "would replace a double"});
  }
}

TEST_F(CommandTest, FindsPaths) {
  dir_.file("find.json",
            R"([{"k":5,"d.k":5},{"k":5.0},{"k":"5"},{"q":[{"k":5}]},{"k":4294967301}])");
  runAll({
      {"hearth find find.json k 5", "[0].k\n[3].q.[0].k\n"},
      {"hearth find find.json k 5.0", "[1].k\n"},
      {"hearth find find.json k 5 --string", "[2].k\n"},
      {"hearth find find.json k 4294967301", "[4].k\n"},
      {"hearth find find.json k 2147483647", 1, ""},
      {"hearth find find.json d.k 5", "/0/d.k\n", "a JSON pointer stands in its place"},
      {"hearth find --json find.json k 5.0",
       "[\n  {\n    \"path\": \"[1].k\",\n    \"pointer\": \"/1/k\"\n  }\n]\n"},
      {"hearth find f.json n null", 2, "null cannot be searched for"},
  });
}

TEST_F(CommandTest, DoesNoHarmToTerminals) {
  runAll({
      {"hearth get f.json ctl", "\x1b[2J\x7f\xc2\x9b\xe2\x80\xae\n\n"},
      {"hearth get --json f.json ctl", "\"\\u001b[2J\\u007f\\u009b\\u202e\\n\"\n"},
      {"NO_COLOR=1 script -qec '" HEARTH_COMMAND " get f.json ctl' /dev/null </dev/null",
       "\\x1b[2J\\x7f\\x9b\\u202e\\n\r\n"},
      {"TERM=xterm script -qec '" HEARTH_COMMAND " get f.json i' /dev/null </dev/null",
       "\x1b[36m7\x1b[0m\r\n"},
      {"hearth get --verbose f.json i 2>log; grep -c getJObj log >/dev/null; rm log; ls -A",
       "7\ndata\nerr\nf.json\nout\n"},
  });
}

TEST_F(CommandTest, ReportsAnOutputThatFails) {
  dir_.file("long.json", "[\"" + std::string(1U << 20U, 'x') + "\"]");
  runAll({
      {"hearth show f.json >/dev/full", 3, "standard output: No space left on device"},
      {"hearth show f.json >&-", 3, "standard output: Bad file descriptor"},
      {"{ hearth show long.json; echo $? >code; } | head -c 1; cat code; rm code", "[3\n"},
      {"hearth set f.json i 8 <&- >&- 2>&-; hearth get f.json i", "8\n"},
      {"hearth validate wifi 0 - <&-", 3, "standard input: Bad file descriptor"},
  });
}

}  // namespace
