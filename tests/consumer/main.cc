// Uses one thing of every family of the installed library, in every standard from C++11 on, and
// with exceptions switched off.
#include <hearth/hearth.h>

#include <cstdio>
#include <cstring>
#include <memory>

#if HEARTH_VERSION_NUMBER < 10000
#error "hearth/version.h does not say which version this is"
#endif

int main() {
  using Handle = std::unique_ptr<TreeMapObject>;

  const bool initialised = BEConfig::DATA_LOCATION == "./data";
  BEConfig::init("/nonexistent/be.conf");
  Logger::setGroup(LOG_GROUP_UTEST, true);
  Logger::print(LOG_PRINT, LOG_GROUP_UTEST, "uptime %d\n", BEConfig::get_Session_Uptime());
  LocalDbCtrl::init();

  Handle document(JsonData::createObject("{\"radios\":[{\"channel\":1}]}"));
  document->set<int>("radios.[0].channel", 11);
  const bool stored = document->get<int>("radios.[0].channel") == 11;
  const bool valid = JsonData::validateObject(document.get(), "{\"required\":[\"wifi\"]}") == 2;
  const bool named = std::strcmp(COMM_LABEL(API_GATEWAY, 0), GATEWAY_LBL[0]) == 0;
  const bool placed = std::strcmp(LocalDbCtrl::getApiDir(API_MISC), API_DATA_DIR[API_MISC]) == 0;
  const bool stopped = BELoginRecord::getAttempt("192.0.2.1").attempts == 1;

  std::printf("hearth %s: initialised %d, stored %d, valid %d, named %d, placed %d, stopped %d\n",
              HEARTH_VERSION, initialised, stored, valid, named, placed, stopped);
  return initialised && stored && valid && named && placed && stopped ? 0 : 1;
}
