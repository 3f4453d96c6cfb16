// Compares JSON values, and finds equal elements of an array.
//
// Few elements are compared in pairs. Many go through a hash table: equal values must then have one
// hash, however json-c holds them and in whatever order their members stand, so a number is hashed
// by its value and an object by a sum over its members. Equal hashes only say that a comparison is
// worth it.
//
// The depth of both is limited, for a small stack, and each value visited costs effort: schemas can
// be written that would compare without an end.
#include "schema/keywords/equality.h"

#include <json-c/json.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "schema/keywords/members.h"
#include "schema/keywords/number.h"
#include "schema/text.h"

namespace hearth::schema {
namespace {

bool isNumber(json_type type) {
  return type == json_type_int || type == json_type_double;
}

// `depth` counts the containers around the values given.
class Comparison {
 public:
  explicit Comparison(Effort& effort) : effort_(effort) {}

  bool equal(json_object* left, json_object* right, unsigned depth) {
    if (left == right) {  // one value, or two nulls
      return true;
    }
    const json_type type = json_object_get_type(left);
    const json_type other = json_object_get_type(right);
    if (!effort_.spend(1)) {
      return false;
    }
    if (isNumber(type) && isNumber(other)) {
      return compare(left, right) == Order::kEqual;
    }
    if (type != other) {
      return false;
    }
    switch (type) {
      case json_type_boolean:
        return json_object_get_boolean(left) == json_object_get_boolean(right);
      case json_type_string:
        return effort_.spend(std::size_t(json_object_get_string_len(left)) / 64) &&
               textOf(left) == textOf(right);
      case json_type_array:
        return fits(depth) && equalArrays(left, right, depth);
      case json_type_object:
        return fits(depth) && equalObjects(left, right, depth);
      default:
        return false;  // two nulls are two null pointers, found equal above
    }
  }

  uint32_t hash(json_object* value, unsigned depth) {
    switch (json_object_get_type(value)) {
      case json_type_boolean:
        return json_object_get_boolean(value) ? 2 : 3;
      case json_type_int:
      case json_type_double:
        return hashNumber(numberOf(value));
      case json_type_string:
        return hashCounted(textOf(value));
      case json_type_array:
        return fits(depth) ? hashArray(value, depth) : 0;
      case json_type_object:
        return fits(depth) ? hashObject(value, depth) : 0;
      default:
        return 1;
    }
  }

 private:
  bool fits(unsigned depth) { return depth < kMaxDepth || effort_.stop(Trouble::kTooDeep); }

  // Element by element.
  bool equalArrays(json_object* left, json_object* right, unsigned depth) {
    const std::size_t length = json_object_array_length(left);
    if (length != json_object_array_length(right)) {
      return false;
    }
    for (std::size_t i = 0; i < length; ++i) {
      if (!equal(json_object_array_get_idx(left, i), json_object_array_get_idx(right, i),
                 depth + 1)) {
        return false;
      }
    }
    return true;
  }

  // With as many members on both sides, each one on the left needs an equal one on the right.
  bool equalObjects(json_object* left, json_object* right, unsigned depth) {
    if (json_object_object_length(left) != json_object_object_length(right)) {
      return false;
    }
    json_object_object_foreach(left, name, member) {
      json_object* other = nullptr;
      if (!effort_.spend(costOfName(name)) || !json_object_object_get_ex(right, name, &other) ||
          !equal(member, other, depth + 1)) {
        return false;
      }
    }
    return true;
  }

  // Spreads what differs in the lower bits over the whole hash.
  static uint32_t mix(uint64_t bits) {
    bits *= 0x9E3779B97F4A7C15U;
    return static_cast<uint32_t>(bits >> 32);
  }

  // Numbers of one value have one hash: a double without a fraction is hashed as the integer that
  // it equals. A negative number differs from the positive one by a constant.
  static uint32_t hashNumber(const Number& number) {
    if (number.isDouble && isIntegral(number) && std::fabs(number.real) < 18446744073709551616.0) {
      return mix(static_cast<uint64_t>(std::fabs(number.real)) ^ (number.real < 0 ? 0x5555U : 0U));
    }
    if (number.isDouble) {
      uint64_t bits;
      memcpy(&bits, &number.real, sizeof(bits));
      return mix(bits);
    }
    return mix(number.magnitude ^ (number.negative ? 0x5555U : 0U));
  }

  // Hashes a text and spends what that takes.
  uint32_t hashCounted(std::string_view text) {
    return effort_.spend(1 + text.size() / 16) ? hashText(text) : 0;
  }

  uint32_t hashArray(json_object* array, unsigned depth) {
    uint32_t hash = 17;
    const std::size_t length = json_object_array_length(array);
    for (std::size_t i = 0; i < length && effort_.spend(1); ++i) {
      hash = mix(hash * 31U + this->hash(json_object_array_get_idx(array, i), depth + 1));
    }
    return hash;
  }

  uint32_t hashObject(json_object* object, unsigned depth) {
    uint32_t sum = 19;  // a sum is the same in any order of the members
    json_object_object_foreach(object, name, member) {
      if (!effort_.spend(1)) {
        break;
      }
      sum += mix(hashCounted(name) + 31U * hash(member, depth + 1));
    }
    return sum;
  }

  Effort& effort_;
};

// Compares every pair: no memory, and the fastest way for a few.
EqualPair findByPairs(json_object* array, std::size_t length, Effort& effort) {
  for (std::size_t i = 1; i < length; ++i) {
    for (std::size_t j = 0; j < i && !effort.isStopped(); ++j) {
      if (isEqual(json_object_array_get_idx(array, j), json_object_array_get_idx(array, i),
                  effort)) {
        return {true, j, i};
      }
    }
  }
  return {false, 0, 0};
}

// Keeps the elements seen so far in an open hash table, at most half full: an element goes to the
// bucket of its hash or, if that is taken, to the next free one behind it. Each element is compared
// with those of its own hash that it meets on the way.
EqualPair findByHash(json_object* array, std::size_t length, Effort& effort) {
  struct Seen {
    uint32_t hash;
    uint32_t element;  // its index + 1; 0 means empty
  };
  // A power of two, so that a hash is cut to a bucket by a mask.
  std::size_t size = 64;
  while (size < 2 * length) {
    size *= 2;
  }
  if (!effort.spend(size / 16)) {
    return {false, 0, 0};
  }
  std::vector<Seen> table(size, Seen{0, 0});
  Comparison comparison(effort);
  for (std::size_t i = 0; i < length && effort.spend(1); ++i) {
    json_object* const element = json_object_array_get_idx(array, i);
    const uint32_t hash = comparison.hash(element, 0);
    std::size_t at = hash & (size - 1);
    for (; table[at].element != 0 && effort.spend(1); at = (at + 1) & (size - 1)) {
      const std::size_t earlier = table[at].element - 1;
      if (table[at].hash == hash &&
          comparison.equal(json_object_array_get_idx(array, earlier), element, 0)) {
        return {true, earlier, i};
      }
    }
    table[at] = {hash, static_cast<uint32_t>(i + 1)};
  }
  return {false, 0, 0};
}

}  // namespace

bool isEqual(json_object* left, json_object* right, Effort& effort) {
  return Comparison(effort).equal(left, right, 0);
}

// Up to a dozen elements, the pairs take less than the table.
EqualPair findEqualElements(json_object* array, Effort& effort) {
  constexpr std::size_t kFew = 12;
  const std::size_t length = json_object_array_length(array);
  return length <= kFew ? findByPairs(array, length, effort) : findByHash(array, length, effort);
}

}  // namespace hearth::schema
