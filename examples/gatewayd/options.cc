#include "options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char kUsage[] =
    "usage: gatewayd --data FOLDER [--config FILE] [--pages FOLDER] [--port N]\n"
    "                [--tls-cert FILE --tls-key FILE] [--origin https://NAME]\n"
    "\n"
    "Serves the databases of a gateway to a browser on this machine (127.0.0.1 only).\n"
    "\n"
    "  --data FOLDER    the working directory: databases in FOLDER/data, log and login records\n"
    "  --config FILE    the configuration file (default: data/gateway.conf in that folder)\n"
    "  --pages FOLDER   the web pages (default: www below the folder of the sources)\n"
    "  --port N         default 8080; 0 takes a free one\n"
    "  --tls-cert FILE, --tls-key FILE\n"
    "                   serve https with this certificate and key, PEM\n"
    "  --origin URL     the origin that browsers see where a server in front brings them here\n"
    "\n"
    "As long as the user \"admin\" has no password of their own, the environment variable\n"
    "GATEWAYD_PASSWORD holds one for this run; without it one is made and printed.\n";

struct Option {
  const char* name;
  std::string Options::*value;
};

constexpr Option kOptions[] = {
    {"--data", &Options::data},   {"--config", &Options::config},
    {"--pages", &Options::pages}, {"--tls-cert", &Options::certificate},
    {"--tls-key", &Options::key}, {"--origin", &Options::origin},
};

[[noreturn]] void refuse() {
  std::fputs(kUsage, stderr);
  std::exit(exit_status::kUsage);
}

int portFrom(const std::string& text) {
  const bool isNumber =
      !text.empty() && text.size() <= 5 && text.find_first_not_of("0123456789") == text.npos;
  const int port = isNumber ? std::atoi(text.c_str()) : -1;
  if (port < 0 || port > 65535) {
    stop(exit_status::kUsage, "the port is no number from 0 to 65535");
  }
  return port;
}

// False for an option that there is not.
bool readOption(Options& options, const std::string& name, const char* value) {
  if (name == "--port") {
    options.port = portFrom(value);
    return true;
  }
  for (const Option& option : kOptions) {
    if (name == option.name) {
      options.*option.value = value;
      return true;
    }
  }
  return false;
}

}  // namespace

void stop(int status, const std::string& problem) {
  std::fprintf(stderr, "gatewayd: %s\n", problem.c_str());
  std::exit(status);
}

Options readOptions(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; i += 2) {
    const std::string name = arguments[i];
    if (name == "--help") {
      std::fputs(kUsage, stdout);
      std::exit(EXIT_SUCCESS);
    }
    if (i + 1 == count || !readOption(options, name, arguments[i + 1])) {
      refuse();
    }
  }
  if (options.data.empty() || options.certificate.empty() != options.key.empty()) {
    refuse();
  }
  if (!options.origin.empty() && options.origin.rfind("https://", 0) != 0) {
    stop(exit_status::kUsage, "the origin does not begin with https://");
  }
  return options;
}
