#include "tools/document/database_check.h"

#include "tools/document/area.h"
#include "tools/document/schema_check.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {

void refuseBreakingSchema(unsigned int area, TreeMapObject& database, const std::string& subject,
                          const std::string& otherwise) {
  const std::string schema = databaseSchemaFile(area);
  if (!exists(schema)) {
    complain("note: area " + std::string(API_DATA_DIR[area]) + " has no schema of its database (" +
             inQuotes(schema) + "): not checked");
    return;
  }
  const Verdict verdict = checkAgainst(database, schema);
  if (!verdict.conforms) {
    throw Failure(Exit::kViolation, subject + " " + verdict.text() + "; " + otherwise,
                  verdict.broken());
  }
}

}  // namespace hearth::tool
