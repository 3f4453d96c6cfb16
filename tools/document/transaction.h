// Several commands as one: while a transaction exists, what the commands of this process load and
// save of the areas is in memory alone. Its commit checks each area that was changed, as a save of
// it would, and then saves them all; without a commit nothing has happened.
//
// Commands need not know of it: LoadedFile and FolderLock ask whether there is one.
#ifndef HEARTH_TOOLS_DOCUMENT_TRANSACTION_H
#define HEARTH_TOOLS_DOCUMENT_TRANSACTION_H

#include <map>
#include <string>

#include "tools/document/folder_lock.h"
#include "tools/document/input.h"
#include "tools/document/loaded_file.h"

namespace hearth::tool {

// An area as the transaction sees it.
struct StagedArea {
  std::string text;  // of the file, when it was loaded
  Handle document;
  bool isChanged = false;
  SaveOptions options;  // of all saves together
};

class Transaction {
 public:
  // Becomes the one of the process; there must be none. Takes the store's lock, and finishes first
  // what was interrupted.
  Transaction();
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  // The transaction that the process is in; null outside of one.
  static Transaction* current();

  // The area, loaded at its first use and locked from then on.
  StagedArea& area(unsigned int area);

  // Holds the lock of the file's folder to the end of the transaction.
  void lock(const std::string& file);

  // Throws a Failure for the first area that was changed and must not be saved.
  void check() const;

  // Checks and saves what was changed. Throws a Failure, with every file as it was, when an area
  // must not or cannot be saved. The documents of the transaction are gone then.
  void commit();

  const std::map<unsigned int, StagedArea>& areas() const { return areas_; }

 private:
  FolderLock store_;
  std::map<std::string, FolderLock> locks_;  // by the folder
  std::map<unsigned int, StagedArea> areas_;
};

}  // namespace hearth::tool

#endif
