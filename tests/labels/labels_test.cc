// The label tables, against the shape that every API table has and the rows at their ends.
#include "hearth/labels.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Area {
  const char* prefix;
  const char* const* rows;
  unsigned int count;
  const char *first, *last;
};

const Area kAreas[] = {
    {"GATEWAY_", GATEWAY_LBL, 86, "GATEWAY_LOGIN_REQ", "GATEWAY_DEVICE_MANAGEMENT_CHANGE_RESP"},
    {"WIFI_", WIFI_LBL, 80, "WIFI_INTERFACE_GET_REQ", "WIFI_WPS_GET_CONNECTION_RESP"},
    {"NETWORK_", NETWORK_LBL, 88, "NETWORK_LAN_GET_REQ", "NETWORK_WAN_CONNECTION_TYPE_DETECT_RESP"},
    {"SECURITY_", SECURITY_LBL, 112, "SECURITY_FIREWALL_GET_REQ",
     "SECURITY_MANAGED_DEVICES_DELETE_RESP"},
    {"SERVICE_", SERVICE_LBL, 174, "SERVICE_MACFILTERING_LIST_REQ", "SERVICE_ACCESS_ADM_PUT_RESP"},
    {"MEDIASHARE_", MEDIASHARE_LBL, 44, "MEDIASHARE_USB_GET_REQ", "MEDIASHARE_USB_UPDATE_RESP"},
    {"QOS_", QOS_LBL, 20, "QOS_CONFIGURATION_LIST_REQ", "QOS_IPTV_UPDATE_RESP"},
    {"", nullptr, 0, "unknown", "unknown"},
};

TEST(LabelsTest, ArePairsOfRequestAndResponse) {
  unsigned int number = 0;
  for (const Area& area : kAreas) {
    SCOPED_TRACE(number);
    for (unsigned int row = 0; row < area.count; row += 2) {
      const std::string request = COMM_LABEL(number, row);
      const std::string stem = request.substr(0, request.rfind("_REQ"));
      EXPECT_EQ(request, stem + "_REQ");
      EXPECT_EQ(COMM_LABEL(number, row + 1), stem + "_RESP");
      EXPECT_EQ(stem.rfind(area.prefix, 0), 0U) << stem;
      EXPECT_EQ(COMM_LABEL(number, row), area.rows[row]) << "one text, not two";
    }
    EXPECT_STREQ(COMM_LABEL(number, 0), area.first);
    EXPECT_STREQ(COMM_LABEL(number, area.count - 1), area.last);
    EXPECT_STREQ(COMM_LABEL(number, area.count), "unknown");
    ++number;
  }
  EXPECT_STREQ(COMM_LABEL(1000, 0), "unknown");
}

TEST(LabelsTest, AreSpelledAsTheApiHasThem) {
  EXPECT_STREQ(SERVICE_LBL[20], "SERVICE_PORTILTERING_DELETE_ONE_REQ");
  EXPECT_STREQ(GATEWAY_LBL[75], "GATEWAY_POWERSAVE_MODE_GET_RESP");
  EXPECT_STREQ(NETWORK_LBL[6], NETWORK_LBL[56]);
}

}  // namespace
