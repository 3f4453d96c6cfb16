// A table's columns are as wide as their widest cell, two blanks apart; the last one is not filled
// up. Where that is wider than the terminal, the widest columns give way, and what is cut in them
// ends in an ellipsis. Widths are of the text alone: the codes for colours take no room.
#include "tools/terminal/report.h"

#include <algorithm>

#include "hearth/tree_map_object.h"
#include "tools/terminal/characters.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr std::size_t kGap = 2;

// The cell in a table. Escaped, so that a value from a file, which may hold anything, neither
// breaks the line nor drives the terminal.
std::string shown(const Cell& cell) {
  if (const auto* const yes = std::get_if<bool>(&cell.value); yes != nullptr) {
    return *yes ? "yes" : "-";
  }
  if (const auto* const number = std::get_if<int64_t>(&cell.value); number != nullptr) {
    return std::to_string(*number);
  }
  const auto* const text = std::get_if<std::string>(&cell.value);
  return text == nullptr ? "-" : escaped(*text, Escapes::kTerminal);
}

// The cell in JSON, for the caller to own. No value is null there.
json_object* jsonOf(const Cell& cell) {
  if (const auto* const yes = std::get_if<bool>(&cell.value); yes != nullptr) {
    return json_object_new_boolean(*yes ? 1 : 0);
  }
  if (const auto* const number = std::get_if<int64_t>(&cell.value); number != nullptr) {
    return json_object_new_int64(*number);
  }
  const auto* const text = std::get_if<std::string>(&cell.value);
  return text == nullptr ? nullptr
                         : json_object_new_string_len(text->data(), static_cast<int>(text->size()));
}

}  // namespace

void Report::print(Output& out, bool asJson) const {
  if (asJson) {
    printJson(out);
  } else {
    printTable(out);
  }
}

// The widest column of those that can give way does, one by one, until the line has room. A column
// of a few letters says nothing any more, so a line of many columns may stay too wide.
void Report::fit(std::vector<std::size_t>& widths, std::size_t room) {
  constexpr std::size_t kNarrowest = 8;
  std::size_t sum = kGap * (widths.size() - 1);
  for (const std::size_t width : widths) {
    sum += width;
  }
  for (; sum > room; --sum) {
    const auto widest = std::max_element(widths.begin(), widths.end());
    if (*widest <= kNarrowest) {
      return;
    }
    --*widest;
  }
}

// Two passes over the rows: the first measures the columns, the second prints.
void Report::printTable(Output& out) const {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    std::size_t widest = width(escaped(names_[i], Escapes::kTerminal));
    for (const std::vector<Cell>& row : rows_) {
      widest = std::max(widest, width(shown(row[i])));
    }
    widths.push_back(widest);
  }
  fit(widths, out.columns());
  // Names and rows are printed alike: both are texts and inks by column.
  const auto line = [&](const auto& textAt, const auto& inkAt) {
    std::string text;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      const std::string cell = cutTo(textAt(i), widths[i]);
      text += out.inked(inkAt(i), cell);
      if (i + 1 < names_.size()) {
        text.append(widths[i] - width(cell) + kGap, ' ');
      }
    }
    out.line(text);
  };
  line([&](std::size_t i) { return escaped(names_[i], Escapes::kTerminal); },
       [](std::size_t) { return Ink::kFaint; });
  for (const std::vector<Cell>& row : rows_) {
    line([&](std::size_t i) { return shown(row[i]); }, [&](std::size_t i) { return row[i].ink; });
  }
}

// The array takes each object over, and an object each value.
void Report::printJson(Output& out) const {
  TreeMapObject array(true);
  for (const std::vector<Cell>& row : rows_) {
    json_object* const object = json_object_new_object();
    for (std::size_t i = 0; i < names_.size(); ++i) {
      json_object_object_add(object, names_[i].c_str(), jsonOf(row[i]));
    }
    json_object_array_add(array.jobj, object);
  }
  out.line(jsonText(array.jobj, out));
}

}  // namespace hearth::tool
