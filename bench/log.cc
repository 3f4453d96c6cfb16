// Log lines: written, and filtered out.
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstdio>

#include "bench/bench.h"
#include "bench/floor.h"
#include "bench/surroundings.h"
#include "hearth/logger.h"
#include "log/library_log.h"

namespace bench {
namespace {

constexpr char kFormat[] = "%s: locked area %d for session %s\n";
constexpr char kLineFormat[] = "%-14s|%5s: %s: locked area %d for session %s\n";

using Switches = std::shared_ptr<LogSwitches>;

Switches switchedOn() {
  return std::make_shared<LogSwitches>(LogSwitches::kFileAndConsole);
}

void addWritten() {
  addCase("logline/floor", [] {
    return [path = fileIn("log")] {
      char line[1024];
      const int size = snprintf(line, sizeof(line), kLineFormat, "UTIL", "INFO", "lock", 1, "1234");
      appendByHand(path.c_str(), line, static_cast<size_t>(size));
      return fwrite(line, 1, static_cast<size_t>(size), stdout);
    };
  });
  addCase("logline/hearth", [] {
    return [on = switchedOn()] {
      Logger::print(LOG_INFO, LOG_GROUP_UTIL, kFormat, "lock", 1, "1234");
      return 0;
    };
  });
  addCase("logline/fopen", [] {
    return [path = fileIn("log")] {
      FILE* const file = fopen(path.c_str(), "a");
      fprintf(file, kLineFormat, "UTIL", "INFO", "lock", 1, "1234");
      fclose(file);
      return printf(kLineFormat, "UTIL", "INFO", "lock", 1, "1234");
    };
  });
  // Keeps its file open, and writes no console.
  addCase("logline/spdlog", [] {
    auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(fileIn("spdlog"));
    auto logger = std::make_shared<spdlog::logger>("UTIL", sink);
    logger->set_pattern("%-14n|%5l: %v");
    logger->flush_on(spdlog::level::info);
    return [logger] {
      logger->info("{}: locked area {} for session {}", "lock", 1, "1234");
      return 0;
    };
  });
}

void addFiltered() {
  addCase("filtered_inside/floor", [] {
    return [] {
      if ((hearth::relaxedLoad(Logger::mask) & 1U) != 0) {
        Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, kFormat, "lock", 1, "1234");
      }
      return 0;
    };
  });
  addCase("filtered_inside/hearth", [] {
    return [] {
      HEARTH_LOG(LOG_DEBUG, kFormat, "lock", 1, "1234");
      return 0;
    };
  });
  addCase("filtered_outside/floor", [] {
    return [] {
      if ((hearth::relaxedLoad(Logger::mask) & 1U) != 0) {
        Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, kFormat, "lock", 1, "1234");
      }
      return 0;
    };
  });
  addCase("filtered_outside/hearth", [] {
    return [] {
      Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, kFormat, "lock", 1, "1234");
      return 0;
    };
  });
  addCase("filtered_outside/spdlog", [] {
    auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(fileIn("spdlog"));
    auto logger = std::make_shared<spdlog::logger>("UTIL", sink);
    logger->set_level(spdlog::level::off);
    return [logger] {
      logger->debug("{}: locked area {} for session {}", "lock", 1, "1234");
      return 0;
    };
  });
}

}  // namespace

void addLogCases() {
  addWritten();
  addFiltered();
}

}  // namespace bench
