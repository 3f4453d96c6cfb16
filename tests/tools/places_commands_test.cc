// Commands that work on many places at once, that say what is there and what may be, and secrets.
#include "tests/tools/command_fixture.h"

namespace {

// A list with what tables and conditions have to cope with.
constexpr char kPeople[] =
    R"({"people":[{"name":"Анна","age":7,"tags":["x","y"]},{"name":"李雷","age":null,"on":true},)"
    R"({"name":"Ole\nBo","age":7,"d.k":{"e":1}}],"none":[],"old":[]})";

TEST_F(CommandTest, WorksOnEachElement) {
  dir_.file("p.json", kPeople);
  runAll({
      {"hearth get p.json 'people.[*].name'", "Анна\n李雷\nOle\\nBo\n"},
      {"hearth get p.json 'people.[*].tags.[*]'", "x\ny\n"},
      {"hearth get --json p.json 'people.[*].age'", "[\n  7,\n  null,\n  7\n]\n"},
      {"hearth get p.json 'people.[*].on' --default no", "no\ntrue\nno\n"},
      {"hearth get p.json 'people.[*].name' --where age=7 --where 'tags.[0]=x'", "Анна\n"},
      {"hearth get p.json 'people.[*].nam'", 1, "'people.[0]' has no member 'nam'; did you mean"},
      {"hearth get p.json 'none.[*]'", 1, "'none' is an array of 0 elements"},
      {"hearth get p.json 'people.[0].[*]'", 1, "is an object of 3 members; [*] stands for"},
      {"hearth get p.json 'people.[*]' --where age=8", 1, "satisfies --where"},
      {"hearth get p.json people --where age=8", 2, "has none"},
      {"hearth get p.json 'people.[*]' --where age", 2, "'age' is not KEY=VALUE"},
      {"hearth add p.json 'people.[*]' 1", 2, "room for one place only"},
      {"hearth get p.json gone --default '' && hearth get --json p.json gone --default 1", "\n1\n"},
      {"hearth set p.json 'people.[*].age' 8 --where age=7", "", "note: 2 values set"},
      {"hearth set p.json 'people.[*].gone' 8", 1, "has no member 'gone'"},
      {"hearth get p.json 'people.[*].age'", "8\nnull\n8\n"},
      {"hearth del p.json 'people.[*]' --where age=8", "", "note: 2 values removed"},
      {"hearth get p.json 'people.[*].name'", "李雷\n"},
  });
}

TEST_F(CommandTest, ComparesBeforeItStores) {
  runAll({
      {"hearth set f.json i 8 --if 7 && hearth get f.json i", "8\n"},
      {"hearth set f.json i 9 --if 7", 4, "'i' is 8, not what --if says; nothing is changed"},
      {"hearth set f.json gone 9 --if 7", 1, "no member 'gone'"},
      {"hearth set wifi 'radios.[*].networks.[*].security.passphrase' 'any new phrase' --if wrong",
       4, "passphrase' is (secret), not what"},
      // One of two that run at once finds the value changed.
      {"for n in 1 2; do hearth set f.json i 10$n --if 8 2>>log & done; wait; grep -c if log; rm "
       "log",
       "1\n"},
  });
}

TEST_F(CommandTest, CopiesAndMoves) {
  dir_.file("p.json", kPeople);
  runAll({
      {"hearth mv p.json 'people.[*]' old --where age=7 && hearth get p.json 'old.[*].age'",
       "7\n7\n", "note: 2 values moved"},
      {"hearth get p.json 'people.[*].name'", "李雷\n"},
      {"hearth cp p.json 'old.[0]' 'people.[9]'", "", "stored as 'people.[1]'"},
      {"hearth set p.json 'old.[0].age' 1 && hearth get p.json 'people.[1].age'", "7\n"},
      {"hearth mv p.json old none && hearth get p.json 'none.[*].age'", "1\n7\n"},
      {"hearth mv p.json 'people.[1].tags' people && hearth get p.json people.[*]", "x\ny\n"},
      {"hearth mv p.json people 'people.[0]'", 2, "is inside of 'people'"},
      {"hearth cp p.json people people", 2, "is where it is already"},
      {"hearth mv p.json gone old", 1, "no member 'gone'"},
      {"hearth cp p.json 'none.[*]' 'people.[0]'", 1, "goes to an array"},
  });
}

TEST_F(CommandTest, ShowsValuesAsATable) {
  dir_.file("p.json", kPeople);
  runAll({
      {"hearth get --table p.json people",
       "name     age  tags  on    d.k\nАнна     7    [2]   -     -\n李雷     -    -     true  -\n"
       "Ole\\nBo  7    -     -     {1}\n"},
      {"hearth get p.json 'people.[*]' --columns name,tags.[0]",
       "name     tags.[0]\nАнна     x\n李雷     -\nOle\\nBo  -\n"},
      {"hearth get --json --table p.json people 2>&1 | grep -o 'do not go together'",
       "do not go together\n"},
      // On a terminal of 20 columns the widest column gives way.
      {"hearth set f.json x --json '[{\"a\":\"long enough to cut\",\"b\":1}]' && NO_COLOR=1 script "
       "-qec 'stty cols 16; " HEARTH_COMMAND " get --table f.json x' /dev/null </dev/null",
       "a              b\r\nlong enough …  1\r\n"},
  });
}

TEST_F(CommandTest, FindsPartsOfTextsInAllAreas) {
  dir_.file("n.json", R"({"Ärger":"ГРАНЬ Σοφός","b":"x"})");
  std::filesystem::remove(dir_ / "data/qos/qos.ldb");
  runAll({
      {"hearth find --contains GARDEN --ignore-case | sed 's/ .*//' | uniq",
       "wifi\nnetwork\nservice\nmediashare\n"},
      {"hearth find --key ssid --contains things wifi", 1, ""},
      {"hearth find --key SSID --contains things --ignore-case wifi",
       "radios.[0].networks.[2].ssid\n"},
      {"hearth find n.json --contains 'грань σΟΦΌΣ' --ignore-case", "Ärger\n"},
      {"hearth find n.json --key äRGER --ignore-case", "Ärger\n"},
      {"hearth find wifi 'radios.[*].networks.[*].enabled' true | wc -l", "5\n"},
      {"hearth find wifi ssid", 2, "find takes AREA KEY VALUE"},
      {"echo '{' >data/misc/misc.ldb; hearth find --key ssid | wc -l", "11\n", "not searched"},
  });
}

TEST_F(CommandTest, DescribesWhatMayBe) {
  dir_.file(
      "data/qos/qos_SCHEMA.ldb",
      R"({"$defs":{"c":{"title":"C","type":"string","enum":["a","b"],"labels":{"a":"A"}}},)"
      R"("properties":{"l":{"items":[{"type":"null"},{"$ref":"#"}],"additionalItems":{)"
      R"("$ref":"#/$defs/c","title":"Own","default":"a"}},"n":{"minimum":1,"exclusiveMaximum":9,)"
      R"("type":["integer","null"],"unit":"s"},"e":{"oneOf":[{"minLength":2},{"const":""}]}},)"
      R"("required":["n"],"patternProperties":{"^x_":{"maxLength":3,"writeOnly":true}},)"
      R"("additionalProperties":false})");
  const auto describes = [](const std::string& path, const std::string& facts) {
    return Row{"hearth describe qos '" + path + "' | sed '1d; s/   */: /'", facts};
  };
  runAll({
      describes("l.[*]", "type: null\nrequired: no\nsecret: no\n"),
      describes(
          "l.[7]",
          "title: Own\ntype: string\nchoices: \"a\" (A), \"b\"\ndefault: \"a\"\nrequired: no\n"
          "secret: no\n"),
      describes("l.[1].n",
                "type: integer or null\nrange: at least 1, less than 9\nunit: s\nrequired: yes\n"
                "secret: no\n"),
      describes("e",
                "length: in some cases: at least 2 characters\nmust be: in some cases: \"\"\n"
                "required: no\nsecret: no\n"),
      describes("x_y", "length: at most 3 characters\nrequired: no\nsecret: yes\n"),
      {"hearth describe --json qos n | tr -d ' \\n'",
       R"({"path":"n","type":["integer","null"],"minimum":1,"exclusiveMaximum":9,"unit":"s",)"
       R"("required":true,"secret":false})"},
      {"hearth describe qos nn", 1, "the document may have no member 'nn'; did you mean 'n'?"},
      {"hearth describe qos n.x", 1, "says nothing about 'n.x': anything may stand there"},
      {"rm data/qos/qos_SCHEMA.ldb; ! hearth describe qos n", "", "has no schema of its database"},
      {"hearth ls f.json; hearth ls f.json a.b | tail -1",
       "name  type     length\na     object   3\nd.e   integer  -\n[f    integer  -\n"
       "i     integer  -\nt     boolean  -\ng     double   -\nctl   string   -\n"
       "      integer  -\n[2]   object   1\n"},
  });
}

TEST_F(CommandTest, TellsProgramsWhatWentWrong) {
  runAll({
      {"hearth --json get wifi 'radios.[*].channel' | tr -d ' \\n'", "[6,44]"},
      {"hearth --json set wifi 'radios.[0].txPower' 300 2>e.json; echo $?; hearth show --compact "
       "e.json | sed 's/\"message\":\"[^\"]*\",*//g'; rm e.json",
       "5\n{\"code\":5,\"area\":\"wifi\",\"path\":\"radios.[0].txPower\",\"violations\":[{"
       "\"pointer\":"
       "\"/radios/0/txPower\",\"rule\":\"/properties/radios/items/properties/txPower/maximum\","
       "\"keyword\":\"maximum\",}]}\n"},
      {"for c in 'get --json f.json x' 'get --json f.json' 'show --json x.json' 'set --json "
       "f.json'; "
       "do hearth $c 2>&1 | cut -c1-10; done",
       "{\"code\":1,\n{\"code\":2,\n{\"code\":3,\nhearth: PA\n"},
  });
}

TEST_F(CommandTest, KeepsSecrets) {
  const std::string passphrase = " 'radios.[0].networks.[0].security.passphrase'";
  // A terminal on which `keys` types, each line when the prompt before it is there.
  const auto typed = [](const std::string& answers, const std::string& expected) {
    return Row{"mkfifo keys; touch shown; { for answer in " + answers +
                   "; do until grep -q \"${answer#*=}\" shown; do sleep 0.05; done; "
                   "printf \"${answer%=*}\"; done; sleep 2; } >keys & "
                   "script -qec 'trap : INT; " HEARTH_COMMAND
                   " set --secret f.json new; echo $?; stty -a' /dev/null <keys >shown; wait; "
                   "grep -ow -e echo -e -echo -e hush -e '^[0-9]*' shown | head -2; rm keys shown",
               expected};
  };
  runAll({
      {"printf 'xy\"\\tz\\n' | hearth set --secret f.json new && hearth get f.json new",
       "xy\"\tz\n"},
      {"printf 7 | hearth set --secret f.json n2 && hearth get --json f.json n2", "\"7\"\n"},
      {"printf hush | hearth set --secret f.json i", 2, "value (secret) would replace an integer"},
      {"hearth set f.json a.password 7 && ! hearth set f.json a.password hush --int", "",
       "value (secret) is not"},
      {"printf '\\001hush' | hearth set --secret wifi" + passphrase, 5, "does not satisfy"},
      Row("{ printf hush\\\\1 | hearth set --secret wifi country; hearth set wifi" + passphrase +
              " hush; } 2>&1 | grep -c hush",
          1, "")
          .printing("0\n"),
      {"echo x | hearth set --secret f.json new y", 2, "VALUE and --secret do not go together"},
      typed("'hush\\n=secret:' 'hush\\n=once more:'", "0\necho\n"),
      typed("'hush\\n=secret:' 'hash\\n=once more:'", "2\necho\n"),
      typed("'\\003=secret:'", "130\necho\n"),
  });
}

}  // namespace
