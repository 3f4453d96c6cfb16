#include "json/path_lookup.h"

#include "json/path_index.h"
#include "log/log.h"

namespace hearth {
namespace {

constexpr char kOperation[] = "getJObj";

}  // namespace

PathLookup::PathLookup(json_object* root, const char* path)
    : tokens_(root != nullptr && path != nullptr ? path : ""), debug_(logs(LOG_DEBUG)) {
  outcome_ = walk(root, path);
}

PathLookup::Outcome PathLookup::walk(json_object* root, const char* path) {
  if (root == nullptr || path == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params jobj=%p path=%p\n", kOperation,
               static_cast<void*>(root), static_cast<const void*>(path));
    return Outcome::kRefused;
  }
  if (path[0] == '\0') {
    value_ = root;
    return Outcome::kRoot;
  }
  if (tokens_.count() == 0) {
    HEARTH_LOG(LOG_ERROR, "%s: no memory for the path\n", kOperation);
    return Outcome::kLostOnWay;
  }

  json_object* current = root;
  parent_ = root;
  const std::size_t last = tokens_.count() - 1;
  for (std::size_t position = 0;; ++position) {
    json_object* child = nullptr;
    const bool entered = enter(position, current, child);
    if (!entered || position == last) {
      if (position == last) {
        parent_ = current;
      } else if (debug_) {
        Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, "%s: cannot found the object %s\n", kOperation,
                      path);
      }
      HEARTH_LOG(LOG_INFO, "%s: FOUND parent=%p, key=%s\n", kOperation, static_cast<void*>(parent_),
                 tokens_[position]);
      value_ = child;
      return entered ? Outcome::kFound
                     : (position == last ? Outcome::kMissing : Outcome::kLostOnWay);
    }
    parent_ = current;
    current = child;
  }
}

bool PathLookup::enter(std::size_t position, json_object* current, json_object*& child) {
  const char* const token = tokens_[position];
  const bool isEnd = position + 1 == tokens_.count();
  if (debug_) {
    Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, "%s: Parse: idx=%d key=%s isEnd=%s\n", kOperation,
                  static_cast<int>(position), token, isEnd ? "true" : "false");
  }
  if (isIndexToken(token)) {
    return enterElement(position, current, child);
  }
  if (!json_object_object_get_ex(current, token, &child)) {
    return false;
  }
  if (debug_) {
    if (isEnd) {
      Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, "%s: found the object %s\n", kOperation, token);
    } else {
      Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, "%s: continue search next key\n", kOperation);
    }
  }
  return true;
}

bool PathLookup::enterElement(std::size_t position, json_object* current, json_object*& child) {
  const char* const token = tokens_[position];
  const std::size_t size = tokens_.length(position);
  if (!indexOfToken(token, size, index_)) {
    HEARTH_LOG(LOG_ERROR, "Wrong array index %s - size:%d\n", token, static_cast<int>(size));
    return false;
  }
  const json_type type = json_object_get_type(current);
  if (type != json_type_array) {
    HEARTH_LOG(LOG_ERROR, "Object is not array '%s'!\n", json_type_to_name(type));
    return false;
  }
  const std::size_t length = json_object_array_length(current);
  if (length <= index_) {
    HEARTH_LOG(LOG_ERROR, "Request wrong index num=%d len=%d!\n", static_cast<int>(index_),
               static_cast<int>(length));
    return false;
  }
  child = json_object_array_get_idx(current, index_);
  if (child == nullptr) {
    HEARTH_LOG(LOG_ERROR, "Cannot get array index num=%d len=%d!\n", static_cast<int>(index_),
               static_cast<int>(length));
    return false;
  }
  return true;
}

}  // namespace hearth
