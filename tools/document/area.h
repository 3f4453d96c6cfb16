// Areas and messages by name, as the command line gives them.
#ifndef HEARTH_TOOLS_DOCUMENT_AREA_H
#define HEARTH_TOOLS_DOCUMENT_AREA_H

#include <string>
#include <vector>

#include "hearth/local_db_ctrl.h"

namespace hearth::tool {

[[nodiscard]] std::vector<std::string> areaNames();

// False when no area has this name.
[[nodiscard]] bool findArea(const std::string& name, unsigned int& area);

// The same, throwing a Failure that suggests a name.
[[nodiscard]] unsigned int areaOf(const std::string& name);

// The area's database file, and the file in which the schema of a whole database may stand. Throws
// a Failure when the data location makes the name too long.
[[nodiscard]] std::string databaseFile(unsigned int area);
[[nodiscard]] std::string databaseSchemaFile(unsigned int area);

// The labels of the area's messages, in the order of their indexes; none for misc.
[[nodiscard]] std::vector<std::string> labelsOf(unsigned int area);

// The index of a message by its label or its number. Throws a Failure that suggests a label.
[[nodiscard]] unsigned int messageOf(unsigned int area, const std::string& text);

[[nodiscard]] bool exists(const std::string& file);

}  // namespace hearth::tool

#endif
