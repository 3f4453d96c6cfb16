// gatewayd: a backend in miniature. It shows the order in which a backend starts hearth and what a
// request does with it; it listens on the loopback interface only.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "api.h"
#include "options.h"
#include "secrets.h"
#include "server.h"

namespace {

std::string absolute(const std::string& file) {
  char* const real = realpath(file.c_str(), nullptr);
  if (real == nullptr) {
    stop(exit_status::kFailure, file + ": " + std::strerror(errno));
  }
  std::string path = real;
  std::free(real);
  return path;
}

std::string contentsOf(const std::string& file) {
  std::string contents;
  char part[4096];
  std::FILE* const opened = std::fopen(file.c_str(), "re");
  if (opened == nullptr) {
    stop(exit_status::kConfiguration, file + ": " + std::strerror(errno));
  }
  for (std::size_t got = 1; got > 0;) {
    got = std::fread(part, 1, sizeof part, opened);
    contents.append(part, got);
  }
  std::fclose(opened);
  return contents;
}

// hearth's start-up order: settings, logger, databases. The library goes on with defaults where
// there is no configuration, and without a limit on log-ins; a gateway must not, so the file is
// looked at first. hearth prints its lines on standard output too, so what a person should read
// goes to standard error.
void startHearth(const std::string& config) {
  const hearth::Result<hearth::Value> settings = hearth::parseFile(config);
  if (!settings) {
    stop(exit_status::kConfiguration,
         "no configuration, no service: " + settings.failure().sentence);
  }
  if (!hearth::View(*settings).isObject()) {
    stop(exit_status::kConfiguration, "no configuration, no service: " + config + " is no object");
  }
  BEConfig::init(config.c_str());
  Logger::init();
  LocalDbCtrl::init();
}

// The password of the first user for this run: that of the environment, or one that is made and
// shown here. Empty when the user has one already.
std::string firstPassword(Users& users) {
  const char* const given = std::getenv("GATEWAYD_PASSWORD");
  const std::string password = given != nullptr ? given : randomSecret();
  if (password.size() < 8 || password.size() > 64) {
    stop(exit_status::kUsage, "a password has 8 to 64 characters");
  }
  users.setFirstPassword(password);
  unsetenv("GATEWAYD_PASSWORD");
  return given == nullptr && users.needsFirstPassword() ? ", password " + password : "";
}

hearth::Session ownSession() {
  const hearth::Result<hearth::Session> session = hearth::Session::open("gatewayd");
  if (!session) {
    stop(exit_status::kFailure, session.failure().sentence);
  }
  return *session;
}

// The signals that end the service. They are blocked before threads exist, so that each thread
// inherits that, and wait here for the main one.
sigset_t blockEnds() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGINT);
  sigaddset(&ends, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  return ends;
}

void serve(Server& server, const Options& options, const Tls& tls, const std::string& password) {
  const sigset_t ends = blockEnds();
  std::string problem;
  const int port = server.start(options.port, tls, problem);
  if (port == 0) {
    stop(exit_status::kFailure,
         "cannot listen on port " + std::to_string(options.port) + " of 127.0.0.1: " + problem);
  }
  std::fprintf(stderr, "gatewayd: %s://127.0.0.1:%d/ (this machine only), user %s%s\n",
               tls.key.empty() ? "http" : "https", port, kFirstUser, password.c_str());
  Logger::print(LOG_INFO, LOG_GROUP_WSL, "gatewayd listens on port %d\n", port);
  int which = 0;
  sigwait(&ends, &which);
  server.stop();
  Logger::print(LOG_INFO, LOG_GROUP_WSL, "gatewayd stops\n");
}

}  // namespace

int main(int count, char** arguments) {
  const Options options = readOptions(count, arguments);
  Pages pages;
  if (!pages.read(absolute(options.pages))) {
    stop(exit_status::kFailure, "no pages in " + options.pages);
  }
  Tls tls;
  if (!options.key.empty()) {
    tls = {contentsOf(options.certificate), contentsOf(options.key)};
  }
  if (chdir(options.data.c_str()) != 0) {
    stop(exit_status::kFailure, options.data + ": " + std::strerror(errno));
  }
  startHearth(options.config);

  SessionStore sessions(BEConfig::MULTIDB_MODE_ENABLE != 0,
                        std::chrono::seconds(BEConfig::AUTH_EXPIRATION));
  Users users(ownSession());
  const std::string password = firstPassword(users);
  Login login(sessions, users, !tls.key.empty() || !options.origin.empty());
  Api api(sessions, users, login, pages, options.origin);
  Server server(api);
  serve(server, options, tls, password);
  return EXIT_SUCCESS;
}
