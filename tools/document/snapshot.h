// Several databases as one JSON document: the format of a backup, and of the note that a change of
// several areas leaves behind until it is done.
//
//   {"hearth": "backup", "version": 1, "made": "2025-07-01T12:00:00Z",
//    "areas": {"wifi": {"mode": "0600", "document": {...}}, ...},
//    "checksum": "9f3c2a10aabbccdd"}
//
// A database that a member cannot hold (nested too deeply for one more level, comments, whatever
// else a parser drops) stands there as "text", byte by byte, instead of "document". The checksum is
// the fingerprint of "areas".
#ifndef HEARTH_TOOLS_DOCUMENT_SNAPSHOT_H
#define HEARTH_TOOLS_DOCUMENT_SNAPSHOT_H

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "tools/document/input.h"

namespace hearth::tool {

struct StoredDatabase {
  unsigned int area = 0;
  Handle document;
  std::string text;    // of the file; empty where the document says it all
  mode_t mode = 0;     // the file's permissions; 0 where they are not known
  std::string before;  // fingerprint of what it is to replace; empty for nothing

  [[nodiscard]] std::string fingerprint() const;
};

using Snapshot = std::vector<StoredDatabase>;  // in the order of the areas

// The databases below a data location; areas without one are left out. Calls `step` before each
// area. Throws a Failure for a file that cannot be read or parsed.
[[nodiscard]] Snapshot readStore(const std::string& location,
                                 const std::function<void(unsigned int area)>& step);

// What a snapshot is for: "backup", or "change" for one that is on its way.
[[nodiscard]] Handle jsonOf(const Snapshot& snapshot, const char* kind);

// Whether the document is a snapshot of this kind, whole or damaged.
[[nodiscard]] bool isSnapshot(json_object* root, const char* kind);

// The databases in a snapshot. Throws a Failure, with the name, for another kind or version, a
// checksum that does not fit, an area that is unknown, or a database that is none.
[[nodiscard]] Snapshot readSnapshot(json_object* root, const char* kind, const std::string& name);

}  // namespace hearth::tool

#endif
