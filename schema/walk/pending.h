// The keywords of one schema that wait until all its members are read.
#ifndef HEARTH_SCHEMA_WALK_PENDING_H
#define HEARTH_SCHEMA_WALK_PENDING_H

#include <cstddef>

#include "schema/keywords/keywords.h"

struct json_object;

namespace hearth::schema {

// Holds the value of each waiting keyword under its turn. A set of bits says which turns are taken,
// so that a schema without such keywords costs one comparison and the values need no clearing.
class Pending {
 public:
  // The keyword's value, or null.
  [[nodiscard]] json_object* operator[](Turn turn) const {
    return has(turn) ? values_[static_cast<std::size_t>(turn)] : nullptr;
  }
  [[nodiscard]] bool isEmpty() const { return taken_ == 0; }
  [[nodiscard]] bool has(Turn turn) const {
    return (taken_ >> static_cast<unsigned>(turn) & 1) != 0;
  }
  // True when a keyword waits whose turn is one from first to last.
  [[nodiscard]] bool hasAny(Turn first, Turn last) const {
    const unsigned upToLast = (2U << static_cast<unsigned>(last)) - 1;
    return (taken_ & upToLast) >> static_cast<unsigned>(first) != 0;
  }
  void clear() { taken_ = 0; }
  void add(Turn turn, json_object* value) {
    taken_ |= 1U << static_cast<unsigned>(turn);
    values_[static_cast<std::size_t>(turn)] = value;
  }

 private:
  unsigned taken_ = 0;
  json_object* values_[static_cast<std::size_t>(Turn::kCount)];
};

}  // namespace hearth::schema

#endif
