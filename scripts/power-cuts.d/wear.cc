// The program in the guest that shows what a change costs the flash: it changes one number in a
// store of the sample's size COUNT times, each time kept by a flush, in one of the ways that a
// backend has. With a COUNT of 0 it only makes what the others change.
//
//   wear hearth|in-place|DELETE|WAL DIR COUNT     the last two: SQLite, with this journal
#include <fcntl.h>
#include <hearth/hearth.h>
#include <json-c/json.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

namespace {

constexpr char kFile[] = "data/wifi/wifi.ldb";
constexpr char kPath[] = "radios.[0].channel";

bool byHearth(int count) {
  BEConfig::init("data/gateway.conf");
  LocalDbCtrl::init();
  bool isSaved = true;
  for (int i = 0; isSaved && i < count; ++i) {
    TreeMapObject* const wifi = LocalDbCtrl::lockDbObject(API_WIFI, "", "default");
    wifi->set(kPath, i);
    isSaved = LocalDbCtrl::saveDbObject(API_WIFI, "default") == 0;
  }
  return isSaved;
}

// The file is cut to nothing and written anew; a cut in between loses it.
bool inPlace(int count) {
  const std::unique_ptr<TreeMapObject> wifi(JsonData::createObjectFromFile(kFile));
  bool isSaved = true;
  for (int i = 0; isSaved && i < count; ++i) {
    wifi->set(kPath, i);
    const int file = open(kFile, O_WRONLY | O_TRUNC | O_CLOEXEC);
    isSaved = json_object_to_fd(file, wifi->jobj, JSON_C_TO_STRING_PRETTY) == 0 && fsync(file) == 0;
    close(file);
  }
  return isSaved;
}

// A row for each line of the same document.
bool fill(const std::function<bool(const std::string&)>& run) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(kFile, "re"), fclose);
  bool isDone = run("CREATE TABLE value(path TEXT PRIMARY KEY, text TEXT); BEGIN;");
  char line[512];
  for (int i = 0; isDone && fgets(line, sizeof(line), file.get()) != nullptr; ++i) {
    char* const text = sqlite3_mprintf("INSERT INTO value VALUES('path.%d', %Q)", i, line);
    isDone = run(text);
    sqlite3_free(text);
  }
  return isDone && run("COMMIT;");
}

bool bySqlite(int count, const std::string& journal) {
  sqlite3* database = nullptr;
  bool isDone = sqlite3_open("store.db", &database) == SQLITE_OK;
  const auto run = [&](const std::string& statement) {
    return sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  };
  isDone = isDone && run("PRAGMA synchronous=FULL; PRAGMA journal_mode=" + journal + ";") &&
           (count > 0 || fill(run));
  for (int i = 0; isDone && i < count; ++i) {
    isDone = run("UPDATE value SET text='" + std::to_string(i) + "' WHERE path='path.9'");
  }
  return sqlite3_close(database) == SQLITE_OK && isDone;
}

}  // namespace

int main(int, char** words) {
  const std::string writer = words[1];
  const int count = std::atoi(words[3]);
  return chdir(words[2]) == 0 && (writer == "hearth"     ? byHearth(count)
                                  : writer == "in-place" ? inPlace(count)
                                                         : bySqlite(count, writer))
             ? EXIT_SUCCESS
             : EXIT_FAILURE;
}
