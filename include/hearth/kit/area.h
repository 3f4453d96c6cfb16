// Areas and messages by name and by number. What is not there is std::nullopt, never a text such as
// "unknown".
//
// Threads: any.
// Ownership: a name that is answered is constant and lives as long as the process.
// Cost: a message is sought from row to row, at most 174 of them.
#ifndef HEARTH_KIT_AREA_H
#define HEARTH_KIT_AREA_H

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "hearth/kit/result.h"
#include "hearth/kit/text.h"
#include "hearth/labels.h"
#include "hearth/local_db_ctrl.h"

namespace hearth {
namespace detail {

struct Labels {
  const char* const* rows;
  std::size_t count;
};

// Empty for an area without messages.
inline Labels labelsOf(unsigned int area) {
  const Labels tables[] = {
      {GATEWAY_LBL, std::size(GATEWAY_LBL)}, {WIFI_LBL, std::size(WIFI_LBL)},
      {NETWORK_LBL, std::size(NETWORK_LBL)}, {SECURITY_LBL, std::size(SECURITY_LBL)},
      {SERVICE_LBL, std::size(SERVICE_LBL)}, {MEDIASHARE_LBL, std::size(MEDIASHARE_LBL)},
      {QOS_LBL, std::size(QOS_LBL)},
  };
  return area < std::size(tables) ? tables[area] : Labels{nullptr, 0};
}

inline Failure noArea(unsigned int area) {
  return failure(Fault::kNoArea, "there is no area " + std::to_string(area));
}

}  // namespace detail

// The area with this number.
inline std::optional<API_TYPE_T> areaNumbered(unsigned int number) {
  if (number >= std::size(API_DATA_DIR)) {
    return std::nullopt;
  }
  return static_cast<API_TYPE_T>(number);
}

// The area with this name, "wifi".
inline std::optional<API_TYPE_T> areaNamed(Text name) {
  for (unsigned int number = 0; number < std::size(API_DATA_DIR); ++number) {
    if (name.view() == API_DATA_DIR[number]) {
      return static_cast<API_TYPE_T>(number);
    }
  }
  return std::nullopt;
}

// The area's name, which is also that of its folder.
inline std::optional<std::string_view> areaName(unsigned int area) {
  if (area >= std::size(API_DATA_DIR)) {
    return std::nullopt;
  }
  return API_DATA_DIR[area];
}

// The row of the message with this label: the message index that LocalDbCtrl takes. The first one
// when the label stands twice.
inline std::optional<unsigned int> messageRow(unsigned int area, Text label) {
  const detail::Labels labels = detail::labelsOf(area);
  for (std::size_t row = 0; row < labels.count; ++row) {
    if (label.view() == labels.rows[row]) {
      return static_cast<unsigned int>(row);
    }
  }
  return std::nullopt;
}

// The label of the message in this row.
inline std::optional<std::string_view> messageLabel(unsigned int area, unsigned int row) {
  const detail::Labels labels = detail::labelsOf(area);
  if (row >= labels.count) {
    return std::nullopt;
  }
  return labels.rows[row];
}

// How many messages the area has; 0 also for an area that is not there.
inline unsigned int messageCount(unsigned int area) {
  return static_cast<unsigned int>(detail::labelsOf(area).count);
}

// The file of the area's database, and of the schema of a whole database:
// "<location>/<area>/<area>.ldb" and "<location>/<area>/<area>_SCHEMA.ldb". Whether they exist is
// another question. Nothing when the area is out of range or the name longer than 255 characters.
inline std::optional<std::string> databaseFile(unsigned int area) {
  const char* const name = LocalDbCtrl::getFileName(area);
  return name != nullptr ? std::optional<std::string>(name) : std::nullopt;
}
inline std::optional<std::string> databaseSchemaFile(unsigned int area) {
  std::optional<std::string> name = databaseFile(area);
  if (name) {
    name->insert(name->rfind('.'), "_SCHEMA");
  }
  return name;
}

}  // namespace hearth

#endif
