#include "schema/metaschemas.h"

namespace hearth {
namespace schema {

bool isMetaschema(std::string_view uri, Draft* draft) {
  struct Row {
    std::string_view start;
    Draft draft;
  };
  static constexpr Row kRows[] = {
      {"json-schema.org/draft-04/schema", Draft::k4},
      {"json-schema.org/draft-06/schema", Draft::k6},
      {"json-schema.org/draft-07/schema", Draft::k7},
      {"json-schema.org/draft/2019-09/", Draft::k2019},
      {"json-schema.org/draft/2020-12/", Draft::k2020},
  };
  const size_t scheme = uri.find("://");
  if (scheme == std::string_view::npos) {
    return false;
  }
  const std::string_view rest = uri.substr(scheme + 3);
  for (const Row& row : kRows) {
    if (rest.substr(0, row.start.size()) == row.start) {
      *draft = row.draft;
      return true;
    }
  }
  return false;
}

json_object* makeMetaschema(Draft) {
  return nullptr;
}

}  // namespace schema
}  // namespace hearth
