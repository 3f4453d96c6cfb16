// Gives the label tables by area number.
#ifndef HEARTH_LABELS_LABEL_TABLE_H
#define HEARTH_LABELS_LABEL_TABLE_H

namespace hearth {

struct LabelTable {
  const char* const* rows;  // null for an area without a table
  unsigned int count;

  // The label of a row; null past the end.
  const char* at(unsigned int row) const { return row < count ? rows[row] : nullptr; }
};

// The table of an area. An area that has none gets one without rows. Threads: any.
[[nodiscard]] LabelTable labelTable(unsigned int area);

}  // namespace hearth

#endif
