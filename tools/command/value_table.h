// Values of a document as a table.
#ifndef HEARTH_TOOLS_COMMAND_VALUE_TABLE_H
#define HEARTH_TOOLS_COMMAND_VALUE_TABLE_H

#include <string>
#include <vector>

#include "hearth/kit/handle.h"
#include "tools/terminal/report.h"

namespace hearth::tool {

// A row for each of the values; an array among them has a row for each of its elements. The columns
// are the paths given, or else all members that any of the objects has. Throws a Failure for a
// column that is no path.
[[nodiscard]] Report tableOf(View values, const std::vector<std::string>& columns);

}  // namespace hearth::tool

#endif
