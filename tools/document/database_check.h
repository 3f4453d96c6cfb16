// The question before a database is saved: does it conform to the schema that stands beside it?
#ifndef HEARTH_TOOLS_DOCUMENT_DATABASE_CHECK_H
#define HEARTH_TOOLS_DOCUMENT_DATABASE_CHECK_H

#include <string>

#include "hearth/tree_map_object.h"

namespace hearth::tool {

// Throws a Failure when the database does not conform to its area's AREA_SCHEMA.ldb: "SUBJECT does
// not conform: ...; OTHERWISE". An area without a schema gets a note that nothing guards it.
void refuseBreakingSchema(unsigned int area, TreeMapObject& database, const std::string& subject,
                          const std::string& otherwise);

}  // namespace hearth::tool

#endif
