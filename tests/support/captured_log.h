// Log lines as test observables.
#ifndef HEARTH_TESTS_SUPPORT_CAPTURED_LOG_H
#define HEARTH_TESTS_SUPPORT_CAPTURED_LOG_H

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "hearth/be_config.h"
#include "hearth/logger.h"

// Catches standard output while it lives, with the library's lines of the severities given let
// through and nothing written to a file. The group and its padding are taken off the lines:
// "DEBUG: getJObj: ...".
class CapturedLog {
 public:
  static std::vector<LOG_TYPE_T> all() { return {LOG_INFO, LOG_WARNING, LOG_DEBUG, LOG_ERROR}; }

  explicit CapturedLog(const std::vector<LOG_TYPE_T>& severities = all()) {
    Logger::mask = 1U << LOG_GROUP_UTIL;
    Logger::enableFileLog = 0;
    for (int32_t* const enabled : switches()) {
      *enabled = 0;
    }
    for (const LOG_TYPE_T severity : severities) {
      *switches()[static_cast<std::size_t>(severity)] = 1;
    }
    testing::internal::CaptureStdout();
  }

  ~CapturedLog() {
    text();
    Logger::mask = 0;
    for (int32_t* const enabled : switches()) {
      *enabled = 1;
    }
  }

  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  // Ends the capture.
  const std::string& text() {
    if (!taken_) {
      taken_ = true;
      text_ = testing::internal::GetCapturedStdout();
      const std::string head = "UTIL          |";
      for (std::size_t at = 0; (at = text_.find(head, at)) != std::string::npos;) {
        text_.erase(at, head.size());
        text_.erase(at, text_[at] == ' ' ? 1 : 0);
      }
    }
    return text_;
  }

  bool has(const std::string& part) { return text().find(part) != std::string::npos; }

 private:
  // In the order of LOG_TYPE_T.
  static std::array<int32_t*, 4> switches() {
    return {&BEConfig::LOG_INFO_ENABLE, &BEConfig::LOG_WARNING_ENABLE, &BEConfig::LOG_DEBUG_ENABLE,
            &BEConfig::LOG_ERROR_ENABLE};
  }

  bool taken_ = false;
  std::string text_;
};

#endif
