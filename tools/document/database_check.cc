#include "tools/document/database_check.h"

#include "tools/document/area.h"
#include "tools/document/schema_check.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {

bool refuseBreakingSchema(unsigned int area, TreeMapObject& database, const std::string& subject,
                          const std::string& otherwise) {
  const std::string schema = databaseSchemaFile(area);
  if (!exists(schema)) {
    return false;
  }
  const Verdict verdict = checkAgainst(database, schema);
  if (!verdict.conforms) {
    throw Failure(Exit::kViolation, subject + " " + verdict.text() + "; " + otherwise,
                  verdict.broken());
  }
  return true;
}

void noteUnguarded(unsigned int area) {
  complain("note: area " + std::string(API_DATA_DIR[area]) + " has no schema of its database (" +
           inQuotes(databaseSchemaFile(area)) + "): not checked");
}

}  // namespace hearth::tool
