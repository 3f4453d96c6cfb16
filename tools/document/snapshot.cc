// The reader trusts nothing: kind, version, checksum, names and types are looked at before the
// first database is handed out.
#include "tools/document/snapshot.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "base/json_ref.h"
#include "base/utf8.h"
#include "hearth/kit/read.h"
#include "hearth/kit/render.h"
#include "hearth/kit/walk.h"
#include "tools/document/area.h"
#include "tools/document/fingerprint.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr int64_t kVersion = 1;
constexpr int kOwnLevels = 3;  // the snapshot, "areas", the area

bool hasRoomInside(const TreeMapObject& document) {
  return !detail::isNestedDeeperThan(View(document.jobj), detail::kParserLevels - kOwnLevels);
}

// A text that is no UTF-8 would not come back as it was.
StoredDatabase readDatabase(unsigned int area, const std::string& file) {
  StoredDatabase database;
  std::string text = readWhole(file);
  database.area = area;
  database.document = parse(text, file);
  if (!hasRoomInside(*database.document) || !whyNotPlainJson(text).empty()) {
    if (!isUtf8(text)) {
      throw Failure(Exit::kIo, inQuotes(file) + ": is not UTF-8, and JSON cannot hold it");
    }
    database.text = std::move(text);
  }
  database.mode = modeOf(file);
  return database;
}

json_object* jsonOf(const StoredDatabase& database) {
  json_object* const area = json_object_new_object();
  const auto addText = [&](const char* name, const std::string& text) {
    json_object_object_add(area, name,
                           json_object_new_string_len(text.data(), static_cast<int>(text.size())));
  };
  if (database.mode != 0) {
    char mode[16];
    std::snprintf(mode, sizeof(mode), "%04o", static_cast<unsigned int>(database.mode));
    addText("mode", mode);
  }
  if (!database.before.empty()) {
    addText("before", database.before);
  }
  if (database.text.empty()) {
    json_object_object_add(area, "document", json_object_get(database.document->jobj));
  } else {
    addText("text", database.text);
  }
  return area;
}

// A database that is none ends the reading, before anything is written.
StoredDatabase databaseIn(const Member& member, const std::string& name) {
  StoredDatabase database;
  const std::string area(member.name);
  if (!findArea(area, database.area)) {
    throw Failure(Exit::kNo, name + ": holds an area " + inQuotes(area) +
                                 ", which this hearth does " + "not know");
  }
  database.text = getOr(member.value, "text", "");
  database.before = getOr(member.value, "before", "");
  database.mode = static_cast<mode_t>(
      strtoul(std::string(getOr(member.value, "mode", "0")).c_str(), nullptr, 8) & 0777U);
  if (!database.text.empty()) {
    database.document = parse(database.text, name);
  } else {
    database.document =
        std::make_unique<TreeMapObject>(json_object_get(memberOf(member.value.raw(), "document")));
  }
  const View document(database.document->jobj);
  if (!document.isObject() && !document.isArray()) {
    throw Failure(Exit::kNo, name + ": holds no database of the area " + area);
  }
  return database;
}

}  // namespace

std::string StoredDatabase::fingerprint() const {
  return text.empty() ? fingerprintOf(View(document->jobj)) : fingerprintOfText(text);
}

Snapshot readStore(const std::string& location,
                   const std::function<void(unsigned int area)>& step) {
  Snapshot snapshot;
  for (unsigned int area = 0; area < areaNames().size(); ++area) {
    const std::string name = API_DATA_DIR[area];
    const std::string file =
        (std::filesystem::path(location) / name / std::string(name).append(".ldb")).string();
    step(area);
    if (exists(file)) {
      snapshot.push_back(readDatabase(area, file));
    }
  }
  return snapshot;
}

// "kind" stands first, so that a person sees what the file is.
Handle jsonOf(const Snapshot& snapshot, const char* kind) {
  auto whole = std::make_unique<TreeMapObject>(false);
  json_object* const areas = json_object_new_object();
  for (const StoredDatabase& database : snapshot) {
    json_object_object_add(areas, API_DATA_DIR[database.area], jsonOf(database));
  }
  json_object_object_add(whole->jobj, "hearth", json_object_new_string(kind));
  json_object_object_add(whole->jobj, "version", json_object_new_int64(kVersion));
  json_object_object_add(whole->jobj, "made",
                         json_object_new_string(utcText(time(nullptr)).c_str()));
  json_object_object_add(whole->jobj, "areas", areas);
  json_object_object_add(whole->jobj, "checksum",
                         json_object_new_string(fingerprintOf(View(areas)).c_str()));
  return whole;
}

bool isSnapshot(json_object* root, const char* kind) {
  return getOr(View(root), "hearth", "") == kind && find(View(root), "areas").isObject();
}

Snapshot readSnapshot(json_object* root, const char* kind, const std::string& name) {
  const View whole(root);
  if (!isSnapshot(root, kind)) {
    throw Failure(Exit::kNo, name + " is no " + kind + " of hearth");
  }
  const int64_t version = getOr(whole, "version", int64_t{0});
  if (version != kVersion) {
    throw Failure(Exit::kNo, name + " has the version " + std::to_string(version) +
                                 "; this hearth reads version " + std::to_string(kVersion));
  }
  const View areas = find(whole, "areas");
  if (getOr(whole, "checksum", "") != fingerprintOf(areas)) {
    throw Failure(Exit::kNo, name + ": the checksum does not fit: it was damaged or changed");
  }
  Snapshot snapshot;
  for (const Member& member : members(areas)) {
    snapshot.push_back(databaseIn(member, name));
  }
  std::sort(snapshot.begin(), snapshot.end(),
            [](const StoredDatabase& left, const StoredDatabase& right) {
              return left.area < right.area;
            });
  return snapshot;
}

}  // namespace hearth::tool
