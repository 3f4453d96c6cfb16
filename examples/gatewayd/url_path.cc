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
         std::none_of(segment.begin(), segment.end(),
                      [](unsigned char c) { return c < ' ' || c == 0x7F; });
}

int digitOf(char c) {
  const char small = static_cast<char>(c | ' ');
  return c >= '0' && c <= '9' ? c - '0' : small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

// The text of a segment with its escapes; nothing when one is cut or has other digits.
std::optional<std::string> unescaped(const std::string& segment) {
  std::string text;
  for (std::size_t i = 0; i < segment.size(); ++i) {
    if (segment[i] != '%') {
      text.push_back(segment[i]);
      continue;
    }
    const bool isWhole = i + 2 < segment.size();
    const int high = isWhole ? digitOf(segment[i + 1]) : -1;
    const int low = isWhole ? digitOf(segment[i + 2]) : -1;
    if (high < 0 || low < 0) {
      return std::nullopt;
    }
    text.push_back(static_cast<char>(high * 16 + low));
    i += 2;
  }
  return text;
}

// The kit's parser knows what UTF-8 is: a JSON text with the segment as its string, in which only
// the quote and the backslash need an escape.
bool isUtf8(const std::string& segment) {
  std::string json = "\"";
  for (const char c : segment) {
    json.append(c == '"' || c == '\\' ? "\\" : "").push_back(c);
  }
  return static_cast<bool>(hearth::parse(json + "\""));
}

}  // namespace

std::optional<std::vector<std::string>> splitSegments(const std::string& rest) {
  std::vector<std::string> segments;
  for (std::size_t start = 0; start < rest.size();) {
    const std::size_t end = std::min(rest.find('/', start), rest.size());
    std::optional<std::string> segment = unescaped(rest.substr(start, end - start));
    if (!segment || !isPlain(*segment) || !isUtf8(*segment) || segments.size() == kMostSegments) {
      return std::nullopt;
    }
    segments.push_back(std::move(*segment));
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
