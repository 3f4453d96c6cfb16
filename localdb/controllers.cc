// The public map of handlers by session key. registry.cc works on it; it stands apart because the
// file that defines it is compiled in its own way.
#include "base/undestroyed.h"
#include "hearth/local_db_ctrl.h"

namespace hearth {

// Threads that outlive main still lock and save, so the map is never destroyed.
HEARTH_UNDESTROYED_MEMBER("11LocalDbCtrl11controllers", controllers,
                          std::map<std::string, LOCALDB_HANDLER*>);

}  // namespace hearth
