#include "schema/format.h"

namespace hearth {
namespace schema {

bool hasFormat(std::string_view, std::string_view, Workshop&) { return true; }

}  // namespace schema
}  // namespace hearth
