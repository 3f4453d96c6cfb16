// Why not: places, rules, limits, strictness, and what is never quoted.
#include <gtest/gtest.h>

#include <tuple>

#include "hearth/kit.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace {

using hearth::Fault;
using hearth::Value;
using namespace std::string_literals;

std::string sentenceOf(const hearth::Result<void>& result) {
  EXPECT_EQ(static_cast<bool>(result), result.failure().fault == Fault::kNone);
  return result ? "passes" : result.failure().sentence;
}

constexpr const char kSchema[] = R"({
  "properties": {
    "ssid": {"maxLength": 4},
    "user": {"properties": {"Pass_Phrase": {"minLength": 8, "pattern": "^[a-z]*$"},
                            "keys": {"items": {"const": "letmein"}},
                            "name": {"enum": ["admin"]}},
             "required": ["name"], "maxProperties": 3},
    "any": {"enum": [1]},
    "list": {"items": {"type": "integer"}},
    "a/b~c": {"type": "null"}
  }})";

// The value, and the sentence about it.
constexpr std::tuple<const char*, const char*> kReasons[] = {
    {R"({"ssid": "abcd"})", "passes"},
    {R"({"ssid": "abcde"})", "/ssid: must be at most 4 characters long, but has 5"},
    {R"({"list": [1, "2"]})", "/list/1: must be an integer, but is a string"},
    {R"({"a/b~c": 1})", "/a~1b~0c: must be null, but is an integer"},
    {R"({"user": {"name": "root"}})", R"(/user/name: must be one of "admin", but is "root")"},
    {R"({"user": {"password": "hunter2"}})", "/user: must have the member \"name\""},
    {R"({"user": {"name": "admin", "Pass_Phrase": "hunter2"}})",
     "/user/Pass_Phrase: does not satisfy \"minLength\""},
    {R"({"user": {"name": "admin", "Pass_Phrase": "HUNTER2-HUNTER2"}})",
     "/user/Pass_Phrase: does not satisfy \"pattern\""},
    {R"({"any": {"deep": [{"token": "hunter2"}]}})", "/any: does not satisfy \"enum\""},
    {R"({"any": {"deep": [{"tokens": "other"}]}})",
     "/any: must be one of 1, but is an object of 1 member"},
};

TEST(KitValidate, SaysWhichRuleIsBrokenWhere) {
  const hearth::Result<Value> schema = hearth::parse(kSchema);
  for (const auto& [text, sentence] : kReasons) {
    const hearth::Result<Value> value = hearth::parse(text);
    EXPECT_EQ(sentenceOf(hearth::validate(*value, *schema)), sentence) << text;
  }
  hearth::addSecretName("Keys");
  const hearth::Result<Value> value =
      hearth::parse(R"({"user": {"name": "admin", "keys": ["x"]}})");
  EXPECT_EQ(sentenceOf(hearth::validate(*value, *schema)),
            "/user/keys/0: does not satisfy \"const\"");
}

TEST(KitValidate, TellsAsManyViolationsAsAreWanted) {
  const hearth::Result<Value> schema = hearth::parse(R"({"items": {"maximum": 1}})");
  const hearth::Result<Value> value = hearth::parse("[2, 1, 3, 4]");
  for (const unsigned int limit : {0U, 1U, 2U, 9U}) {
    hearth::ValidateOptions options;
    options.limit = limit;
    const hearth::Failure failure = hearth::validate(*value, *schema, options).failure();
    const std::size_t expected = limit == 9 ? 3 : limit == 0 ? 1 : limit;
    ASSERT_EQ(failure.broken.size(), expected);
    EXPECT_EQ(failure.broken[0].place, "/0");
    EXPECT_EQ(failure.broken[0].rule, "/items/maximum");
    EXPECT_EQ(failure.broken[0].keyword, "maximum");
    EXPECT_EQ(failure.broken.back().place, "/" + std::to_string(expected == 1 ? 0 : expected));
  }
}

