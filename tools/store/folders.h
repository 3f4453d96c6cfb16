// Makes folders and files of a store that are missing.
#ifndef HEARTH_TOOLS_STORE_FOLDERS_H
#define HEARTH_TOOLS_STORE_FOLDERS_H

#include <string>

namespace hearth::tool {

// Makes the folder, and those above it, as far as they are missing; they survive a power cut.
// Throws a Failure that names the one that cannot be made.
void makeFolder(const std::string& path);

// Makes the file with this text, in one step. False, with nothing done, when there is one already.
// Throws a Failure when it cannot be made.
bool makeFile(const std::string& file, const std::string& text);

}  // namespace hearth::tool

#endif
