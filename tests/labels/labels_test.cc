// The label tables, against the shape that every API table has and the rows at their ends.
#include "hearth/labels.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace {

struct Area {
  const char* prefix;
  const char* const* rows;
  unsigned int count;
  const char *first, *last;
};

template <unsigned int Count>
Area area(const char* prefix, const char* const (&rows)[Count], const char* first,
          const char* last) {
  return {prefix, rows, Count, first, last};
}

TEST(LabelsTest, ArePairsOfRequestAndResponse) {
  const Area areas[] = {
      area("GATEWAY_", GATEWAY_LBL, "GATEWAY_LOGIN", "GATEWAY_DEVICE_MANAGEMENT_CHANGE"),
      area("WIFI_", WIFI_LBL, "WIFI_INTERFACE_GET", "WIFI_WPS_GET_CONNECTION"),
      area("NETWORK_", NETWORK_LBL, "NETWORK_LAN_GET", "NETWORK_WAN_CONNECTION_TYPE_DETECT"),
      area("SECURITY_", SECURITY_LBL, "SECURITY_FIREWALL_GET", "SECURITY_MANAGED_DEVICES_DELETE"),
      area("SERVICE_", SERVICE_LBL, "SERVICE_MACFILTERING_LIST", "SERVICE_ACCESS_ADM_PUT"),
      area("MEDIASHARE_", MEDIASHARE_LBL, "MEDIASHARE_USB_GET", "MEDIASHARE_USB_UPDATE"),
      area("QOS_", QOS_LBL, "QOS_CONFIGURATION_LIST", "QOS_IPTV_UPDATE"),
  };
  for (unsigned int number = 0; number < std::size(areas); ++number) {
    const Area& table = areas[number];
    SCOPED_TRACE(table.prefix);
    for (unsigned int row = 0; row < table.count; row += 2) {
      const std::string request = COMM_LABEL(number, row);
      EXPECT_EQ(request.rfind(table.prefix, 0), 0U) << request;
      ASSERT_GT(request.size(), 4U);
      const std::string stem = request.substr(0, request.size() - 4);
      EXPECT_EQ(request, stem + "_REQ");
      EXPECT_EQ(COMM_LABEL(number, row + 1), stem + "_RESP");
      EXPECT_EQ(COMM_LABEL(number, row), table.rows[row]) << "one text, not two";
    }
    EXPECT_EQ(COMM_LABEL(number, 0), std::string(table.first) + "_REQ");
    EXPECT_EQ(COMM_LABEL(number, table.count - 1), std::string(table.last) + "_RESP");
    EXPECT_STREQ(COMM_LABEL(number, table.count), "unknown");
    EXPECT_STREQ(COMM_LABEL(number, ~0U), "unknown");
  }
  EXPECT_STREQ(COMM_LABEL(7, 0), "unknown");
  EXPECT_STREQ(COMM_LABEL(1000, 0), "unknown");
}

TEST(LabelsTest, AreSpelledAsTheApiHasThem) {
  EXPECT_STREQ(SERVICE_LBL[20], "SERVICE_PORTILTERING_DELETE_ONE_REQ");
  EXPECT_STREQ(GATEWAY_LBL[75], "GATEWAY_POWERSAVE_MODE_GET_RESP");
  EXPECT_STREQ(NETWORK_LBL[7], NETWORK_LBL[57]);
  EXPECT_STREQ(NETWORK_LBL[56], "NETWORK_LAN_IPV6_RESTOREDEFAULT_REQ");
}

}  // namespace
