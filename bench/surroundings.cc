#include "bench/surroundings.h"

#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "bench/bench.h"
#include "bench/documents.h"
#include "hearth/be_config.h"
#include "hearth/local_db_ctrl.h"
#include "hearth/logger.h"

namespace bench {

void startDatabase(int sessions) {
  BEConfig::DATA_LOCATION = fileIn("data");
  mkdir(BEConfig::DATA_LOCATION.c_str(), 0755);
  for (unsigned int area = API_GATEWAY; area <= API_MISC; ++area) {
    mkdir((BEConfig::DATA_LOCATION + "/" + API_DATA_DIR[area]).c_str(), 0755);
    writeFile(LocalDbCtrl::getFileName(area), area == API_WIFI ? gatewayText() : "{}");
  }
  LocalDbCtrl::init();
  for (int i = 0; i < sessions; ++i) {
    LocalDbCtrl::cloneNewDB(("session-" + std::to_string(i)).c_str());
  }
}

LogSwitches::LogSwitches(Target target) {
  for (int32_t* const severity : {&BEConfig::LOG_INFO_ENABLE, &BEConfig::LOG_WARNING_ENABLE,
                                  &BEConfig::LOG_DEBUG_ENABLE, &BEConfig::LOG_ERROR_ENABLE}) {
    *severity = 1;
  }
  BEConfig::LOG_FILE = fileIn("log");
  unlink(BEConfig::LOG_FILE.c_str());
  Logger::enableFileLog = target == kFileAndConsole ? 1 : 0;
  Logger::setGroup(LOG_GROUP_UTIL, true);
}

LogSwitches::~LogSwitches() {
  Logger::setGroup(LOG_GROUP_UTIL, false);
}

}  // namespace bench
