// The web pages, read whole at start: what a request can name is exactly what was there then, and
// no name is ever looked up in the file system for a client.
#ifndef HEARTH_EXAMPLES_GATEWAYD_PAGES_H
#define HEARTH_EXAMPLES_GATEWAYD_PAGES_H

#include <map>
#include <string>

#include "exchange.h"

class Pages {
 public:
  // Reads the files below the folder that have a type of ours; links and hidden files are left out.
  // Failure: false when there is no index.html, or more than the limit.
  [[nodiscard]] bool read(const std::string& folder);

  // The file of a path, "/" for index.html; 404 when there is none.
  Reply answer(const Request& request) const;

 private:
  struct Page {
    const char* type;
    std::string contents;
  };
  std::map<std::string, Page> pages_;  // by path
};

#endif
