// Every row is a line for the shell, run in a copy of the sample gateway, and what must come of it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "tests/support/temp_dir.h"

namespace {

struct Row {
  std::string line;
  int exit = 0;
  std::string out;  // all of standard output, "*" for anything
  std::string err;  // a part of standard error; empty: there is none
};

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    std::filesystem::copy(HEARTH_SAMPLE, dir_ / "data", std::filesystem::copy_options::recursive);
    dir_.file("f.json", kSmall);
  }

  // One line of a failure's message, all of which can be shown anywhere.
  void expectOneHarmlessLine(const std::string& err) const {
    EXPECT_TRUE(std::regex_match(err, std::regex("(hearth: note: [^\\n]*\\n)*hearth: [^\\n]+\\n")))
        << err;
    EXPECT_EQ(err.find_first_of("\x1b\r\b\x7f"), std::string::npos) << err;
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
    if (row.err.empty()) {
      EXPECT_EQ(err, "");
    } else {
      EXPECT_NE(err.find(row.err), std::string::npos) << err;
    }
    if (row.exit != 0) {
      EXPECT_TRUE(files() == before) << "a failure changed a file";
      if (!err.empty()) {
        expectOneHarmlessLine(err);
      }
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

TEST_F(CommandTest, GetsAValueOrSaysWhyNot) {
  runAll({
      {"hearth get wifi 'radios.[0].channel'", 0, "6\n", ""},
      {"hearth get wifi 'radios.[0].networks.[0].ssid'", 0, "Garden Path\n", ""},
      {"hearth get --json f.json a.s", 0, "\"7\"\n", ""},
      {"hearth get f.json a.n; hearth get f.json 'a.b.[1]'", 0, "null\nnull\n", ""},
      {"hearth get f.json .", 0, "0\n", ""},
      {"hearth get f.json 'a.b'", 0, "[\n  10,\n  null,\n  {\n    \"c\": \"x\"\n  }\n]\n", ""},
      {"hearth get f.json a.n.x", 1, "", "'f.json': 'a.n' is null: there is nothing in it"},
      {"hearth get f.json i.x", 1, "", "'i' is an integer: there is nothing in it"},
      {"hearth get f.json a.bb", 1, "", "'a' has no member 'bb'; did you mean 'b'?"},
      {"hearth get f.json a.zzzz", 1, "", "; its members are 'b', 'n', 's'"},
      {"hearth get f.json a.b.c", 1, "", "so 'c' leads nowhere; give an index, [0] to [2]"},
      {"hearth get f.json 'a.[0]'", 1, "", "'a' is an object, so [0] leads nowhere"},
      {"hearth get f.json 'a.b.[3]'", 1, "", "has only 3 elements; [3] is past its end"},
      {"hearth get f.json d.e", 1, "", "has a member named 'd.e', which no path can address"},
      {"hearth get f.json 'a.b.[x]'", 2, "", "'[x]' is no index"},
      {"hearth get f.json 'a.b.[-1]'", 2, "", "'[-1]' is no index"},
      {"hearth get f.json '[f'", 2, "", "'[f' is no index"},
      {"hearth get f.json 'a.b.[99999999999999999999]'", 2, "", "is no index"},
      {"hearth get f.json \"$(printf '\\377')\"", 2, "", "path '\\xff' is not UTF-8"},
      {"hearth get f.json \"$(printf '\\033[2Jq')\"", 1, "", "no member '\\x1b[2Jq'"},
      {"hearth get f.json \"$(head -c 100000 /dev/zero | tr '\\0' .)\"", 1, "",
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
      {"hearth get wfii a", 2, "", "no area and no file 'wfii'; did you mean 'wifi'?"},
      {"hearth get ./none.json a", 3, "", "'./none.json': No such file or directory"},
      {"hearth --data nowhere get wifi a", 3, "", "'nowhere/wifi/wifi.ldb': No such file"},
      {"HEARTH_DATA=else hearth get wifi a", 3, "", "'else/wifi/wifi.ldb'"},
      {"hearth --data $(head -c 300 /dev/zero | tr '\\0' x) get wifi a", 2, "", "too long"},
      {"hearth get cut.json a", 3, "", "not JSON: unexpected end of data (line 2, column 5)"},
      {"hearth set bad.json a 1", 3, "", "expected (line 2, column 7)"},
      {"hearth show binary.json", 3, "", "not JSON"},
      {"hearth show deep.json", 3, "", "nested deeper than 32 levels"},
      {"hearth show null.json", 3, "", "holds null, which is no document"},
      {"hearth show ./data", 3, "", "is a directory"},
      {"mkfifo p && hearth show ./p", 3, "", "is no regular file"},
      {"hearth show /dev/zero", 3, "", "is no regular file"},
      {"hearth import misc - </dev/zero", 3, "", "standard input: larger than 256 MiB"},
  });
}

TEST_F(CommandTest, StoresAValueOfTheRightType) {
  const auto stored = [](const std::string& words, const std::string& json) {
    return Row{"hearth set f.json " + words + " && hearth get --json f.json new", 0, json + "\n",
               ""};
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
      {"hearth set f.json --json big 99999999999 && hearth get f.json big", 0, "99999999999\n", ""},
      {"echo '{\"x\":1}' | hearth set f.json a.b --from - && hearth get f.json a.b.x", 0, "1\n",
       ""},
      {"hearth set f.json i x", 2, "", "value 'x' would replace an integer"},
      {"hearth set f.json t 1", 2, "", "would replace a boolean"},
      {"hearth set f.json a 1", 2, "", "would replace an object of 3 members; say --json"},
      {"hearth set f.json new 1.5 --int", 2, "", "value '1.5' is not an integer"},
      {"hearth set f.json new 1 --int --bool", 2, "", "excludes"},
      {"hearth set f.json new '{\"a\":1,}' --json", 2, "", "is not JSON"},
      {"hearth set f.json new \"$(printf '\\377')\"", 2, "", "is not UTF-8"},
      {"hearth set f.json new", 2, "", "VALUE is missing"},
      {"hearth set f.json new -x", 2, "", "-x"},
      {"hearth set f.json '' 1", 2, "", "set needs a path"},
      {"hearth set f.json new --from none.json", 3, "", "'none.json': No such file"},
  });
}

TEST_F(CommandTest, MakesWhatIsMissingAndSaysWhereItWent) {
  dir_.file("array.json", "[{\"k\":1}]");
  runAll({
      {"hearth set f.json x.[0].y.z 1 && hearth get f.json x.[0].y.z", 0, "1\n", ""},
      {"hearth set f.json 'a.b.[3]' 4 && hearth get f.json 'a.b.[3]'", 0, "4\n", ""},
      {"hearth set f.json 'a.b.[77].q' 5", 0, "",
       "note: 'a.b.[77].q' is past the end of its array: stored as 'a.b.[4].q'"},
      {"hearth get f.json 'a.b.[4].q'", 0, "5\n", ""},
      {"hearth set f.json 'w.[2].[3]' 1", 0, "", "stored as 'w.[0].[0]'"},
      {"hearth add array.json '' --json '{\"k\":2}' && hearth get array.json '[1].k'", 0,
       "[1]\n2\n", ""},
      {"hearth add f.json a.b x", 0, "a.b.[5]\n", ""},
      {"hearth add f.json a.c x", 1, "", "'a' has no member 'c'"},
      {"hearth add f.json a x", 1, "", "'a' is an object of 3 members; add appends to arrays"},
      {"hearth set array.json k 1", 1, "", "the document is an array of 2 elements, so 'k' leads"},
      {"hearth set f.json i.x 1", 1, "", "'i' is an integer: there is nothing in it"},
      {"hearth set f.json a.n.x 1", 1, "", "'a.n' is null: there is nothing in it"},
      {"hearth set f.json a.b.c 1", 1, "", "so 'c' leads nowhere"},
      {"hearth set f.json 'a.[0]' 1", 1, "", "'a' is an object"},
      {"hearth set f.json $(head -c 65 /dev/zero | tr '\\0' .) 1", 2, "", "has 65 steps"},
      {"hearth set f.json $(printf %031d 0 | sed 's/0/y./g')y --json '[[[]]]'", 3, "",
       "cannot be saved: nested deeper than 32 levels"},
  });
}

TEST_F(CommandTest, RemovesAMemberOrElement) {
  runAll({
      {"hearth del f.json 'a.b.[0]' && hearth del f.json 'a.b.[0]' && hearth get f.json a.b.[0].c",
       0, "x\n", ""},
      {"hearth del f.json a.n && hearth del f.json . && hearth del f.json ctl", 0, "", ""},
      {"hearth show --compact f.json", 0,
       "{\"a\":{\"b\":[{\"c\":\"x\"}],\"s\":\"7\"},\"d.e\":1,\"[f\":2,\"i\":7,\"t\":true,\"g\":1.5}"
       "\n",
       ""},
      {"hearth del f.json a.n", 1, "", "'a' has no member 'n'"},
      {"hearth del f.json d.e", 1, "", "which no path can address"},
      {"hearth del f.json ''", 2, "", "del needs a path"},
  });
}

TEST_F(CommandTest, SavesAnAreaAsTheLibraryDoes) {
  const std::string before = dir_.contentsOf("data/wifi/wifi.ldb");
  run({"hearth set wifi 'radios.[0].channel' 11", 0, "", ""});
  std::string after = before;
  after.replace(after.find("\"channel\":6,"), 12, "\"channel\":11,");
  EXPECT_EQ(dir_.contentsOf("data/wifi/wifi.ldb"), after);
#if HEARTH_TOOLS_SHOW_VIOLATIONS
  runAll({
      {"hearth set wifi 'radios.[0].channel' 300", 1, "",
       "the result does not conform: at 'radios.[0].channel': must be"},
      {"hearth del wifi country", 1, "", "at the document: must have the member \"country\""},
  });
#endif
  runAll({
      {"hearth set wifi 'radios.[0].channel' 300 --no-schema", 0, "", ""},
      {"hearth check", 1, "*", ""},
  });
}

TEST_F(CommandTest, LosesNothingThatASaveWouldDrop) {
  dir_.file("loose.json", "{\"a\":1} // behind it\n");
  dir_.file("utf8.json", "{\"a\":\"\xff\"}");
  runAll({
      {"hearth get loose.json a", 0, "1\n", ""},
      {"hearth set loose.json a 2", 1, "", "holds more than plain JSON"},
      {"hearth set utf8.json b 2", 1, "", "holds more than plain JSON"},
      {"hearth set --force loose.json a 2 && hearth get loose.json a", 0, "2\n", ""},
  });
}

TEST_F(CommandTest, FindsPaths) {
  dir_.file("find.json",
            R"([{"k":5,"d.k":5},{"k":5.0},{"k":"5"},{"q":[{"k":5}]},{"k":4294967301}])");
  runAll({
      {"hearth find find.json k 5", 0, "[0].k\n[3].q.[0].k\n", ""},
      {"hearth find find.json k 5.0", 0, "[1].k\n", ""},
      {"hearth find find.json k 5 --string", 0, "[2].k\n", ""},
      {"hearth find find.json k 4294967301", 0, "[4].k\n", ""},
      {"hearth find find.json k 2147483647", 1, "", ""},
      {"hearth find find.json d.k 5", 0, "/0/d.k\n", "a JSON pointer stands in its place"},
      {"hearth find --json find.json k 5.0", 0,
       "[\n  {\n    \"path\": \"[1].k\",\n    \"pointer\": \"/1/k\"\n  }\n]\n", ""},
      {"hearth find f.json n null", 2, "", "null cannot be searched for"},
  });
}

TEST_F(CommandTest, DoesNoHarmToTerminals) {
  runAll({
      {"hearth get f.json ctl", 0, "\x1b[2J\x7f\xc2\x9b\xe2\x80\xae\n\n", ""},
      {"hearth get --json f.json ctl", 0, "\"\\u001b[2J\\u007f\\u009b\\u202e\\n\"\n", ""},
      {"NO_COLOR=1 script -qec '" HEARTH_COMMAND " get f.json ctl' /dev/null </dev/null", 0,
       "\\x1b[2J\\x7f\\x9b\\u202e\\n\r\n", ""},
      {"TERM=xterm script -qec '" HEARTH_COMMAND " get f.json i' /dev/null </dev/null", 0,
       "\x1b[36m7\x1b[0m\r\n", ""},
      {"hearth get --verbose f.json i 2>log; grep -c getJObj log >/dev/null; rm log; ls -A", 0,
       "7\ndata\nerr\nf.json\nout\n", ""},
  });
}

TEST_F(CommandTest, ReportsAnOutputThatFails) {
  dir_.file("long.json", "[\"" + std::string(1U << 20U, 'x') + "\"]");
  runAll({
      {"hearth show f.json >/dev/full", 3, "", "standard output: No space left on device"},
      {"hearth show f.json >&-", 3, "", "standard output: Bad file descriptor"},
      {"{ hearth show long.json; echo $? >code; } | head -c 1; cat code; rm code", 0, "[3\n", ""},
      {"hearth set f.json i 8 <&- >&- 2>&-; hearth get f.json i", 0, "8\n", ""},
      {"hearth validate wifi 0 - <&-", 3, "", "standard input: Bad file descriptor"},
  });
}

TEST_F(CommandTest, ListsAreasAndLabels) {
  dir_.file("data/qos/qos.ldb", "{");
  std::filesystem::remove(dir_ / "data/misc/misc.ldb");
  runAll({
      {"hearth areas | sed -n 's/  */ /g; 2p; 8,9p'", 0,
       "gateway ./data/gateway/gateway.ldb 7328 ok 222\n"
       "qos ./data/qos/qos.ldb - './data/qos/qos.ldb': not JSON: unexpected end of data (line 1, "
       "column 2) -\nmisc ./data/misc/misc.ldb - missing -\n",
       ""},
      {"hearth areas --json >a.json && hearth find a.json area misc; rm a.json", 0, "[7].area\n",
       ""},
      {"hearth labels wifi | sed -n 's/  */ /g; 2p; $p'", 0,
       "wifi 0 WIFI_INTERFACE_GET_REQ - -\nwifi 79 WIFI_WPS_GET_CONNECTION_RESP - -\n", ""},
      {"hearth labels | wc -l; hearth labels misc | wc -l", 0, "605\n1\n", ""},
      {"hearth labels qso", 2, "", "no area 'qso'; did you mean 'qos'?"},
  });
}

TEST_F(CommandTest, Validates) {
  const std::string request = "data/wifi/WIFI_RADIO_CHANGE_REQ.ldb";
  const std::string wrong = "sed 's/\"channel\":11/\"channel\":300/' " + request;
  dir_.file("rules.json", R"({"type":"object","properties":{"i":{"maximum":3}}})");
  runAll({
    {"hearth validate wifi WIFI_RADIO_CHANGE_REQ " + request, 0, "", ""},
        {wrong + " | hearth validate wifi WIFI_RADIO_CHANGE_REQ -", 1, "",
         "standard input and 'WIFI_RADIO_CHANGE_REQ': does not conform"},
        {"hearth validate --schema rules.json f.json", 1, "", "does not conform"},
        {"hearth validate wifi 0 f.json", 0, "", "WIFI_INTERFACE_GET_REQ has no schema"},
        {"hearth validate wifi WIFI_RADIO_CHANG_REQ f.json", 2, "",
         "did you mean 'WIFI_RADIO_CHANGE_REQ'?"},
        {"hearth validate wifi 80 f.json", 2, "", "area wifi has no message '80'"},
        {"hearth validate misc 0 f.json", 2, "", "area misc has no message '0'"},
        {"hearth validate wifi WIFI_RADIO_CHANGE_REQ", 2, "", "validate takes AREA MESSAGE FILE"},
        {"hearth validate --schema none.json f.json", 3, "", "'none.json': No such file"},
        {"echo '{' >s.json; hearth validate --schema s.json f.json; e=$?; rm s.json; exit $e", 3,
         "", "'s.json': not JSON"},
#if HEARTH_TOOLS_SHOW_VIOLATIONS
        {"hearth validate --json --schema rules.json f.json", 1,
         "{\n  \"conforms\": false,\n  \"pointer\": \"/i\",\n  \"rule\": "
         "\"/properties/i/maximum\",\n"
         "  \"keyword\": \"maximum\",\n  \"message\": \"must be at most 3, but is 7\"\n}\n",
         ""},
#endif
  });
}

TEST_F(CommandTest, ChecksADataLocation) {
  run({"hearth check", 0, "43 files below './data', 0 problems\n", ""});
#if HEARTH_TOOLS_SHOW_VIOLATIONS
  dir_.file("data/qos/QOS_RULES_CREATE_REQ.ldb", "{}");
  dir_.file("data/qos/QOS_RULES_CREATE_RESP_SCHEMA.ldb", "{\"type\":3}");
  dir_.file("data/misc/misc.ldb", "{\"a\":1}}");
  dir_.file("data/wifi/WIFI_RADIO_GET_REG.ldb", "{}");
  std::filesystem::remove_all(dir_ / "data/security");
  runAll({
      {"hearth check | tail -1", 0, "40 files below './data', 5 problems\n",
       "belongs to no message of the area; did you mean 'WIFI_RADIO_GET_REQ'?"},
      {"hearth check --json 2>/dev/null >c.json; hearth find c.json file ./data/misc/misc.ldb; "
       "rm c.json",
       0, "[39].file\n", ""},
  });
#endif
  runAll({
      {"hearth --data nowhere check", 1, "*", ""},
  });
}

TEST_F(CommandTest, MovesWholeDatabases) {
  runAll({
    {"hearth export wifi w.json && cmp w.json data/wifi/wifi.ldb; rm w.json", 0, "", ""},
        {"hearth export wifi | hearth import wifi - && hearth check | tail -1", 0,
         "43 files below './data', 0 problems\n", ""},
        {"hearth import wifi f.json", 1, "", "'f.json' does not conform"},
        {"hearth import wifi data/wifi/none.json", 3, "", "No such file"},
        {"echo '{\"a\":' | hearth import misc -", 3, "", "standard input: not JSON"},
        {"echo '5' | hearth import misc -", 1, "", "standard input is an integer, which is no"},
        {"echo '{} {}' | hearth import misc -", 3, "", "is not plain JSON"},
        {"echo '{' >data/misc/misc.ldb; hearth import misc f.json && hearth get misc i", 0, "7\n",
         "area misc has no schema of its database"},
        {"hearth import --no-schema wifi f.json", 0, "", ""},
#if HEARTH_TOOLS_SHOW_VIOLATIONS
        {"hearth export wifi w.json", 1, "", "must have the member \"revision\""},
#endif
  });
}

TEST_F(CommandTest, ExplainsAConfiguration) {
  dir_.file(
      "c.conf",
      R"({"log_mask":255.0,"log_fil":"x","log_file":"./l","url_rewrite_path":"/p/",)"
      R"("enable_bruteforce_prevent":false,"system":{"cleanup_time":5,"timer":{"sesion":3}}})");
  const std::string squeeze = " | sed 's/  */ /g' | grep ";
  runAll({
      {"hearth config data/gateway.conf | wc -l; ls -A | grep login", 1, "37\n", ""},
      {"hearth config c.conf" + squeeze + "-E 'mask|log_f|rewrite|brute|system|https|PORT '", 0,
       "url_rewrite_path /p/url_rewrite.txt file\n"
       "log_file ./l file\n"
       "enable_https 0 default\n"
       "log_mask 268435455 default: WRONG, must be an integer or a boolean\n"
       "enable_bruteforce_prevent 0 file\n"
       "system.cleanup_time 300 file, minutes times 60\n"
       "system.domain_name urn:gateway:auth-secret:dflt1 default\n"
       "system.timer.session 86400 default, minutes times 60\n"
       "WEBSERVER_PORT 8888 fixed: has no key\n"
       "log_fil \"x\" UNKNOWN key, ignored; did you mean 'log_file'?\n"
       "system.timer.sesion 3 UNKNOWN key, ignored; did you mean 'system.timer.session'?\n",
       ""},
      {"hearth config c.conf >/dev/null", 1, "", ""},
      {"echo '[]' >r.conf; hearth config r.conf; e=$?; rm r.conf; exit $e", 1, "",
       "is an array of 0 elements, not an object: the backend would end at once"},
      {"hearth config none.conf", 3, "", "No such file"},
  });
}

TEST_F(CommandTest, ListsLogins) {
  dir_.file("logins.json", R"([{"ipAddress":"10.0.0.1","attempts":4,"lastAttempt":"1700000000"},7,)"
                           R"({"ipAddress":"10.0.0.2","attempts":9,"lastAttempt":"99999999999"},)"
                           R"({"ipAddress":"10.0.0.2","attempts":50,"lastAttempt":"99999999999"},)"
                           R"({"ipAddress":"\u001b[2J","attempts":6}])");
  runAll({
      {"hearth logins", 3, "", "'.loginrecord.cfg': No such file"},
      {"hearth logins --file logins.json | sed 's/  */ /g'", 0,
       "address attempts wait last\n10.0.0.1 4 0 2023-11-14T22:13:20Z\n"
       "10.0.0.2 9 5 5138-11-16T09:46:39Z\n10.0.0.2 50 0 5138-11-16T09:46:39Z\n\\x1b[2J 6 2 -\n",
       ""},
      {"hearth logins --file f.json", 1, "", "not an array"},
  });
}

TEST_F(CommandTest, ExplainsItself) {
  runAll({
      {"hearth", 2, "", "which command?"},
      {"hearth gte wifi a", 2, "", "no command 'gte'; did you mean 'get'?"},
      {"hearth get wifi", 2, "", "PATH is required (try 'hearth get --help')"},
      {"hearth get wifi a --frob", 2, "", "--frob"},
      {"hearth --version", 0, "*", ""},
      {"for c in '' $(hearth complete -- ''); do hearth $c --help | grep -c Examples: ; done | "
       "sort -u",
       0, "1\n", ""},
      {"hearth set f.json show check && hearth get f.json show", 0, "check\n", ""},
  });
}

TEST_F(CommandTest, CompletesCommandLines) {
  // What bash offers for a line: the completion function, called as bash calls it.
  const auto offered = [](const std::string& words, const std::string& expected) {
    return Row{"bash -c 'hearth() { " HEARTH_COMMAND " \"$@\"; }; . " HEARTH_COMPLETION
               "; COMP_WORDS=(hearth " +
                   words +
                   "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _hearth; "
                   "echo \"${COMPREPLY[@]}\"'",
               0, expected + "\n", ""};
  };
  runAll({
      offered("s", "set show"),
      offered("get mi", "misc"),
      offered("get wifi radios.", "radios.[0] radios.[1]"),
      offered("get wifi \"radios.[1].channel\"",
              "radios.[1].channel radios.[1].channelAuto radios.[1].channelsAllowed"),
      offered("get f.json \"\"", "a i t g ctl ."),
      offered("validate qos QOS_RULES_CR", "QOS_RULES_CREATE_REQ QOS_RULES_CREATE_RESP"),
      offered("--data nowhere get wifi r", ""),
      offered("set --f", "--from --force"),
  });
}

}  // namespace
