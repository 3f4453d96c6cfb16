// A path on the first line and a document behind it: reading and writing there agree with the
// model.
#include <algorithm>
#include <cstdint>

#include "fuzz/fuzz.h"
#include "tests/json/path/path_check.h"

namespace {

// Behind a path that brings no document of its own.
constexpr char kUsual[] =
    R"({"a":{"b":[1,null,{"c":2}],"":0},"b":[[0],[]],"[0]":{"a":1},"n":null})";

fuzz::JsonRef parse(const std::string& text) {
  fuzz::JsonRef document(json_tokener_parse(text.c_str()));
  return document != nullptr ? std::move(document) : fuzz::JsonRef(json_tokener_parse(kUsual));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = input.find('\n');
  const std::string path = input.substr(0, std::min(end, input.find('\0')));
  const std::string text = end == std::string::npos ? "" : input.substr(end + 1);
  const fuzz::JsonRef document = parse(text);
  const std::string read = readingDiffers(document.get(), path);
  fuzz::claim(read.empty(), "reading agrees with the model:", read);
  const std::string written = writingDiffers(parse(text).release(), path);
  fuzz::claim(written.empty(), "writing agrees with the model:", written);
  return 0;
}
