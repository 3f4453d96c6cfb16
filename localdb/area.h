// The range of the API areas.
#ifndef HEARTH_LOCALDB_AREA_H
#define HEARTH_LOCALDB_AREA_H

#include <iterator>

#include "hearth/local_db_ctrl.h"

namespace hearth {

constexpr unsigned int kAreaCount = std::size(API_DATA_DIR);

// Stands in a log line where a file has no name.
constexpr char kNoName[] = "(none)";

}  // namespace hearth

#endif
