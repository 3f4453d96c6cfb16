// The former files of a database: what it held before each of the last changes that the command
// made.
//
// A former file is the very file that was replaced, under a second name (a hard link) in the folder
// .history beside the database: nothing is copied or written, it keeps its bytes, mode and owner,
// and it is there whole or not at all. Its name says all that is known of the change:
//
//   .history/wifi.ldb.12.1764000000.9f3c2a10aabbccdd
//            the file  | the time   the fingerprint of the document that took its place
//                      number of the change
//
// The backend never looks into that folder. A former file is kept only when the command makes the
// change, at most HEARTH_HISTORY of them (10; 0 keeps none). Where the device runs out of room they
// are the first to go.
#ifndef HEARTH_TOOLS_DOCUMENT_HISTORY_H
#define HEARTH_TOOLS_DOCUMENT_HISTORY_H

#include <cstdint>
#include <string>
#include <vector>

namespace hearth::tool {

struct FormerFile {
  unsigned long number;  // of the change that replaced it
  int64_t time;          // of the change, in seconds since 1970
  std::string after;     // fingerprint of the document that took its place
  std::string file;
};

// The former files of a database, oldest first.
[[nodiscard]] std::vector<FormerFile> formerFiles(const std::string& file);

// Keeps the file that a save is about to replace. To be made under the folder's lock, before the
// save; without a call of replaced() the former file is given up again.
class KeptFile {
 public:
  // `after` is the fingerprint of the new document. Says in a note when the file cannot be kept.
  // Does nothing where there is no file yet.
  KeptFile(const std::string& file, const std::string& after);
  ~KeptFile();
  KeptFile(KeptFile&& other) noexcept;
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;

  bool isKept() const { return !former_.empty(); }

  // The save has taken place. Gives up former files beyond the most that are kept.
  void replaced();

 private:
  std::string file_;
  std::string former_;  // empty when nothing is kept
  bool isReplaced_ = false;
};

}  // namespace hearth::tool

#endif
