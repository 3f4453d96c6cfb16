// A backend's two requests with the installed kit: one that is made, and one that is told why not.
#include <hearth/kit.h>

#include <cstdio>

int main() {
  BEConfig::init("data/gateway.conf");
  LocalDbCtrl::init();
  hearth::Result<hearth::Change> good = hearth::Change::begin(API_WIFI, "radios.[0]");
  const bool isMade = good && good->set("channel", 11).commit();
  hearth::Result<hearth::Change> bad = hearth::Change::begin(API_WIFI, "radios.[0]");
  const hearth::Failure failure = bad ? bad->set("channel", 999).commit().failure() : bad.failure();
  std::printf("%s\n", failure.sentence.c_str());
  return isMade && failure.fault == hearth::Fault::kRefused ? 0 : 1;
}
