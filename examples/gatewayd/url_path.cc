#include "url_path.h"

#include <algorithm>

namespace {

constexpr std::size_t kMostSegments = 24;
constexpr std::size_t kLongestIndex = 6;

bool isIndex(const std::string& segment) {
  return segment.size() <= kLongestIndex &&
         std::all_of(segment.begin(), segment.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isPlain(const std::string& segment) {
  return !segment.empty() && segment[0] != '[' && segment.find('.') == std::string::npos &&
         segment.find('\0') == std::string::npos;
}

}  // namespace

std::optional<std::vector<std::string>> splitSegments(const std::string& rest) {
  std::vector<std::string> segments;
  for (std::size_t start = 0; start < rest.size();) {
    const std::size_t end = std::min(rest.find('/', start), rest.size());
    segments.push_back(rest.substr(start, end - start));
    if (!isPlain(segments.back()) || segments.size() > kMostSegments) {
      return std::nullopt;
    }
    start = end + 1;
  }
  return segments;
}

Target findTarget(hearth::View database, const std::vector<std::string>& segments) {
  Target target;
  target.kind = Target::Kind::kRoot;
  for (const std::string& segment : segments) {
    const hearth::View container =
        target.kind == Target::Kind::kFree ? hearth::View() : hearth::find(database, target.path);
    bool isThere = false;
    if (container.isObject()) {
      isThere = json_object_object_get_ex(container.raw(), segment.c_str(), nullptr) != 0;
    } else if (container.isArray() && isIndex(segment)) {
      const std::size_t length = hearth::elements(container).size();
      const auto index = static_cast<std::size_t>(std::stoi(segment));
      if (index > length) {
        return {};
      }
      isThere = index < length;
    } else {
      return {};
    }
    target.path += target.path.empty() ? "" : ".";
    target.path += container.isObject() ? segment : "[" + segment + "]";
    target.kind = isThere ? Target::Kind::kValue : Target::Kind::kFree;
  }
  return target;
}
