#include "json/path/lookup.h"

#include "json/path/index.h"
#include "log/library_log.h"

namespace hearth {
namespace {

constexpr char kOperation[] = "getJObj";

// The element at an index token; null, with its line, when there is none.
json_object* findElement(json_object* array, const char* token, std::size_t size, uint32_t& index) {
  if (!indexOfToken(token, size, index)) {
    logWrongIndex(token, size);
    return nullptr;
  }
  const json_type type = json_object_get_type(array);
  if (type != json_type_array) {
    HEARTH_LOG(LOG_ERROR, "Object is not array '%s'!\n", json_type_to_name(type));
    return nullptr;
  }
  const std::size_t length = json_object_array_length(array);
  if (length <= index) {
    HEARTH_LOG(LOG_ERROR, "Request wrong index num=%d len=%d!\n", static_cast<int>(index),
               static_cast<int>(length));
    return nullptr;
  }
  json_object* const element = json_object_array_get_idx(array, index);
  if (element == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Cannot get array index num=%d len=%d!\n", static_cast<int>(index),
               static_cast<int>(length));
  }
  return element;
}

}  // namespace

void logWrongIndex(const char* token, std::size_t size) {
  HEARTH_LOG(LOG_ERROR, "Wrong array index %s - size:%d\n", token, static_cast<int>(size));
}

// A line of the walk, which is compiled twice: with its lines and without.
#define WALK_LOG(type, ...)          \
  do {                               \
    if (kIsLogged) {                 \
      HEARTH_LOG(type, __VA_ARGS__); \
    }                                \
  } while (false)

template <bool kIsLogged>
PathLookup::Outcome PathLookup::walk(json_object* root, const char* path) {
  const Token last = tokens_.begin() + tokens_.count() - 1;
  json_object* previous = root;
  json_object* current = root;
  for (Token token = tokens_.begin();; ++token) {
    const bool isFound = look<kIsLogged>(token, current);
    if (token == last) {
      end<kIsLogged>(token, current);
      return isFound ? Outcome::kFound : Outcome::kMissing;
    }
    if (!isFound) {
      WALK_LOG(LOG_DEBUG, "%s: cannot found the object %s\n", kOperation, path);
      end<kIsLogged>(token, previous);
      return Outcome::kLostOnWay;
    }
    previous = current;
    current = value_;
  }
}

// Looks the token up in current.
template <bool kIsLogged>
bool PathLookup::look(Token token, json_object* current) {
  WALK_LOG(LOG_DEBUG, "%s: Parse: idx=%d key=%s isEnd=%s\n", kOperation,
           static_cast<int>(token - tokens_.begin()), *token, isLast(token) ? "true" : "false");
  if (isIndexToken(*token)) {
    value_ = findElement(current, *token, PathTokens::length(token), index_);
    return value_ != nullptr;
  }
  if (json_object_object_get_ex(current, *token, &value_) == 0) {
    return false;
  }
  if (isLast(token)) {
    WALK_LOG(LOG_DEBUG, "%s: found the object %s\n", kOperation, *token);
  } else {
    WALK_LOG(LOG_DEBUG, "%s: continue search next key\n", kOperation);
  }
  return true;
}

template <bool kIsLogged>
void PathLookup::end(Token token, json_object* parent) {
  parent_ = parent;
  WALK_LOG(LOG_INFO, "%s: FOUND parent=%p, key=%s\n", kOperation, static_cast<void*>(parent),
           *token);
}

PathLookup::Outcome PathLookup::find(json_object* root, const char* path) {
  if (root == nullptr || path == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params jobj=%p path=%p\n", kOperation,
               static_cast<void*>(root), static_cast<const void*>(path));
    return Outcome::kRefused;
  }
  if (path[0] == '\0') {
    value_ = root;
    return Outcome::kRoot;
  }
  if (!tokens_.cut(path)) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the path\n", kOperation);
    return Outcome::kLostOnWay;
  }
  const bool isLogged = logs(LOG_DEBUG) || logs(LOG_INFO);
  return isLogged ? walk<true>(root, path) : walk<false>(root, path);
}

}  // namespace hearth
