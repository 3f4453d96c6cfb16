// Scalars stand in their cells as `get` prints them; of objects and arrays only the size does,
// {3} or [2]. A value that is no object has the one column "value".
#include "tools/command/value_table.h"

#include <algorithm>

#include "hearth/kit/walk.h"
#include "tools/document/places.h"

namespace hearth::tool {
namespace {

constexpr char kLone[] = "value";  // the column of what is no object

std::vector<View> rowsOf(View values) {
  std::vector<View> rows;
  for (const View value : elements(values)) {
    if (!value.isArray()) {
      rows.push_back(value);
    }
    for (const View element : elements(value)) {
      rows.push_back(element);
    }
  }
  return rows;
}

// The names of all members, in the order in which they come up.
std::vector<std::string> namesIn(const std::vector<View>& rows) {
  std::vector<std::string> names;
  const auto addOnce = [&names](std::string name) {
    if (std::count(names.begin(), names.end(), name) == 0) {
      names.push_back(std::move(name));
    }
  };
  for (const View row : rows) {
    if (!row.isObject()) {
      addOnce(kLone);
    }
    for (const Member& member : members(row)) {
      addOnce(std::string(member.name));
    }
  }
  return names;
}

Cell cellOf(View value) {
  switch (value.type()) {
    case json_type_null:
      return {};
    case json_type_object:
      return Cell("{" + std::to_string(members(value).size()) + "}", Ink::kFaint);
    case json_type_array:
      return Cell("[" + std::to_string(elements(value).size()) + "]", Ink::kFaint);
    case json_type_string:
      return printed(value.raw());
    default:
      return Cell(printed(value.raw()), Ink::kNumber);
  }
}

// The member of this name, which may hold dots; of what is no object, the value itself.
Cell memberCell(View row, const std::string& name) {
  if (!row.isObject()) {
    return name == kLone ? cellOf(row) : Cell();
  }
  json_object* member = nullptr;
  json_object_object_get_ex(row.raw(), name.c_str(), &member);
  return cellOf(View(member));
}

}  // namespace

Report tableOf(View values, const std::vector<std::string>& columns) {
  const std::vector<View> rows = rowsOf(values);
  const std::vector<std::string> names = columns.empty() ? namesIn(rows) : columns;
  const std::vector<Path> paths(columns.begin(), columns.end());
  Report report(names);
  for (const View row : rows) {
    std::vector<Cell> cells;
    for (std::size_t i = 0; i < names.size(); ++i) {
      PathEnd end{};
      const bool isThere = !columns.empty() && find(row.raw(), paths[i], end);
      cells.push_back(columns.empty() ? memberCell(row, names[i])
                                      : cellOf(View(isThere ? end.value : nullptr)));
    }
    report.add(std::move(cells));
  }
  return report;
}

}  // namespace hearth::tool
