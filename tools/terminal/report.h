// Rows that a person reads as a table and a program as a JSON array of objects.
#ifndef HEARTH_TOOLS_TERMINAL_REPORT_H
#define HEARTH_TOOLS_TERMINAL_REPORT_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "tools/terminal/output.h"

namespace hearth::tool {

// No value, a switch, a number or a text; and how the table shows it.
struct Cell {
  Cell() = default;
  Cell(bool yes) : value(yes) {}                              // NOLINT(*-explicit-*)
  Cell(int64_t number) : value(number), ink(Ink::kNumber) {}  // NOLINT(*-explicit-*)
  Cell(std::string text, Ink textInk = Ink::kPlain) : value(std::move(text)), ink(textInk) {}
  Cell(const char* text) : value(std::string(text)) {}  // NOLINT(*-explicit-*)

  std::variant<std::monostate, bool, int64_t, std::string> value;
  Ink ink = Ink::kPlain;
};

class Report {
 public:
  explicit Report(std::vector<const char*> columnNames) : names_(std::move(columnNames)) {}

  // As many cells as there are columns.
  void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  bool isEmpty() const { return rows_.empty(); }

  void print(Output& out, bool asJson) const;

 private:
  void printTable(Output& out) const;
  void printJson(Output& out) const;

  const std::vector<const char*> names_;
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace hearth::tool

#endif
