// Commands that look at a whole data location, and what the command says about itself.
#include "tests/tools/command_fixture.h"

namespace {

TEST_F(CommandTest, ListsAreasAndLabels) {
  dir_.file("data/qos/qos.ldb", "{");
  std::filesystem::remove(dir_ / "data/misc/misc.ldb");
  runAll({
      {"hearth areas | sed -n 's/  */ /g; 2p; 8,9p'",
       "gateway ./data/gateway/gateway.ldb 6325 ok 192\n"
       "qos ./data/qos/qos.ldb - './data/qos/qos.ldb': not JSON: unexpected end of data (line 1, "
       "column 2) -\nmisc ./data/misc/misc.ldb - missing -\n"},
      {"hearth areas --json >a.json && hearth find a.json area misc; rm a.json", "[7].area\n"},
      {"hearth labels wifi | sed -n 's/  */ /g; 2p; $p'",
       "wifi 0 WIFI_INTERFACE_GET_REQ - -\nwifi 79 WIFI_WPS_GET_CONNECTION_RESP - -\n"},
      {"hearth labels | wc -l; hearth labels misc | wc -l", "605\n1\n"},
      {"hearth labels qso", 2, "no area 'qso'; did you mean 'qos'?"},
  });
}

TEST_F(CommandTest, Validates) {
  const std::string request = "data/wifi/WIFI_RADIO_CHANGE_REQ.ldb";
  const std::string wrong = "sed 's/\"channel\":11/\"channel\":300/' " + request;
  dir_.file("all.json",
            R"({"properties":{"i":{"enum":[0,1,2,3,4,5,6,8,9]},"t":{"type":"string"}}})");
  dir_.file("rules.json", R"({"type":"object","properties":{"i":{"maximum":3}}})");
  runAll({
    {"hearth validate wifi WIFI_RADIO_CHANGE_REQ " + request},
        {wrong + " | hearth validate wifi WIFI_RADIO_CHANGE_REQ -", 5,
         "standard input and 'WIFI_RADIO_CHANGE_REQ': does not conform"},
        {"hearth validate --schema rules.json f.json", 5, "does not conform"},
        {"hearth validate wifi 0 f.json", "", "WIFI_INTERFACE_GET_REQ has no schema"},
        {"hearth validate wifi WIFI_RADIO_CHANG_REQ f.json", 2,
         "did you mean 'WIFI_RADIO_CHANGE_REQ'?"},
        {"hearth validate wifi 80 f.json", 2, "area wifi has no message '80'"},
        {"hearth validate misc 0 f.json", 2, "area misc has no message '0'"},
        {"hearth validate wifi WIFI_RADIO_CHANGE_REQ", 2, "validate takes AREA MESSAGE FILE"},
        {"hearth validate --schema none.json f.json", 3, "'none.json': No such file"},
        {"echo '{' >s.json; hearth validate --schema s.json f.json; e=$?; rm s.json; exit $e", 3,
         "'s.json': not JSON"},
#if HEARTH_TOOLS_SHOW_VIOLATIONS
        Row("hearth validate --all --schema all.json f.json", 5, "")
            .printing(
                "at 'i': must be one of 0, 1, 2, 3, 4, 5, 6, 8, ..., but is 7; the choices are 0, "
                "1, 2, 3, 4, 5, 6, 8, 9 (rule /properties/i/enum)\n"
                "at 't': must be a string, but is a boolean (rule /properties/t/type)\n"),
        {"hearth validate --all --json --schema all.json f.json >a.json; hearth get a.json "
         "'violations.[*].path'; hearth get a.json 'violations.[0].choices.[8]'; rm a.json",
         "i\nt\n9\n"},
        Row("hearth validate --json --schema rules.json f.json", 5, "")
            .printing(
                "{\n  \"conforms\": false,\n  \"pointer\": \"/i\",\n"
                "  \"rule\": \"/properties/i/maximum\",\n  \"keyword\": \"maximum\",\n"
                "  \"message\": \"must be at most 3, but is 7\"\n}\n"),
#endif
  });
}

TEST_F(CommandTest, ChecksADataLocation) {
  run({"hearth check", "48 files below './data', 0 problems\n"});
#if HEARTH_TOOLS_SHOW_VIOLATIONS
  dir_.file("data/qos/QOS_RULES_CREATE_REQ.ldb", "{}");
  dir_.file("data/qos/QOS_RULES_CREATE_RESP_SCHEMA.ldb", "{\"type\":3}");
  dir_.file("data/misc/misc.ldb", "{\"a\":1}}");
  dir_.file("data/wifi/WIFI_RADIO_GET_REG.ldb", "{}");
  std::filesystem::remove_all(dir_ / "data/security");
  runAll({
      {"hearth check | tail -1", "44 files below './data', 5 problems\n",
       "belongs to no message of the area; did you mean 'WIFI_RADIO_GET_REQ'?"},
      {"hearth check --json 2>/dev/null >c.json; hearth find c.json file ./data/misc/misc.ldb; "
       "rm c.json",
       "[42].file\n"},
  });
#endif
  runAll({
      Row("hearth --data nowhere check", 1, "").printing("*"),
  });
}

TEST_F(CommandTest, RefusesWhatASampleAreasSchemaDoesNotKnow) {
  for (const char* const place :
       {"gateway system", "wifi wps", "network wans.[0].vlan", "security vpn.client", "service dmz",
        "mediashare samba", "qos iptv.vlan", "misc ui.dashboard"}) {
    run({std::string("hearth set ") + place + ".misspelt 1", 5, "does not conform"});
  }
  for (const char* const address :
       {"gateway devices.[0].mac 02:00:5E:10:00",
        "wifi bandSteering.exceptions.[0] 02-00-5E-10-0-1",
        "network lans.[0].ipv4.mask 255.0.255.0", "network wans.[0].ipv6.prefix 2001:::/56",
        "service dmz.host 192.168.77.256", "qos rules.[0].match.source.address 192.168.77.0/33",
        "security firewall.ipv6.rules.[2].source.address 2001:db8::/129",
        "security firewall.alert.mail.server 300.1.1.1",
        "misc notifications.channels.mail.to.[0] me"}) {
    run({std::string("hearth set ") + address, 5, "does not conform"});
  }
}

TEST_F(CommandTest, MovesWholeDatabases) {
  runAll({
    // Imported first: json-c's releases print empty arrays in two ways.
    {"hearth import wifi data/wifi/wifi.ldb && hearth export wifi w.json && "
     "cmp w.json data/wifi/wifi.ldb; rm w.json"},
        {"hearth export wifi | hearth import wifi - && hearth check | tail -1",
         "48 files below './data', 0 problems\n"},
        {"hearth import wifi f.json", 5, "'f.json' does not conform"},
        {"hearth import wifi data/wifi/none.json", 3, "No such file"},
        {"echo '{\"a\":' | hearth import misc -", 3, "standard input: not JSON"},
        {"echo '5' | hearth import misc -", 1, "standard input is an integer, which is no"},
        {"echo '{} {}' | hearth import misc -", 3, "is not plain JSON"},
        {"rm data/misc/misc_SCHEMA.ldb; echo '{' >data/misc/misc.ldb; hearth import misc f.json && "
         "hearth get misc i",
         "7\n", "area misc has no schema of its database"},
        {"hearth import --no-schema --yes wifi f.json"},
#if HEARTH_TOOLS_SHOW_VIOLATIONS
        {"hearth export wifi w.json", 5, "must have the member \"revision\""},
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
      Row("hearth config data/gateway.conf | wc -l; ls -A | grep login", 1, "").printing("37\n"),
      {"hearth config c.conf" + squeeze + "-E 'mask|log_f|rewrite|brute|system|https|PORT '",
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
       "system.timer.sesion 3 UNKNOWN key, ignored; did you mean 'system.timer.session'?\n"},
      {"hearth config c.conf >/dev/null", 1, ""},
      {"echo '[]' >r.conf; hearth config r.conf; e=$?; rm r.conf; exit $e", 1,
       "is an array of 0 elements, not an object: the backend would end at once"},
      {"hearth config none.conf", 3, "No such file"},
  });
}

TEST_F(CommandTest, ListsLogins) {
  dir_.file("logins.json", R"([{"ipAddress":"10.0.0.1","attempts":4,"lastAttempt":"1700000000"},7,)"
                           R"({"ipAddress":"10.0.0.2","attempts":9,"lastAttempt":"99999999999"},)"
                           R"({"ipAddress":"10.0.0.2","attempts":50,"lastAttempt":"99999999999"},)"
                           R"({"ipAddress":"\u001b[2J","attempts":6}])");
  runAll({
      {"hearth logins", 3, "'.loginrecord.cfg': No such file"},
      {"hearth logins --file logins.json | sed 's/  */ /g'",
       "address attempts wait last\n10.0.0.1 4 0 2023-11-14T22:13:20Z\n"
       "10.0.0.2 9 5 5138-11-16T09:46:39Z\n10.0.0.2 50 0 5138-11-16T09:46:39Z\n\\x1b[2J 6 2 -\n"},
      {"hearth logins --file f.json", 1, "not an array"},
  });
}

TEST_F(CommandTest, ExplainsItself) {
  runAll({
      {"hearth", 2, "which command?"},
      {"hearth gte wifi a", 2, "no command 'gte'; did you mean 'get'?"},
      {"hearth get wifi", 2, "PATH is missing (try 'hearth get --help')"},
      {"hearth get wifi a --jsn", 2, "no option '--jsn'; did you mean '--json'?"},
      {"hearth get wifi a b", 2, "'b' is one word too many"},
      {"hearth get wifi a --where", 2, "--where needs a word behind it"},
      {"hearth --version | sed 's/[0-9][0-9.]*[0-9]/N/g'",
       "hearth N (json-c N, PCRE2 N, built-in validator)\n"},
      {"for c in '' $(hearth complete -- ''); do hearth $c --help | grep -c Examples: ; done | "
       "sort -u",
       "1\n"},
      {"hearth set f.json show check && hearth get f.json show", "check\n"},
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
               expected + "\n"};
  };
  runAll({
      offered("s", "set show"),
      offered("get mi", "misc"),
      offered("get wifi radios.", "radios.[0] radios.[1]"),
      offered("get wifi \"radios.[1].channel\"",
              "radios.[1].channel radios.[1].channelAuto radios.[1].channelsAllowed"),
      offered("get f.json \"\"", "a i t g ctl ."),
      offered("mv wifi country wps.d", "wps.devicePin"),
      offered("find --key ssid --ig", "--ignore-case"),
      offered("validate qos QOS_RULES_CR", "QOS_RULES_CREATE_REQ QOS_RULES_CREATE_RESP"),
      offered("--data nowhere get wifi r", ""),
      offered("set --f", "--from --force"),
  });
}

}  // namespace
