// The label tables, against the shape that every API table has and a digest of each whole list.
#include "hearth/labels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

// The digest is the 64-bit FNV-1a of the labels in their order, each with a line end: another
// order, another spelling, another row gives another one.
struct Row {
  const char* prefix;
  const char* const* labels;
  unsigned int count;
  std::uint64_t digest;
};

const Row rows[] = {
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
  for (const Row& area : rows) {
    std::uint64_t digest = 0xcbf29ce484222325;
    for (unsigned int i = 0; i < area.count; i += 2) {
      const std::string request = COMM_LABEL(number, i);
      const std::string response = COMM_LABEL(number, i + 1);
      const std::string stem = request.substr(0, request.rfind("_REQ"));
      EXPECT_EQ(stem + "_REQ", request);
      EXPECT_EQ(stem + "_RESP", response);
      EXPECT_EQ(0U, stem.rfind(area.prefix, 0)) << stem;
      EXPECT_EQ(area.labels[i], COMM_LABEL(number, i)) << "one text, not two";
      digest = addLine(addLine(digest, request), response);
    }
    EXPECT_EQ(area.digest, digest) << area.prefix;
    EXPECT_STREQ("unknown", COMM_LABEL(number, area.count)) << area.prefix;
    ++number;
  }
  EXPECT_STREQ("unknown", COMM_LABEL(number, 0));
  EXPECT_STREQ("unknown", COMM_LABEL(1000, 0));
}

}  // namespace
