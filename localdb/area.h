// The number of API areas, and the word that stands for a missing file name in a log line.
#ifndef HEARTH_LOCALDB_AREA_H
#define HEARTH_LOCALDB_AREA_H

#include <iterator>

#include "hearth/local_db_ctrl.h"

namespace hearth {

constexpr unsigned int kAreaCount = std::size(API_DATA_DIR);

constexpr char kNoName[] = "(none)";

}  // namespace hearth

#endif
