// gatewayd: a backend in miniature. It shows the order in which a backend starts hearth and what a
// request does with it; it listens on the loopback interface only.
#include <httplib.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "http_api.h"

namespace {

constexpr char kUsage[] =
    "usage: gatewayd --data FOLDER [--config FILE] [--pages FOLDER] [--port N]\n"
    "\n"
    "Serves the databases of a gateway to a browser on this machine (127.0.0.1 only).\n"
    "\n"
    "  --data FOLDER   the working directory: databases in FOLDER/data, log and login records\n"
    "  --config FILE   the configuration file (default: data/gateway.conf in that folder)\n"
    "  --pages FOLDER  the web pages (default: www below the folder of the sources)\n"
    "  --port N        default 8080; 0 takes a free one\n"
    "\n"
    "The password of the user \"admin\" is made anew at every start and printed once, unless the\n"
    "environment variable GATEWAYD_PASSWORD holds one.\n";

struct Options {
  std::string data;
  std::string config = "data/gateway.conf";
  std::string pages = GATEWAYD_PAGES;
  int port = 8080;
};

[[noreturn]] void stop(const std::string& problem) {
  std::fprintf(stderr, "gatewayd: %s\n", problem.c_str());
  std::exit(EXIT_FAILURE);
}

Options readOptions(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; i += 2) {
    const std::string name = arguments[i];
    if (name == "--help" || i + 1 == count) {
      std::fputs(kUsage, name == "--help" ? stdout : stderr);
      std::exit(name == "--help" ? EXIT_SUCCESS : 2);
    }
    const char* const value = arguments[i + 1];
    if (name == "--data") {
      options.data = value;
    } else if (name == "--config") {
      options.config = value;
    } else if (name == "--pages") {
      options.pages = value;
    } else if (name == "--port") {
      options.port = std::atoi(value);
    } else {
      std::fputs(kUsage, stderr);
      std::exit(2);
    }
  }
  if (options.data.empty() || options.port < 0 || options.port > 65535) {
    std::fputs(kUsage, stderr);
    std::exit(2);
  }
  return options;
}

httplib::Server* running = nullptr;

void endServing(int) {
  running->stop();
}

std::string passwordOfThisRun() {
  const char* const given = std::getenv("GATEWAYD_PASSWORD");
  std::string password = given != nullptr ? given : randomSecret();
  if (password.size() < 8 || password.size() > 64) {
    stop("a password has 8 to 64 characters");
  }
  return password;
}

}  // namespace

int main(int count, char** arguments) {
  const Options options = readOptions(count, arguments);
  const std::string password = passwordOfThisRun();
  char* const pages = realpath(options.pages.c_str(), nullptr);
  if (pages == nullptr || chdir(options.data.c_str()) != 0) {
    stop(std::string("cannot enter a folder: ") + std::strerror(errno));
  }

  // hearth's start-up order: settings, logger, databases. It prints its lines on standard output
  // too, so what a person should read goes to standard error.
  BEConfig::init(options.config.c_str());
  Logger::init();
  LocalDbCtrl::init();

  httplib::Server server;
  SessionStore sessions(BEConfig::MULTIDB_MODE_ENABLE != 0,
                        std::chrono::seconds(BEConfig::AUTH_EXPIRATION));
  Login login(sessions, "admin", password);
  HttpApi api(sessions, login);
  if (!api.serve(server, pages)) {
    stop(std::string("no pages in ") + pages);
  }
  std::free(pages);
  const int port = options.port == 0
                       ? server.bind_to_any_port("127.0.0.1")
                       : (server.bind_to_port("127.0.0.1", options.port) ? options.port : -1);
  if (port < 0) {
    stop("cannot listen on port " + std::to_string(options.port) + " of 127.0.0.1");
  }
  running = &server;
  std::signal(SIGINT, endServing);
  std::signal(SIGTERM, endServing);
  std::fprintf(stderr, "gatewayd: http://127.0.0.1:%d/ (this machine only), user admin%s%s\n", port,
               std::getenv("GATEWAYD_PASSWORD") == nullptr ? ", password " : "",
               std::getenv("GATEWAYD_PASSWORD") == nullptr ? password.c_str() : "");
  Logger::print(LOG_INFO, LOG_GROUP_WSL, "gatewayd listens on port %d\n", port);
  server.listen_after_bind();
  Logger::print(LOG_INFO, LOG_GROUP_WSL, "gatewayd stops\n");
  return EXIT_SUCCESS;
}
