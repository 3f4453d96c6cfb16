// Finds the label table of an area, and the label of a message in it.
#include <iterator>

#include "hearth/labels.h"
#include "labels/label_table.h"

namespace hearth {
namespace {

template <unsigned int kCount>
constexpr LabelTable table(const char* const (&rows)[kCount]) {
  return {rows, kCount};
}

// In the order of the area numbers.
constexpr LabelTable kTables[] = {
    table(GATEWAY_LBL), table(WIFI_LBL),       table(NETWORK_LBL), table(SECURITY_LBL),
    table(SERVICE_LBL), table(MEDIASHARE_LBL), table(QOS_LBL),
};

}  // namespace

LabelTable labelTable(unsigned int area) {
  return area < std::size(kTables) ? kTables[area] : LabelTable{nullptr, 0};
}

}  // namespace hearth

const char* COMM_LABEL(unsigned int apiT, unsigned int commT) {
  const char* const label = hearth::labelTable(apiT).at(commT);
  return label != nullptr ? label : "unknown";
}
