// The label tables, against the shape that every API table has and a digest of each whole list.
#include "hearth/labels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

// The digest is the 64-bit FNV-1a of the labels in their order, each with a line end: another
// order, another spelling, another row gives another one.
struct Area {
  const char* prefix;
  const char* const* rows;
  unsigned int count;
  std::uint64_t digest;
};

const Area kAreas[] = {
    {"GATEWAY_", GATEWAY_LBL, 86, 0x98aa1fe0feb4150d},
    {"WIFI_", WIFI_LBL, 80, 0xa72067346025f94d},
    {"NETWORK_", NETWORK_LBL, 88, 0x5e7ebaf986ab7839},
    {"SECURITY_", SECURITY_LBL, 112, 0x0e12ccd0be8dccfd},
    {"SERVICE_", SERVICE_LBL, 174, 0xddb26cc76831f82b},
    {"MEDIASHARE_", MEDIASHARE_LBL, 44, 0x9568810cc3fcb1ad},
    {"QOS_", QOS_LBL, 20, 0x326b41921b8f50fd},
};

std::uint64_t addLine(std::uint64_t digest, const std::string& text) {
  for (const char c : text + '\n') {
    digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  }
  return digest;
}

TEST(LabelsTest, ArePairsOfRequestAndResponse) {
  unsigned int number = 0;
  for (const Area& area : kAreas) {
    std::uint64_t digest = 0xcbf29ce484222325;
    for (unsigned int row = 0; row < area.count; row += 2) {
      const std::string request = COMM_LABEL(number, row);
      const std::string response = COMM_LABEL(number, row + 1);
      const std::string stem = request.substr(0, request.rfind("_REQ"));
      EXPECT_EQ(request, stem + "_REQ");
      EXPECT_EQ(response, stem + "_RESP");
      EXPECT_EQ(stem.rfind(area.prefix, 0), 0U) << stem;
      EXPECT_EQ(COMM_LABEL(number, row), area.rows[row]) << "one text, not two";
      digest = addLine(addLine(digest, request), response);
    }
    EXPECT_EQ(area.digest, digest) << area.prefix;
    EXPECT_STREQ(COMM_LABEL(number, area.count), "unknown");
    ++number;
  }
  EXPECT_STREQ(COMM_LABEL(number, 0), "unknown");
  EXPECT_STREQ(COMM_LABEL(1000, 0), "unknown");
}

}  // namespace
