// A report: rows that a person reads as a table and a program as a JSON array of objects.
#ifndef HEARTH_TOOLS_TERMINAL_REPORT_H
#define HEARTH_TOOLS_TERMINAL_REPORT_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "tools/terminal/output.h"

namespace hearth::tool {

// One value of a row: none, a switch, a number or a text; and the ink that the table shows it in.
// The constructors convert without a word, so that a row is written as a plain list of values.
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
  explicit Report(std::vector<std::string> columnNames) : names_(std::move(columnNames)) {}

  // Adds a row of as many cells as there are columns.
  void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  bool isEmpty() const { return rows_.empty(); }

  // Prints a table with a line of names on top, or JSON with the names as member names.
  void print(Output& out, bool asJson) const;

 private:
  static void fit(std::vector<std::size_t>& widths, std::size_t room);
  void printTable(Output& out) const;
  void printJson(Output& out) const;

  const std::vector<std::string> names_;
  std::vector<std::vector<Cell>> rows_;
};

}  // namespace hearth::tool

#endif
