// import and export: the commands that replace a whole database and write one out.
//
// Both check the database against AREA_SCHEMA.ldb, where the area has one, before anything is
// written. Import does not load what is there, so it also replaces a database that is broken.
#include "hearth/local_db_ctrl.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/folder_lock.h"
#include "tools/document/input.h"
#include "tools/document/loaded_file.h"
#include "tools/document/schema_check.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct TransferOptions {
  std::string area;
  std::string file = "-";
  bool noSchema = false;
};

// Throws a Failure when the database does not conform to the area's schema. An area without one
// gets a note. `name` is what messages call the database.
void checkDatabase(unsigned int area, const std::string& name, TreeMapObject& database) {
  const std::string schema = databaseSchemaFile(area);
  if (!exists(schema)) {
    Context::note("area " + std::string(API_DATA_DIR[area]) + " has no schema of its database (" +
                  inQuotes(schema) + "): not checked");
    return;
  }
  const Verdict verdict = checkAgainst(database, schema);
  if (!verdict.conforms) {
    throw Failure(
        Exit::kViolation,
        name + " " + verdict.text() + "; nothing is written, --no-schema writes all the same",
        verdict.broken());
  }
}

// The new database must be plain JSON, or the save would drop part of it, and an object or an
// array.
void importArea(Context& /*context*/, const TransferOptions& options) {
  const unsigned int area = areaOf(options.area);
  const std::string name = options.file == "-" ? "standard input" : inQuotes(options.file);
  const std::string text = readWhole(options.file);
  const Handle database = parse(text, options.file);
  const std::string whyNot = whyNotPlainJson(text);
  if (!whyNot.empty()) {
    throw Failure(Exit::kIo, name + ": is not plain JSON: " + whyNot);
  }
  if (json_object_is_type(database->jobj, json_type_object) == 0 &&
      json_object_is_type(database->jobj, json_type_array) == 0) {
    throw Failure(Exit::kNo, name + " is " + described(database->jobj) + ", which is no database");
  }
  if (!options.noSchema) {
    checkDatabase(area, name, *database);
  }
  // Saved as a file and not as an area, which would have to be loaded first.
  const std::string file = databaseFile(area);
  const FolderLock lock(file);
  saveAs(file, *database);
}

// Goes through the library's load, so what is exported is what the backend would work with. A file
// is saved as the library saves; standard output gets JSON for people.
void exportArea(Context& context, const TransferOptions& options) {
  const unsigned int area = areaOf(options.area);
  const LoadedFile document{AreaOrFile(API_DATA_DIR[area])};
  if (!options.noSchema) {
    checkDatabase(area, inQuotes(options.area), document.handle());
  }
  if (options.file == "-") {
    context.out.line(jsonText(document.root(), context.out));
  } else {
    saveAs(options.file, document.handle());
  }
}

// Both commands take the same words; only import needs the file.
void addTransfer(const Command<TransferOptions>& command, const char* fileHelp, bool isRequired) {
  command.app->add_option("AREA", command.options.area, "the area")->required();
  command.app->add_option("FILE", command.options.file, fileHelp)->required(isRequired);
  command.app->add_flag("--no-schema", command.options.noSchema,
                        "although it does not conform to AREA_SCHEMA.ldb");
}

}  // namespace

void addTransferCommands(CLI::App& app, Context& context) {
  addTransfer(addCommand<TransferOptions>(
                  app, context, "import",
                  "Replace an area's database by a document, in one step\n\n"
                  "What is there need not be readable, so this also repairs a broken database.",
                  "  hearth import wifi backup.json\n  ssh gateway hearth export wifi | "
                  "hearth import wifi -",
                  importArea),
              "the new database, - for standard input", true);
  addTransfer(addCommand<TransferOptions>(app, context, "export",
                                          "Write an area's database to a file or standard output",
                                          "  hearth export wifi backup.json", exportArea),
              "replaced in one step; standard output without it", false);
}

}  // namespace hearth::tool
