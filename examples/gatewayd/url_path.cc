#include "examples/gatewayd/url_path.h"

#include <algorithm>

#include "examples/backend.h"

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

std::optional<API_TYPE_T> areaNamed(const std::string& segment) {
  for (unsigned int area = API_GATEWAY; area <= API_MISC; ++area) {
    if (segment == LocalDbCtrl::getApiDir(area)) {
      return static_cast<API_TYPE_T>(area);
    }
  }
  return std::nullopt;
}

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

Target findTarget(const TreeMapObject& database, const std::vector<std::string>& segments) {
  Target target;
  target.kind = Target::Kind::kRoot;
  for (const std::string& segment : segments) {
    const Handle container(target.kind == Target::Kind::kFree ? nullptr
                                                              : database.get(target.path.c_str()));
    if (container == nullptr) {
      return {};
    }
    const int length = container->len();
    const bool isObject = json_object_is_type(container->jobj, json_type_object) != 0;
    if (!isObject && (length < 0 || !isIndex(segment))) {
      return {};
    }
    const std::string token = isObject ? segment : "[" + segment + "]";
    target.container = target.path;
    target.path += (target.path.empty() ? "" : ".") + token;
    target.name = segment;
    if (isObject) {
      json_object* member = nullptr;
      const bool found = json_object_object_get_ex(container->jobj, token.c_str(), &member) != 0;
      target.kind = found ? Target::Kind::kValue : Target::Kind::kFree;
    } else {
      const int index = std::stoi(segment);
      if (index > length) {
        return {};
      }
      target.kind = index < length ? Target::Kind::kValue : Target::Kind::kFree;
    }
  }
  return target;
}
