// Areas, messages and files by the names that the command line gives them.
#ifndef HEARTH_TOOLS_DOCUMENT_AREA_H
#define HEARTH_TOOLS_DOCUMENT_AREA_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "hearth/local_db_ctrl.h"

namespace hearth::tool {

[[nodiscard]] std::vector<std::string> areaNames();

// Gives the area of this name. False when there is none.
[[nodiscard]] bool findArea(const std::string& name, unsigned int& area);

// The area of this name. Throws a Failure that suggests a name when there is none.
[[nodiscard]] unsigned int areaOf(const std::string& name);

// An area's database, or else a JSON file: what the argument AREA|FILE stands for.
struct AreaOrFile {
  // "wifi" is the area, "./wifi" a file. Throws a Failure for text that is neither.
  explicit AreaOrFile(const std::string& text);

  std::string name;  // as given
  std::string file;
  unsigned int area = 0;  // only where isArea is true
  bool isArea = false;
};

// The area's database file, and the file in which the schema of a whole database may stand. Throws
// a Failure when the data location makes the name too long.
[[nodiscard]] std::string databaseFile(unsigned int area);
[[nodiscard]] std::string databaseSchemaFile(unsigned int area);

// The labels of the area's messages, in the order of their indexes; none for misc.
[[nodiscard]] std::vector<std::string> labelsOf(unsigned int area);

// The index of a message by its label or its number. Throws a Failure that suggests a label.
[[nodiscard]] unsigned int messageOf(unsigned int area, const std::string& text);

[[nodiscard]] bool exists(const std::string& file);

// The permissions of a file, without the bits above them; 0 where there is none.
[[nodiscard]] mode_t modeOf(const std::string& file);

}  // namespace hearth::tool

#endif
