// Exact reads, writes, walking and names.
#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <tuple>

#include "hearth/kit.h"
#include "tests/support/captured_log.h"

namespace {

using hearth::Fault;
using hearth::Value;
using hearth::View;
using namespace std::string_literals;

// The document of a text in which '~' is a NUL.
Value documentOf(const std::string& text) {
  hearth::Result<Value> parsed = hearth::parse(replaced(text, "~", "\\u0000"));
  EXPECT_TRUE(parsed) << parsed.failure().sentence;
  return parsed ? std::move(*parsed) : Value();
}

template <typename T>
std::string readAs(View document, hearth::Name path = "v") {
  std::ostringstream out;
  out.precision(17);
  const std::optional<T> value = hearth::get<T>(document, path);
  if (value) {
    out << +*value;
  }
  return value ? out.str() : "-";
}
template <>
std::string readAs<std::string_view>(View document, hearth::Name path) {
  const std::optional<std::string_view> text = hearth::get<std::string_view>(document, path);
  EXPECT_EQ(hearth::get<std::string>(document, path), text);
  return text ? replaced(std::string(*text), "\0"s, "~") : "-";
}

// How a value reads as int32_t, uint8_t, int64_t, uint64_t, double, bool and text.
constexpr std::tuple<const char*, const char*> kReads[] = {
    {"5", "5 5 5 5 5 - -"},
    {"-1", "-1 - -1 - -1 - -"},
    {"255", "255 255 255 255 255 - -"},
    {"256", "256 - 256 256 256 - -"},
    {"2147483647", "2147483647 - 2147483647 2147483647 2147483647 - -"},
    {"2147483648", "- - 2147483648 2147483648 2147483648 - -"},
    {"-2147483648", "-2147483648 - -2147483648 - -2147483648 - -"},
    {"-2147483649", "- - -2147483649 - -2147483649 - -"},
    {"5000000000", "- - 5000000000 5000000000 5000000000 - -"},
    {"9007199254740993", "- - 9007199254740993 9007199254740993 - - -"},
    {"9223372036854775807", "- - 9223372036854775807 9223372036854775807 - - -"},
    {"9223372036854775808", "- - - 9223372036854775808 9.2233720368547758e+18 - -"},
    {"18446744073709551615", "- - - 18446744073709551615 - - -"},
    {"-9223372036854775808", "- - -9223372036854775808 - -9.2233720368547758e+18 - -"},
    {"2.0", "2 2 2 2 2 - -"},
    {"-0.0", "0 0 0 0 -0 - -"},
    {"1e3", "1000 - 1000 1000 1000 - -"},
    {"2.5", "- - - - 2.5 - -"},
    {"1e19", "- - - 10000000000000000000 1e+19 - -"},
    {"9223372036854775808.0", "- - - 9223372036854775808 9.2233720368547758e+18 - -"},
    {"-9223372036854775808.0", "- - -9223372036854775808 - -9.2233720368547758e+18 - -"},
    {"18446744073709551616.0", "- - - - 1.8446744073709552e+19 - -"},
    {"true", "- - - - - 1 -"},
    {"\"5\"", "- - - - - - 5"},
    {"\"\"", "- - - - - - "},
    {"\"a~b\"", "- - - - - - a~b"},
    {"null", "- - - - - - -"},
    {"[1]", "- - - - - - -"},
    {"{}", "- - - - - - -"},
};

TEST(KitValues, ReadsWhatFitsAndNothingElse) {
  for (const auto& [text, expected] : kReads) {
    const Value document = documentOf("{\"v\": "s + text + "}");
    EXPECT_EQ(readAs<int32_t>(document) + " " + readAs<uint8_t>(document) + " " +
                  readAs<int64_t>(document) + " " + readAs<uint64_t>(document) + " " +
                  readAs<double>(document) + " " + readAs<bool>(document) + " " +
                  readAs<std::string_view>(document),
              expected)
        << text;
  }
  TreeMapObject document(false);
  document.set("v", std::numeric_limits<double>::infinity());
  EXPECT_EQ(readAs<double>(document), "-");
  const Value list = documentOf(R"({"a": [{"b": 7}], "t": "x"})");
  EXPECT_EQ(hearth::getOr(list, "a.[0].b", 1), 7);
  EXPECT_EQ(hearth::getOr(list, "a.[1].b", 1), 1);
  EXPECT_EQ(hearth::getOr(list, "t", "y"), "x");
  EXPECT_EQ(hearth::getOr(list, "u", "y"), "y");
  EXPECT_EQ(hearth::getOr(list, "t", 1.5), 1.5);
}

TEST(KitValues, ReadsNothingFromNothing) {
  hearth::Handle moved(new TreeMapObject("{\"a\": 1}"));
  EXPECT_EQ(readAs<int>(moved, "a"), "1");
  EXPECT_EQ(readAs<int>(moved, "a\0b"s), "-");
  EXPECT_EQ(readAs<int>(moved, nullptr), "-");
  const hearth::Handle taken = std::move(moved);
  EXPECT_EQ(readAs<int>(moved, "a"), "-");  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(hearth::set(moved, "a", 1).failure().fault, Fault::kBadArgument);
  EXPECT_FALSE(hearth::remove(moved, "a"));
  EXPECT_EQ(hearth::members(moved).size() + hearth::elements(moved).size(), 0U);
  EXPECT_EQ(hearth::shown(moved), "null");
  EXPECT_EQ(readAs<int>(TreeMapObject("{"), ""), "-");
}

// Writes one value of each kind to "v" and gives what is there then, or the fault's number.
template <typename T>
std::string written(const T& value, hearth::Name path = "v") {
  const Value document = documentOf(R"({"old": [1]})");
  const hearth::Result<void> result = hearth::set(document, path, value);
  EXPECT_EQ(static_cast<bool>(result), result.failure().sentence.empty());
  return result ? plain(hearth::find(document, "").raw()) + "=" + readAs<std::string_view>(document)
                : "fault " + std::to_string(static_cast<int>(result.failure().fault));
}
std::string faultIs(Fault fault) {
  return "fault " + std::to_string(static_cast<int>(fault));
}

TEST(KitValues, WritesWhatItReads) {
  const auto holds = [](const char* value, const char* text = "-") {
    return "{\"old\":[1],\"v\":"s + value + "}=" + text;
  };
  EXPECT_EQ(written(int64_t{5000000000}), holds("5000000000"));
  EXPECT_EQ(written(std::numeric_limits<uint64_t>::max()), holds("18446744073709551615"));
  EXPECT_EQ(written(std::numeric_limits<int64_t>::min()), holds("-9223372036854775808"));
  EXPECT_EQ(written(uint8_t{200}), holds("200"));
  EXPECT_EQ(written(false), holds("false"));
  EXPECT_EQ(written(0.1), holds("0.10000000000000001"));
  EXPECT_EQ(written("a\0b"s), holds(R"("a\u0000b")", "a~b"));
  EXPECT_EQ(written(std::string_view()), holds("\"\"", ""));
  EXPECT_EQ(written("text"), holds("\"text\"", "text"));
  EXPECT_EQ(written(nullptr), holds("null"));
  EXPECT_EQ(written(View()), holds("null"));
  EXPECT_EQ(written(static_cast<const char*>(nullptr)), faultIs(Fault::kBadArgument));
  EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN()), faultIs(Fault::kNotStored));
  EXPECT_EQ(written(-std::numeric_limits<double>::infinity()), faultIs(Fault::kNotStored));
  EXPECT_EQ(written(1, ""), faultIs(Fault::kBadArgument));
  EXPECT_EQ(written(1, nullptr), faultIs(Fault::kBadArgument));
  EXPECT_EQ(written(1, "v\0w"s), faultIs(Fault::kBadArgument));
  EXPECT_EQ(written(1, "old.v"), faultIs(Fault::kNotStored));
}

