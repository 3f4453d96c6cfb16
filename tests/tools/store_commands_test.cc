// Commands that work on whole stores and their former files.
#include "tests/tools/command_fixture.h"

namespace {

// Takes the schemas of two areas away, so that they take any document.
class StoreCommandTest : public CommandTest {
 protected:
  StoreCommandTest() {
    std::filesystem::remove(dir_ / "data/misc/misc_SCHEMA.ldb");
    std::filesystem::remove(dir_ / "data/qos/qos_SCHEMA.ldb");
  }
};

constexpr char kChannel[] = "'radios.[0].channel'";
const std::string kUnguarded = "area misc has no schema";

TEST_F(StoreCommandTest, ComparesStoresAndDocuments) {
  dir_.file("old.json", R"({"a":[1,2,3],"n":null,"d.k":1,"s":{"pin":"1","p":2},"t":1})");
  dir_.file("new.json", R"({"a":[1,9,2,3],"d.k":2,"s":{"pin":"2","p":2},"t":1.0,"psk":{"x":1}})");
  runAll({
      Row("hearth diff old.json new.json", 1, "")
          .printing("+ a.[1]: 9\n- n: null\n~ /d.k: 1 -> 2\n"
                    "~ s.pin: (secret) -> (secret)\n~ t: 1 -> 1.0\n+ psk: (secret)\n"),
      {"hearth diff old.json - <old.json && hearth diff wifi data/wifi/wifi.ldb"},
      {"cp -r data other && hearth diff data other && rm other/qos/qos.ldb"},
      Row("hearth --data other set misc x 1 --no-schema; hearth diff data other | cut -c1-14", "",
          "")
          .printing("- qos .: {\"rev\n+ misc x: 1\n"),
      {"hearth backup >b.json; hearth diff b.json data; hearth diff --json b.json data", "[]\n"},
      {"hearth diff data wifi", 2, "'wifi' is one document, and the other is a whole store"},
      {"mkdir none; hearth diff data none; e=$?; rmdir none; exit $e", 3, "no database of any"},
  });
}

TEST_F(StoreCommandTest, TakesChangesBack) {
  const std::string set = "hearth set wifi " + std::string(kChannel);
  runAll({
      {"hearth undo wifi", 1, "area wifi: no former file is kept"},
      {set + " 11; chmod 600 data/wifi/wifi.ldb; " + set + " 1; ls -A data/wifi | grep history",
       ".history\n"},
      {"hearth log wifi | grep -v T",
       "    ~ radios.[0].channel: 11 -> 1\n"
       "    ~ radios.[0].channel: 6 -> 11\n"},
      {"hearth undo wifi; hearth undo wifi; hearth undo wifi --change 1",
       "~ radios.[0].channel: 1 -> 11\n~ radios.[0].channel: 11 -> 1\n"
       "~ radios.[0].channel: 1 -> 6\n"},
      {"cmp data/wifi/wifi.ldb " HEARTH_SAMPLE "/wifi/wifi.ldb && stat -c %a data/wifi/wifi.ldb",
       "600\n"},
      {"hearth undo wifi --change 99", 1, "no change 99 is kept"},
      {"sed -i s/Garden/Roof/ data/wifi/wifi.ldb"},
      {"hearth undo wifi", 4, "was changed by somebody else since; --yes"},
      {"hearth log wifi | grep -c 'somebody else'; hearth undo --yes wifi | grep -q Roof && echo "
       "taken",
       "1\ntaken\n"},
      {"echo '{' >data/misc/misc.ldb; hearth import misc f.json && hearth undo misc && "
       "cat data/misc/misc.ldb",
       "{\n", kUnguarded},
  });
}

TEST_F(StoreCommandTest, KeepsABoundedNumberOfFormerFiles) {
  const std::string sets = "for i in $(seq 15); do hearth set qos n $i --no-schema; done; ";
  const std::string count = "ls data/qos/.history | wc -l";
  runAll({
      {sets + count + "; hearth log qos --json | grep -c number", "10\n10\n"},
      {"export HEARTH_HISTORY=3; " + sets + count, "3\n"},
      {"HEARTH_HISTORY=0 hearth set qos n 0 --no-schema; " + count, "0\n"},
      {"rmdir data/qos/.history; echo >data/qos/.history; hearth set qos n 1 --no-schema", "",
       "this change cannot be undone: Not a directory"},
      // What a crash leaves between the keeping and the save.
      {"rm data/qos/.history; hearth set qos n 2 --no-schema; "
       "ln data/qos/qos.ldb data/qos/.history/qos.ldb.7.1.0123456789abcdef; "
       "hearth log qos | grep -c T; hearth set qos n 3 --no-schema; " +
           count,
       "1\n2\n"},
  });
}

TEST_F(StoreCommandTest, RunsAScriptAsOneChange) {
  dir_.file("good",
            "# a comment\n\nset wifi radios.[0].channel 11\nset misc 'a b' \"it's \\\"x\\\"\"\n"
            "set misc n -5 # behind it\nget misc n\nadd misc l\\ l --json 1 --no-schema\n");
  const auto failing = [](const std::string& lines, int exit, const std::string& error) {
    return Row{"printf '%s\\n' 'set misc q 1' " + lines + " | hearth batch -", exit, error};
  };
  runAll({
    failing("\"set misc x 'y\"", 2, "line 2: the quote ' is not closed; nothing is changed"),
        failing("'set misc x \\'", 2, "line 2: nothing follows the backslash"),
        failing("'get misc none'", 1, "line 2: 'misc': the document has no member 'none'"),
        failing("'find misc q 7'", 1, "line 2: 'find' ended with exit code 1"),
        failing("'set misc x'", 2, "line 2: VALUE is missing"),
        failing("'set f.json i 8'", 2, "line 2: 'f.json': only areas are changed together"),
        failing("'set qos n 1' \"set misc $(printf %031d 0 | sed 's/0/y./g')y --json '[[[]]]'\"", 3,
                "nested deeper than 32 levels"),
        failing("'backup'", 2, "line 2: a batch takes no command 'backup'"),
        {"hearth batch good", 1, "line 7: 'misc': the document has no member 'l l'"},
        {"sed -i '$d' good; hearth batch --dry-run good",
         "-5\n~ wifi radios.[0].channel: 6 -> 11\n+ misc a b: \"it's \\\"x\\\"\"\n+ misc n: -5\n",
         kUnguarded},
        {"hearth get misc n", 1, "no member 'n'"},
        {"hearth batch good; hearth get misc 'a b'; hearth undo misc >/dev/null; "
         "hearth get wifi " +
             std::string(kChannel) + "; ls -A data | grep -c hearth; true",
         "-5\nit's \"x\"\n11\n0\n", kUnguarded},
#if HEARTH_TOOLS_SHOW_VIOLATIONS
        failing("'set wifi radios.[0].channel 300'", 5, "the result does not conform"),
        {"printf '%s\\n' 'del wifi country' 'set wifi country DE' | hearth batch -"},
#endif
  });
}

// The note of an interrupted change is a backup of the new documents, but for one word. These have
// nothing to replace, so a database that is there has been changed since.
TEST_F(StoreCommandTest, FinishesWhatWasInterrupted) {
  const std::string interrupt =
      "hearth backup | sed '2s/backup/change/' >n; mv n data/.hearth-change.json; ";
  const std::string left = "; ls -A data | grep -c hearth; true";
  runAll({
      {interrupt +
           "rm data/misc/misc.ldb; hearth check | tail -2 | grep -c interrupted; "
           "hearth set wifi 'radios.[0].channel' 11" +
           left,
       "1\n0\n", "is now finished (1 area left to do)"},
      {"hearth diff data/misc/misc.ldb " HEARTH_SAMPLE "/misc/misc.ldb"},
      {interrupt + "sed -i s/revision/x/ data/misc/misc.ldb"},
      {"hearth set wifi 'radios.[0].channel' 1", 4, "'hearth batch --drop' gives up"},
      {"hearth batch --resume --force; hearth get misc revision" + left, "64\n0\n", "finished"},
      {interrupt + "hearth batch --drop" + left, "0\n", "is given up"},
      {"hearth batch --resume", "", "no change of several areas was interrupted"},
  });
}

TEST_F(StoreCommandTest, BacksUpAndRestores) {
  const std::string all = "8 areas restored, 0 as in the backup already\n";
  dir_.file("data/misc/misc.ldb", "{\"a\": 1} // a comment\n");
  dir_.file("data/qos/qos.ldb", "{\"deep\":" + std::string(30, '[') + std::string(30, ']') + "}");
  chmod((dir_ / "data/qos/qos.ldb").c_str(), 0600);
  runAll({
      {"hearth backup >b.json; hearth --data a/b restore b.json", all, "no schema here checks"},
      {"cmp a/b/misc/misc.ldb data/misc/misc.ldb && hearth diff data a/b && "
       "stat -c %a a/b/qos/qos.ldb a/b/misc/misc.ldb",
       "600\n644\n"},
      {"hearth set wifi " + std::string(kChannel) + " 11; hearth restore b.json; hearth undo wifi",
       "1 area restored, 7 as in the backup already\n~ radios.[0].channel: 6 -> 11\n", "no schema"},
      {"cp b.json bad; sed -i s/Garden/Roof/ bad"},
      {"hearth restore bad", 1, "'bad': the checksum does not fit"},
      {"hearth restore f.json", 1, "'f.json' is no backup of hearth"},
      {"sed 's/\"version\": 1/\"version\": 9/' b.json | hearth restore -", 1, "reads version 1"},
      {"head -c 9999 b.json | hearth --data c restore -", 3, "standard input: not JSON"},
      {"hearth --data data/wifi/wifi.ldb restore b.json", 3, "is no folder"},
      {"echo '{' >data/wifi/wifi.ldb; hearth restore b.json", "*", "no schema"},
      {"hearth backup >/dev/full", 3, "No space left on device"},
      {"rm -r data/misc; hearth backup | grep -c misc.: ; true", "0\n"},
      {"echo '{' >data/wifi/wifi.ldb"},
      {"hearth backup", 3, "'./data/wifi/wifi.ldb': not JSON"},
  });
}

TEST_F(StoreCommandTest, MakesAStore) {
  runAll({
      {"hearth init n/s && hearth --data n/s check && hearth init n/s",
       "8 files made in 'n/s'\n8 files below 'n/s', 0 problems\n0 files made in 'n/s'\n"},
      {"stat -c %a n/s/wifi/wifi.ldb", "600\n"},
      {"rm -r n; hearth init --from data n >/dev/null; hearth --data n check | tail -c 11; "
       "rm n/gateway.conf 2>/dev/null; cp data/gateway.conf n; diff -r data n",
       "0 problems\n"},
      {"hearth init --from none m", 3, "'none': no such store"},
      {"hearth init f.json", 3, "'f.json': is no folder"},
  });
}

TEST_F(StoreCommandTest, ImportsAndExportsWithCare) {
  runAll({
      {"hearth import misc data/qos/qos.ldb", 1, "looks like a database of area qos, not misc"},
      {"echo y | script -qec '" HEARTH_COMMAND " import misc data/qos/qos.ldb' /dev/null "
       ">/dev/null; hearth diff data/misc/misc.ldb data/qos/qos.ldb && hearth undo misc >/dev/null "
       "&& "
       "hearth import --yes misc data/qos/qos.ldb",
       "", kUnguarded},
      {"chmod 600 data/wifi/wifi.ldb; echo >open; for f in new open; do hearth export wifi $f; "
       "stat -c %a $f; done",
       "600\n600\n"},
      {"hearth add wifi bandSteering.exceptions 02:00:5E:10:00:77 >/dev/full; echo $?", "3\n",
       "No space left on device; the change is saved"},
      {"LC_ALL=C hearth set misc 'имя' '値' && LC_ALL=tr_TR.UTF-8 hearth get misc 'имя'", "値\n",
       kUnguarded},
  });
}

TEST_F(StoreCommandTest, ShowsChangesAsTheyHappen) {
  const std::string start = HEARTH_COMMAND " watch >w 2>e & p=$!; ";
  const std::string await =
      "await() { for i in $(seq 100); do grep -qs \"$1\" $2 && return; sleep 0.1; done; }; ";
  runAll({
      {await + start + "await watching e; hearth set wifi " + kChannel +
           " 11; await channel w; cp -r data/misc m; mv data/misc old; mv m data/misc; sleep 2; "
           "hearth set misc token 1 --no-schema; await token w; kill -INT $p; wait $p; echo $?; "
           "grep -E '(channel|token): ' w | cut -c10-",
       "0\n~ wifi radios.[0].channel: 6 -> 11\n+ misc token: (secret)\n"},
      {await + "{ " HEARTH_COMMAND " watch --json wifi 2>e; echo $? >code; } | head -n 1 | "
               "grep -o '\"was\":.*is\":[0-9]*' & await watching e; hearth undo wifi >/dev/null; "
               "await 0 code; wait; cat code",
       "\"was\":11,\"is\":6\n0\n"},
  });
}

}  // namespace
