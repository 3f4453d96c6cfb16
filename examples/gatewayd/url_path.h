// From the path of a URL to a path in a database.
//
// /api/v1/wifi/radios/0/networks/1/ssid stands for "radios.[0].networks.[1].ssid" in the wifi area:
// a segment of digits is an index where the database has an array. What hearth's path language
// cannot say (a name with a dot, an empty one, one that begins with a bracket) is refused here, so
// that no client text reaches the library that could mean anything else.
#ifndef HEARTH_EXAMPLES_GATEWAYD_URL_PATH_H
#define HEARTH_EXAMPLES_GATEWAYD_URL_PATH_H

#include <hearth/kit.h>

#include <optional>
#include <string>
#include <vector>

// The segments of the rest of a URL, with their escapes undone; none when one of them cannot be
// part of a path: also one that is no UTF-8, or has a NUL or another control character.
std::optional<std::vector<std::string>> splitSegments(const std::string& rest);

// Where the segments lead in a database.
struct Target {
  enum class Kind {
    kNothing,  // not even a container
    kRoot,     // the database itself
    kValue,    // a value that is there
    kFree      // its container is there, and a value could be put into it
  };
  Kind kind = Kind::kNothing;
  std::string path;  // as hearth writes it
};
Target findTarget(hearth::View database, const std::vector<std::string>& segments);

#endif