TEST(KitValues, CopiesValuesAndMovesThem) {
  const Value source = documentOf(R"({"list": [1]})");
  const Value document = documentOf("{}");
  ASSERT_TRUE(hearth::set(document, "copy", hearth::find(source, "list")));
  ASSERT_TRUE(hearth::set(document, "own", document));
  Value list = documentOf("[2]");
  json_object* const moved = list.raw();
  ASSERT_TRUE(hearth::set(document, "moved", std::move(list)));
  ASSERT_TRUE(hearth::append(hearth::find(source, "list").raw(), "x"));
  EXPECT_EQ(plain(document.raw()), R"({"copy":[1],"own":{"copy":[1]},"moved":[2]})");
  EXPECT_EQ(hearth::find(document, "moved").raw(), moved);
  EXPECT_EQ(plain(source.raw()), R"({"list":[1,"x"]})");
  EXPECT_EQ(hearth::append(source, 1).failure().fault, Fault::kNotStored);
  EXPECT_EQ(json_object_put(json_object_get(moved)), 0) << "the document holds the one reference";
}

TEST(KitValues, RemovesAndWalks) {
  const Value document = documentOf(R"({"a": null, "b": [1, null, 3, 4], "c": {"d": 1}})");
  EXPECT_FALSE(hearth::remove(document, "x"));
  EXPECT_FALSE(hearth::remove(document, ""));
  EXPECT_FALSE(hearth::remove(document, "b.[9]"));
  EXPECT_TRUE(hearth::remove(document, "a"));
  EXPECT_TRUE(hearth::remove(document, "b.[0]"));
  EXPECT_TRUE(hearth::remove(document, "c.d"));
  EXPECT_EQ(plain(document.raw()), R"({"b":[null,3,4],"c":{}})");

  std::string walked;
  for (const View element : hearth::elements(document, "b")) {
    walked += readAs<int>(element, "") + ",";
    if (hearth::get<int>(element) == 3) {
      hearth::remove(document, "b.[1]");
    }
  }
  for (const auto& [name, value] : hearth::members(document)) {
    walked += std::string(name) + (value.isArray() ? "[]" : "") + ",";
    hearth::remove(document, std::string(name));
  }
  EXPECT_EQ(walked, "-,3,4,b[],c,");
  EXPECT_EQ(plain(document.raw()), "{}");
  EXPECT_FALSE(hearth::elements(documentOf("[1]").raw())[1]);
}

