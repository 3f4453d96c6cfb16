// import and export: the commands that replace a whole database and write one out.
//
// Both check the database against AREA_SCHEMA.ldb, where the area has one, before anything is
// written. Import does not load what is there, so it also replaces a database that is broken.
#include <sys/stat.h>

#include "hearth/local_db_ctrl.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/database_check.h"
#include "tools/document/fingerprint.h"
#include "tools/document/folder_lock.h"
#include "tools/document/history.h"
#include "tools/document/input.h"
#include "tools/document/loaded_file.h"
#include "tools/store/resemblance.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/question.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct TransferOptions {
  std::string area;
  std::string file = "-";
  bool noSchema = false;
  bool yes = false;
};

constexpr char kOtherwise[] = "nothing is written, --no-schema writes all the same";

// A document in the wrong place passes where the area has no schema, so its look is asked as well.
void refuseOthersDocument(const std::string& name, json_object* document, unsigned int area) {
  const std::string other = otherAreaLike(document, area);
  const std::string question =
      name + " looks like a database of area " + other + ", not " + API_DATA_DIR[area];
  if (!other.empty() && !ask(question + ": import it all the same?")) {
    throw Failure(Exit::kNo, question + "; nothing is written, --yes writes all the same");
  }
}

// The database's secrets are not to be read by more people than before.
void narrow(const std::string& file, mode_t mode) {
  struct stat status {};
  if (stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
      (status.st_mode & 0777U & ~mode) != 0) {
    chmod(file.c_str(), status.st_mode & mode);
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
    refuseBreakingSchema(area, *database, name, kOtherwise);
  }
  if (!options.yes) {
    refuseOthersDocument(name, database->jobj, area);
  }
  // Saved as a file and not as an area, which would have to be loaded first.
  const std::string file = databaseFile(area);
  const FolderLock lock(file);
  KeptFile kept(file, fingerprintOf(View(database->jobj)));
  saveAs(file, *database);
  kept.replaced();
}

// Goes through the library's load, so what is exported is what the backend would work with. A file
// is saved as the library saves; standard output gets JSON for people.
void exportArea(Context& context, const TransferOptions& options) {
  const unsigned int area = areaOf(options.area);
  const LoadedFile document{AreaOrFile(API_DATA_DIR[area])};
  if (!options.noSchema) {
    refuseBreakingSchema(area, document.handle(), inQuotes(options.area), kOtherwise);
  }
  if (options.file == "-") {
    context.out.line(jsonText(document.root(), context.out));
    return;
  }
  struct stat status {};
  const mode_t mode =
      stat(databaseFile(area).c_str(), &status) == 0 ? status.st_mode & 0777U : 0600U;
  const MadeWithMode made(mode);
  narrow(options.file, mode);
  saveAs(options.file, document.handle());
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
  const auto importing = addCommand<TransferOptions>(
      app, context, "import",
      "Replace an area's database by a document, in one step\n\n"
      "What is there need not be readable, so this also repairs a broken database. It is kept\n"
      "for 'hearth undo'.",
      "  hearth import wifi backup.json\n  ssh gateway hearth export wifi | "
      "hearth import wifi -",
      importArea);
  addTransfer(importing, "the new database, - for standard input", true);
  importing.app->add_flag("--yes", importing.options.yes,
                          "although it looks like another area's database");
  addTransfer(addCommand<TransferOptions>(app, context, "export",
                                          "Write an area's database to a file or standard output",
                                          "  hearth export wifi backup.json", exportArea),
              "replaced in one step; standard output without it", false);
}

}  // namespace hearth::tool
