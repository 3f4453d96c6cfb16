// init, backup and restore: the commands that work on a whole store.
//
// A backup holds the databases of all areas, which are what an operator has configured. Schemas and
// messages come with the backend's own release, so they are neither saved nor brought back: a
// restored database is checked against the schema of the store that takes it.
#include <algorithm>
#include <filesystem>

#include "hearth/be_config.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/database_check.h"
#include "tools/document/folder_lock.h"
#include "tools/document/input.h"
#include "tools/document/loaded_file.h"
#include "tools/document/replacement.h"
#include "tools/document/snapshot.h"
#include "tools/store/folders.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/progress.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct StoreOptions {
  std::string name;
  std::string from;
  bool sample = false;
  bool noSchema = false;
};

std::string folderOf(unsigned int area) {
  return std::string(BEConfig::DATA_LOCATION) + "/" + API_DATA_DIR[area];
}

// Commands that edit, and backends that use the kit, wait until all databases have been read, so
// the backup is of one moment.
void backup(Context& context, const StoreOptions&) {
  Progress progress("reading");
  std::vector<FolderLock> locks;
  for (unsigned int area = 0; area < areaNames().size(); ++area) {
    if (exists(databaseFile(area))) {
      locks.push_back(FolderLock::alone(databaseFile(area)));
    }
  }
  if (hasInterrupted()) {
    throw Failure(Exit::kConflict,
                  "a change of several areas was interrupted: 'hearth batch --resume' finishes it");
  }
  const Snapshot snapshot = readStore(BEConfig::DATA_LOCATION,
                                      [&](unsigned int area) { progress.at(databaseFile(area)); });
  if (snapshot.empty()) {
    throw Failure(Exit::kIo, inQuotes(BEConfig::DATA_LOCATION) + ": holds no database of any area");
  }
  context.out.line(jsonText(jsonOf(snapshot, "backup")->jobj, context.out));
}

// "gateway, wifi"
std::string listOf(const std::vector<unsigned int>& areas) {
  std::string list;
  for (const unsigned int area : areas) {
    list += (list.empty() ? "" : ", ") + std::string(API_DATA_DIR[area]);
  }
  return list;
}

// All databases are checked before the first folder is made.
void checkAll(const Snapshot& snapshot, const std::string& name) {
  Progress progress("checking");
  std::vector<unsigned int> unguarded;
  for (const StoredDatabase& database : snapshot) {
    progress.at(API_DATA_DIR[database.area]);
    if (!refuseBreakingSchema(database.area, *database.document,
                              name + ": the area " + API_DATA_DIR[database.area],
                              "nothing is restored, --no-schema restores all the same")) {
      unguarded.push_back(database.area);
    }
  }
  if (!unguarded.empty()) {
    Context::note("no schema here checks " + listOf(unguarded));
  }
}

// What the backup has no database for stays as it is.
void noteOthers(const Snapshot& snapshot) {
  std::vector<unsigned int> others;
  for (unsigned int area = 0; area < areaNames().size(); ++area) {
    const bool isRestored =
        std::any_of(snapshot.begin(), snapshot.end(),
                    [&](const StoredDatabase& database) { return database.area == area; });
    if (!isRestored && exists(databaseFile(area))) {
      others.push_back(area);
    }
  }
  if (!others.empty()) {
    Context::note("not in the backup, and left as they are: " + listOf(others));
  }
}

void restore(Context& context, const StoreOptions& options) {
  const std::string name = options.name == "-" ? "standard input" : inQuotes(options.name);
  Snapshot snapshot = readSnapshot(readJson(options.name)->jobj, "backup", name);
  if (!options.noSchema) {
    checkAll(snapshot, name);
  }
  noteOthers(snapshot);
  for (const StoredDatabase& database : snapshot) {
    static_cast<void>(databaseFile(database.area));  // a name that is too long ends it here
    makeFolder(folderOf(database.area));
  }
  if (hasInterrupted()) {
    finishInterrupted(false);
  }
  const FolderLock store = lockStore();
  std::vector<FolderLock> locks;
  for (const StoredDatabase& database : snapshot) {
    locks.push_back(FolderLock::alone(databaseFile(database.area)));
  }
  const std::size_t all = snapshot.size();
  replaceDatabases(snapshot);
  context.out.line(counted(snapshot.size(), "area") + " restored, " +
                   std::to_string(all - snapshot.size()) + " as in the backup already");
}

// The .ldb files of an area, and nothing that is hidden.
std::size_t copyArea(const std::string& from, const std::string& to) {
  std::size_t made = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(from, error)) {
    const std::filesystem::path& file = entry.path();
    if (file.extension() == ".ldb" && file.filename().string().front() != '.') {
      made += makeFile(to + "/" + file.filename().string(), readWhole(file.string())) ? 1U : 0U;
    }
  }
  return made;
}

// Nothing that is there is touched, so an init that was interrupted is repeated.
void init(Context& context, const StoreOptions& options) {
  const std::string from = options.sample ? HEARTH_SAMPLE_STORE : options.from;
  std::size_t made = 0;
  if (!from.empty() && !exists(from)) {
    throw Failure(Exit::kIo, inQuotes(from) + ": no such store" +
                                 (options.sample ? "; it comes with hearth's documentation" : ""));
  }
  // A database may hold secrets one day; the sample's files are as open as any.
  const MadeWithMode mode(from.empty() ? 0600 : 0644);
  for (const std::string& area : areaNames()) {
    const std::filesystem::path folder = std::filesystem::path(options.name) / area;
    makeFolder(folder.string());
    if (from.empty()) {
      made += makeFile((folder / area).string() + ".ldb", "{}") ? 1U : 0U;
    } else {
      made += copyArea((std::filesystem::path(from) / area).string(), folder.string());
    }
  }
  context.out.line(counted(made, "file") + " made in " + inQuotes(options.name));
}

}  // namespace

void addStoreCommands(CLI::App& app, Context& context) {
  addCommand<StoreOptions>(
      app, context, "backup",
      "Write the databases of all areas to standard output, as one JSON document\n\n"
      "Schemas and messages belong to the backend's release and are left out. The backup holds\n"
      "every secret of the store: keep it as the store is kept.",
      "  (umask 077; hearth backup >backup.json)\n  hearth diff backup.json data", backup);

  const auto restoring = addCommand<StoreOptions>(
      app, context, "restore",
      "Put the databases of a backup in place, all of them or none\n\n"
      "Folders that are missing are made. Every database is checked against the schema that the\n"
      "store has for it. What is replaced is kept for 'hearth undo'.",
      "  hearth --data /data/gateway restore backup.json\n"
      "  ssh old-gateway hearth backup | hearth restore -",
      restore);
  restoring.app->add_option("FILE", restoring.options.name, "the backup, - for standard input")
      ->required();
  restoring.app->add_flag("--no-schema", restoring.options.noSchema,
                          "although a database does not conform to its schema");

  const auto making = addCommand<StoreOptions>(
      app, context, "init",
      "Make a store: a folder and an empty database for each area\n\n"
      "Files that are there already are left as they are.",
      "  hearth init data\n  hearth init --sample data     the sample gateway\n"
      "  hearth init --from /mnt/other/data data",
      init);
  making.app->add_option("DIR", making.options.name, "the data location")->required();
  CLI::Option* const from = making.app->add_option(
      "--from", making.options.from, "copy the databases, messages and schemas of this store");
  from->type_name("DIR");
  making.app->add_flag("--sample", making.options.sample, "copy those of the sample gateway")
      ->excludes(from);
}

}  // namespace hearth::tool