TEST(KitValues, KnowsAreasAndMessagesByNameAndNumber) {
  EXPECT_EQ(hearth::areaNamed("wifi"), API_WIFI);
  EXPECT_EQ(hearth::areaNumbered(7), API_MISC);
  EXPECT_EQ(hearth::areaName(7), "misc");
  for (const hearth::Text name : {hearth::Text(nullptr), hearth::Text(""), hearth::Text("Wifi"),
                                  hearth::Text("wifi\0"s), hearth::Text("unknown")}) {
    EXPECT_FALSE(hearth::areaNamed(name)) << name.view();
    EXPECT_FALSE(hearth::messageRow(API_WIFI, name)) << name.view();
  }
  EXPECT_FALSE(hearth::areaNumbered(8) || hearth::areaName(8) || hearth::databaseFile(8));

  unsigned int messages = 0;
  for (unsigned int area = 0; area < 9; ++area) {
    for (unsigned int row = 0; row < hearth::messageCount(area); ++row, ++messages) {
      EXPECT_EQ(*hearth::messageLabel(area, row), COMM_LABEL(area, row));
      const unsigned int found = *hearth::messageRow(area, *hearth::messageLabel(area, row));
      EXPECT_TRUE(found == row || (area == API_NETWORK && row - found == 50)) << area << row;
    }
    EXPECT_FALSE(hearth::messageLabel(area, hearth::messageCount(area)));
  }
  EXPECT_EQ(messages, 86U + 80 + 88 + 112 + 174 + 44 + 20);
}

}  // namespace
