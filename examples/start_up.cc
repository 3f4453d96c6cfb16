// The four steps by which a backend starts hearth, and a look at the files after the day's work.
#include <algorithm>
#include <filesystem>
#include <iterator>

#include "backend.h"
#include "chapters.h"

namespace {

bool nothingIsLoaded(const LOCALDB_HANDLER& handler) {
  return std::all_of(std::begin(handler.state), std::end(handler.state),
                     [](LOCALDB_STATE_T state) { return state == LDB_NOT_INITIALIZED; });
}

// Locks an area and saves it without a change.
bool saveUnchanged(API_TYPE_T area) {
  AreaLock database(area, "", kDefaultSession);
  return database && database.save();
}

void conformsToItsSchema(Story& story, API_TYPE_T area) {
  const std::string name = LocalDbCtrl::getApiDir(area);
  const std::string schema = BEConfig::DATA_LOCATION + "/" + name + "/" + name + "_SCHEMA.ldb";
  const bool conforms = std::filesystem::exists(schema) &&
                        JsonData::validateFile(LocalDbCtrl::getFileName(area), schema.c_str()) == 0;
  story.check(conforms, "the " + name + " database, as it now is, conforms to " + schema);
}

}  // namespace

void startUp(Story& story) {
  story.chapter("The backend starts");
  story.tell("Step 1, the library is loaded: the settings have their built-in values.");
  story.check(!BEConfig::isInit && BEConfig::WEBSERVER_PORTS == "8081,8082",
              "the web server's ports are \"8081,8082\"");
  story.check(Logger::mask == 0, "nothing is logged yet");

  story.tell("Step 2, BEConfig::init reads data/gateway.conf.");
  BEConfig::init("data/gateway.conf");
  story.check(BEConfig::WEBSERVER_PORTS == "8081,8443", "the ports are now \"8081,8443\"");
  story.check(BEConfig::AUTH_EXPIRATION == 30 * 60, "a session of 30 minutes is 1800 seconds");
  story.check(BELoginRecord::isRunning, "the login attempt records are running");

  story.tell("Step 3, Logger::init: mask and log file follow the settings.");
  Logger::init();
  Logger::print(LOG_INFO, LOG_GROUP_WSL, "the backend is starting\n");
  story.check(
      contentOf(BEConfig::LOG_FILE.c_str()).find("the backend is starting") != std::string::npos,
      BEConfig::LOG_FILE + " has the backend's first line");

  story.tell("Step 4, LocalDbCtrl::init registers the handler \"default\".");
  LocalDbCtrl::init();
  const LOCALDB_HANDLER* handler = LocalDbCtrl::getDBByKey("default");
  story.check(handler != nullptr && nothingIsLoaded(*handler),
              "it is there, and no database has been read yet");
}

void leaveFilesInOrder(Story& story) {
  story.chapter("The files at the end of the day");
  story.tell("A save without a change leaves a file as it was, to the last byte.");
  for (int index = API_GATEWAY; index <= API_MISC; ++index) {
    const auto area = static_cast<API_TYPE_T>(index);
    const std::string file = LocalDbCtrl::getFileName(area);
    const std::string before = contentOf(file.c_str());
    const bool saved = saveUnchanged(area);
    story.check(saved && !before.empty() && contentOf(file.c_str()) == before, file);
  }
  for (const API_TYPE_T area : {API_WIFI, API_NETWORK, API_SERVICE}) {
    conformsToItsSchema(story, area);
  }
}
