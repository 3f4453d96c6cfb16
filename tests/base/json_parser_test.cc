// The strict verdict on texts with bytes above 0x7f, which one release of json-c gets wrong.
#include "base/json_parser.h"

#include <gtest/gtest.h>

namespace hearth {
namespace {

TEST(JsonParser, IsStrictAboutAsciiAndOpenToTheRest) {
  constexpr char kCafe[] = R"(["Caf)"
                           "\xc3\xa9";
  const struct {
    std::string behind;  // "Cafe" with an accent
    bool isValid;
    std::size_t end;
  } rows[] = {
      {R"("])", true, 9},       {R"(\n"])", true, 11},       {R"(",])", false, 9},
      {R"("] x)", false, 10},   {"\\\xc3\xa9\"]", false, 8}, {R"(", 01])", false, 12},
      {"\xff\", x]", false, 7}, {R"(")", false, 8},
  };
  for (const auto& [behind, isValid, end] : rows) {
    const std::string text = kCafe + behind;
    const ParsedJson parsed = parseJson(text, JSON_TOKENER_STRICT | JSON_TOKENER_VALIDATE_UTF8);
    EXPECT_EQ(isValid, parsed.isValid()) << text;
    EXPECT_EQ(end, parsed.end) << text;
    EXPECT_EQ(isValid, parsed.value != nullptr) << text;
  }
}

}  // namespace
}  // namespace hearth
