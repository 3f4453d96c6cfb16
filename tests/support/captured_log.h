// Turns log lines, handles and values into texts, which tests compare.
#ifndef HEARTH_TESTS_SUPPORT_CAPTURED_LOG_H
#define HEARTH_TESTS_SUPPORT_CAPTURED_LOG_H

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/json_ref.h"
#include "hearth/be_config.h"
#include "hearth/logger.h"
#include "hearth/tree_map_object.h"

using Handle = std::unique_ptr<TreeMapObject>;

// A value from its text, and a value's or a handle's text on one line.
inline hearth::JsonRef parse(const std::string& text) {
  return hearth::JsonRef(json_tokener_parse(text.c_str()));
}
inline std::string plain(json_object* value) {
  return json_object_to_json_string_ext(value, JSON_C_TO_STRING_PLAIN);
}
inline std::string plain(const TreeMapObject& handle) {
  return plain(handle.jobj);
}

// The text with every occurrence of a part replaced.
inline std::string replaced(std::string text, const std::string& part, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += by.size()) {
    text.replace(at, part.size(), by);
  }
  return text;
}

// The switches of the severities, in the order of LOG_TYPE_T.
inline std::array<int32_t*, 4> logSwitches() {
  return {&BEConfig::LOG_INFO_ENABLE, &BEConfig::LOG_WARNING_ENABLE, &BEConfig::LOG_DEBUG_ENABLE,
          &BEConfig::LOG_ERROR_ENABLE};
}

// Catches standard output while it lives. The library logs the given severities only, and nothing
// to a file. In the text, the group and its padding are taken off the lines, and an address is PTR:
// "DEBUG: ~TreeMapObject: this=PTR".
class CapturedLog {
 public:
  static std::vector<LOG_TYPE_T> all() { return {LOG_INFO, LOG_WARNING, LOG_DEBUG, LOG_ERROR}; }

  explicit CapturedLog(const std::vector<LOG_TYPE_T>& severities = all()) {
    Logger::mask = 1U << LOG_GROUP_UTIL;
    Logger::enableFileLog = 0;
    for (int32_t* const enabled : logSwitches()) {
      *enabled = 0;
    }
    for (const LOG_TYPE_T severity : severities) {
      *logSwitches()[static_cast<std::size_t>(severity)] = 1;
    }
    testing::internal::CaptureStdout();
  }

  ~CapturedLog() {
    text();
    for (int32_t* const enabled : logSwitches()) {
      *enabled = 1;
    }
  }

  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  // Ends the capture and answers what was written.
  const std::string& text() {
    if (!isTaken_) {
      isTaken_ = true;
      Logger::mask = 0;
      text_ = replaced(testing::internal::GetCapturedStdout(), "UTIL          |", "\1");
      text_ = replaced(replaced(text_, "\1 ", ""), "\1", "");
      for (std::size_t at = 0; (at = text_.find("0x", at)) != std::string::npos;) {
        text_.replace(at, text_.find_first_not_of("0123456789abcdef", at + 2) - at, "PTR");
      }
    }
    return text_;
  }

  bool has(const std::string& part) { return text().find(part) != std::string::npos; }

 private:
  bool isTaken_ = false;
  std::string text_;
};

// Does the work and answers the lines that it logs.
inline std::string linesOf(const std::function<void()>& work,
                           const std::vector<LOG_TYPE_T>& severities = CapturedLog::all()) {
  CapturedLog log(severities);
  work();
  return log.text();
}

#endif
