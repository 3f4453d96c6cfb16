// Resolves URI references: a reference is cut into scheme, authority, path and query, and each part
// that it leaves out comes from the base. Only the path may be a mixture of both: the base up to
// its last slash, with the reference behind it and every "." and ".." taken out.
#include "schema/resource/uri.h"

#include "base/ascii.h"
#include "schema/text.h"

namespace hearth::schema {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

struct Uri {
  std::string_view scheme;     // with its ':'
  std::string_view authority;  // with its "//"
  std::string_view path;
  std::string_view query;  // with its '?'
};

// Cuts a reference into its parts, by what begins each of them. A ':' ends a scheme only before any
// '/' or '?'.
Uri split(std::string_view text) {
  Uri uri;
  text = withoutFragment(text);
  const std::size_t colon = text.find_first_of(":/?");
  if (colon != kNone && colon > 0 && text[colon] == ':') {
    uri.scheme = text.substr(0, colon + 1);
    text.remove_prefix(colon + 1);
  }
  if (text.substr(0, 2) == "//") {
    uri.authority = text.substr(0, text.find_first_of("/?", 2));
    text.remove_prefix(uri.authority.size());
  }
  uri.path = text.substr(0, text.find('?'));
  uri.query = text.substr(uri.path.size());
  return uri;
}

// Takes "." and ".." out of a path. A segment is read with the slash before it; ".." takes the
// segment before it along. A dot segment at the end leaves its slash.
std::string withoutDots(std::string_view path) {
  std::string out;
  while (!path.empty()) {
    const std::size_t end = path.find('/', 1);
    const std::string_view segment = path.substr(0, end);
    const bool last = end == kNone;
    path = last ? std::string_view() : path.substr(end);
    if (segment == "/." || segment == "." || segment == ".." || segment == "/..") {
      if (segment.size() == 3) {
        const std::size_t slash = std::string_view(out).rfind('/');
        out.erase(slash == kNone ? 0 : slash);
      }
      if (last && segment[0] == '/') {
        out += '/';
      }
      continue;
    }
    out += segment;
  }
  return out;
}

// The base's path up to its last slash, and the reference's path behind it.
std::string merged(const Uri& base, std::string_view path) {
  if (!base.authority.empty() && base.path.empty()) {
    return joined({"/", path});
  }
  const std::size_t slash = base.path.rfind('/');
  return joined({base.path.substr(0, slash == kNone ? 0 : slash + 1), path});
}

}  // namespace

// The rules of RFC 3986, section 5.2.2: from the first part that the reference has, it counts, and
// everything before that is the base's.
std::string resolveUri(std::string_view base, std::string_view reference) {
  const Uri b = split(base);
  const Uri r = split(reference);
  if (!r.scheme.empty()) {
    return joined({r.scheme, r.authority, withoutDots(r.path), r.query});
  }
  if (!r.authority.empty()) {
    return joined({b.scheme, r.authority, withoutDots(r.path), r.query});
  }
  if (r.path.empty()) {
    return joined({b.scheme, b.authority, b.path, r.query.empty() ? b.query : r.query});
  }
  const std::string path = r.path[0] == '/' ? withoutDots(r.path) : withoutDots(merged(b, r.path));
  return joined({b.scheme, b.authority, path, r.query});
}

std::string_view withoutFragment(std::string_view reference) {
  return reference.substr(0, reference.find('#'));
}

std::string_view fragmentOf(std::string_view reference) {
  const std::size_t hash = reference.find('#');
  return hash == kNone ? std::string_view() : reference.substr(hash + 1);
}

std::string percentDecoded(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
                        hexValue(text[i + 2]) >= 0;
    out += escape ? static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2])) : text[i];
    i += escape ? 2 : 0;
  }
  return out;
}

}  // namespace hearth::schema
