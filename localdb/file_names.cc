// Forms the names of database, message and schema files. No other file does.
//
// A name lies in a buffer that belongs to one operation in one thread. So it stays as it is while
// other threads form theirs, and a document's name stays while its schema's is formed.
#include <cstdio>

#include "hearth/local_db_ctrl.h"
#include "labels/label_table.h"
#include "localdb/area.h"
#include "log/library_log.h"

const char* const API_DATA_DIR[8] = {"gateway", "wifi",       "network", "security",
                                     "service", "mediashare", "qos",     "misc"};

namespace hearth {
namespace {

constexpr char kGetFileName[] = "getFileName";

struct NameBuffer {
  char text[256];
};

// Writes "<location>/<area>/<stem><suffix>". Answers null, with a log line, for a name that does
// not fit: a cut name could be another file's.
const char* formName(const char* operation, NameBuffer& buffer, const char* areaDir,
                     const char* stem, const char* suffix) {
  constexpr int kSize = sizeof(buffer.text);
  const char* const location = BEConfig::DATA_LOCATION.c_str();
  const int length =
      std::snprintf(buffer.text, kSize, "%s/%s/%s%s", location, areaDir, stem, suffix);
  if (length < 0 || length >= kSize) {
    HEARTH_LOG(LOG_ERROR, "%s: the name of %s/%s%s is longer than %d characters\n", operation,
               areaDir, stem, suffix, kSize - 1);
    return nullptr;
  }
  return buffer.text;
}

// The stem of a message's files is its label. An area without labels, as API_MISC, has no such
// files and says so by a null without a line; an area out of range has had its line already.
const char* formMessageName(const char* operation, NameBuffer& buffer, unsigned int area,
                            unsigned int message, const char* suffix) {
  const char* const areaDir = LocalDbCtrl::getApiDir(area);
  const LabelTable labels = labelTable(area);
  if (labels.rows == nullptr) {
    return nullptr;
  }
  const char* const label = labels.at(message);
  if (label == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: area %u has no message %u\n", operation, area, message);
    return nullptr;
  }
  return formName(operation, buffer, areaDir, label, suffix);
}

}  // namespace
}  // namespace hearth

const char* LocalDbCtrl::getApiDir(unsigned int apiT) {
  if (apiT >= hearth::kAreaCount) {
    HEARTH_LOG(LOG_ERROR, "%s: there is no area %u\n", "getApiDir", apiT);
    return nullptr;
  }
  return API_DATA_DIR[apiT];
}

const char* LocalDbCtrl::getFileName(unsigned int apiT) {
  static thread_local hearth::NameBuffer buffer;
  const char* const areaDir = getApiDir(apiT);
  return areaDir == nullptr
             ? nullptr
             : hearth::formName(hearth::kGetFileName, buffer, areaDir, areaDir, ".ldb");
}

const char* LocalDbCtrl::getFileName(unsigned int apiT, unsigned int commT) {
  static thread_local hearth::NameBuffer buffer;
  return hearth::formMessageName(hearth::kGetFileName, buffer, apiT, commT, ".ldb");
}

const char* LocalDbCtrl::getSchemaFile(unsigned int apiT, unsigned int commT) {
  static thread_local hearth::NameBuffer buffer;
  return hearth::formMessageName("getSchemaFile", buffer, apiT, commT, "_SCHEMA.ldb");
}