TEST(KitValidate, RefusesWhatIsNoSchemaAndStrictlyWhatHasNone) {
  const TempDir folder;
  BEConfig::DATA_LOCATION = folder.path();
  folder.file("wifi/wifi_SCHEMA.ldb", "[");
  folder.file("wifi/WIFI_RADIO_GET_REQ_SCHEMA.ldb", "7");
  folder.file("wifi/WIFI_RADIO_GET_RESP_SCHEMA.ldb", R"({"type": "array"})");
  const hearth::Result<Value> object = hearth::parse("{}");
  const auto faults = [&](const auto& check) {
    hearth::ValidateOptions strict;
    strict.isStrict = true;
    const hearth::Failure lax = check(hearth::ValidateOptions()).failure();
    const hearth::Failure failure = check(strict).failure();
    EXPECT_EQ(failure.fault == Fault::kNone, failure.sentence.empty());
    return std::pair(lax.fault, failure.fault);
  };
  const auto message = [&](unsigned int area, auto which) {
    return faults([&, area, which](const auto& options) {
      return hearth::validateMessage(*object, area, which, options);
    });
  };
  const std::pair missing(Fault::kNone, Fault::kNoSchema);
  const auto both = [](Fault fault) { return std::pair(fault, fault); };
  EXPECT_EQ(message(API_WIFI, "WIFI_RADIO_GET_REQ"), both(Fault::kBadSchema));
  EXPECT_EQ(message(API_WIFI, "WIFI_RADIO_GET_RESP"), both(Fault::kRefused));
  EXPECT_EQ(message(API_WIFI, 3U), both(Fault::kRefused));
  EXPECT_EQ(message(API_WIFI, 0U), missing);
  EXPECT_EQ(message(API_WIFI, "unknown"), both(Fault::kNoMessage));
  EXPECT_EQ(message(API_WIFI, static_cast<const char*>(nullptr)), both(Fault::kNoMessage));
  EXPECT_EQ(message(API_WIFI, 80U), both(Fault::kNoMessage));
  EXPECT_EQ(message(API_MISC, 0U), both(Fault::kNoMessage));
  EXPECT_EQ(message(8, 0U), both(Fault::kNoArea));
  EXPECT_EQ(faults([&](const auto& o) { return hearth::validateDatabase(*object, API_WIFI, o); }),
            both(Fault::kBadSchema));
  EXPECT_EQ(faults([&](const auto& o) { return hearth::validateDatabase(*object, API_QOS, o); }),
            missing);
  EXPECT_EQ(faults([&](const auto& o) { return hearth::validateDatabase(*object, 99, o); }),
            both(Fault::kNoArea));
  EXPECT_EQ(faults([&](const auto& o) { return hearth::validate(*object, nullptr, o); }), missing);
  EXPECT_EQ(faults([&](const auto& o) { return hearth::validateWithFile(*object, nullptr, o); }),
            both(Fault::kBadArgument));
  const hearth::Failure unread = hearth::validateDatabase(*object, API_WIFI).failure();
  EXPECT_EQ(unread.sentence, folder / "wifi/wifi_SCHEMA.ldb" +
                                 ": line 1, column 2: expected a value, but there is the end of "
                                 "the text");
}

TEST(KitSecrets, AreNeitherShownNorLoggedNorSent) {
  const hearth::Result<Value> document = hearth::parse(
      R"({"user": "anna", "password": "hunter2", "wifi": [{"PreShared-Key": {"v": "hunter2"}}]})");
  const std::string whole =
      R"j({"user":"anna","password":"(secret)","wifi":[{"PreShared-Key":"(secret)"}]})j";
  EXPECT_EQ(hearth::shown(*document), whole);
  EXPECT_EQ(hearth::shown(*document, "wifi.[0].PreShared-Key.v"), "(secret)");
  EXPECT_EQ(hearth::shown(*document, "user"), "\"anna\"");
  EXPECT_EQ(plain(hearth::withoutSecrets(*document)->raw()), R"({"user":"anna","wifi":[{}]})");
  EXPECT_EQ(linesOf([&] { hearth::dump(*document, ""); }, {LOG_INFO}), "INFO: : " + whole + "\n");
  EXPECT_EQ(linesOf([&] { hearth::dump(*document, "password"); }).find("hunter2"),
            std::string::npos);
  EXPECT_TRUE(hearth::leadsToSecret("a.[0].Pass_word"));
  EXPECT_FALSE(hearth::leadsToSecret("passwordless.b") || hearth::leadsToSecret(nullptr) ||
               hearth::leadsToSecret("..."));
}

}  // namespace
