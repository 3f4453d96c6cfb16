// Replaces the databases of several areas, all of them or none.
//
// Each database is replaced in one step, but two are two steps. So before the first one, the new
// documents are written to a note in the data location, .hearth-change.json. From then on the
// change will happen: whoever finds the note where nobody is at work finishes what it says. When
// all databases are in place the note goes.
#ifndef HEARTH_TOOLS_DOCUMENT_REPLACEMENT_H
#define HEARTH_TOOLS_DOCUMENT_REPLACEMENT_H

#include "tools/document/folder_lock.h"
#include "tools/document/snapshot.h"

namespace hearth::tool {

// The right to change several areas of the data location. Taken before the lock of any area.
[[nodiscard]] FolderLock lockStore();

// Puts the databases in place, and keeps the former files (history.h). Those that say what is in
// place already are left alone and taken out of the snapshot.
// Throws a Failure with all files as they were; should that be impossible, with the note in place,
// which the text then says. Requires: lockStore, and the lock of each area's folder.
void replaceDatabases(Snapshot& snapshot);

// True when a change of several areas is under way, or was interrupted.
[[nodiscard]] bool hasInterrupted();

// Finishes the change that was interrupted, if there is one, and says so in a note. Throws a
// Failure when a database was changed meanwhile, unless `force` is set: then it is overwritten.
void finishInterrupted(bool force);

// Gives up the rest of the change that was interrupted. False when there is none.
bool dropInterrupted();

}  // namespace hearth::tool

#endif
