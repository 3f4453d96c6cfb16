// The four steps by which a backend starts hearth, and a look at the files after the day's work.
#include <hearth/kit.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "chapters.h"

namespace {

bool nothingIsLoaded(const LOCALDB_HANDLER& handler) {
  return std::all_of(std::begin(handler.state), std::end(handler.state),
                     [](LOCALDB_STATE_T state) { return state == LDB_NOT_INITIALIZED; });
}

// Makes a change that changes nothing.
bool saveUnchanged(API_TYPE_T area) {
  hearth::Result<hearth::Change> change = hearth::Change::begin(area, "");
  return change && change->commit();
}

void conformsToItsSchema(Story& story, API_TYPE_T area) {
  hearth::ValidateOptions options;
  options.isStrict = true;
  const hearth::Result<hearth::AreaLock> database = hearth::AreaLock::take(area, "");
  const bool conforms = database && hearth::validateDatabase(*database, area, options);
  story.check(conforms, "the " + std::string(*hearth::areaName(area)) +
                            " database, as it now is, conforms to " +
                            *hearth::databaseSchemaFile(area));
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
  story.tell("A commit without a change leaves a file as it was, to the last byte.");
  for (int index = API_GATEWAY; index <= API_MISC; ++index) {
    const auto area = static_cast<API_TYPE_T>(index);
    const std::string file = LocalDbCtrl::getFileName(area);
    const std::string before = contentOf(file.c_str());
    const bool saved = saveUnchanged(area);
    story.check(saved && !before.empty() && contentOf(file.c_str()) == before, file);
    conformsToItsSchema(story, area);
  }
}
