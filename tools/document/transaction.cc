#include "tools/document/transaction.h"

#include "hearth/local_db_ctrl.h"
#include "tools/document/area.h"
#include "tools/document/replacement.h"

namespace hearth::tool {
namespace {

Transaction* currentTransaction = nullptr;

// What is interrupted is finished before the store's lock is taken, for that takes it too.
FolderLock lockFinishedStore() {
  if (hasInterrupted()) {
    finishInterrupted(false);
  }
  return lockStore();
}

}  // namespace

Transaction::Transaction() : store_(lockFinishedStore()) {
  currentTransaction = this;
}

Transaction::~Transaction() {
  currentTransaction = nullptr;
}

Transaction* Transaction::current() {
  return currentTransaction;
}

StagedArea& Transaction::area(unsigned int area) {
  const auto found = areas_.find(area);
  if (found != areas_.end()) {
    return found->second;
  }
  const std::string file = databaseFile(area);
  lock(file);
  StagedArea staged;
  staged.text = readWhole(file);
  staged.document = parse(staged.text, file);
  return areas_.emplace(area, std::move(staged)).first->second;
}

void Transaction::lock(const std::string& file) {
  const std::string folder = file.substr(0, file.rfind('/') + 1);
  if (locks_.count(folder) == 0) {
    locks_.emplace(folder, FolderLock::alone(file));
  }
}

void Transaction::check() const {
  for (const auto& [area, staged] : areas_) {
    if (staged.isChanged) {
      LoadedFile(AreaOrFile(API_DATA_DIR[area])).check(staged.options);
    }
  }
}

void Transaction::commit() {
  check();
  Snapshot changed;
  for (auto& [area, staged] : areas_) {
    if (staged.isChanged) {
      StoredDatabase database;
      database.area = area;
      database.document = std::move(staged.document);
      database.mode = modeOf(databaseFile(area));
      changed.push_back(std::move(database));
    }
  }
  replaceDatabases(changed);
}

}  // namespace hearth::tool
