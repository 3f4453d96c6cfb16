#include "schema/keywords/equality.h"

#include <json-c/json.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "schema/keywords/members.h"
#include "schema/keywords/number.h"
#include "schema/text.h"

namespace hearth {
namespace schema {
namespace {

bool isNumber(json_type type) {
  return type == json_type_int || type == json_type_double;
}

// Both comparisons and hashes count how deep they are and what they visit.
class Comparison {
 public:
  explicit Comparison(Effort& effort) : effort_(effort) {}

  bool equal(json_object* left, json_object* right, unsigned depth) {
    if (left == right) {
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
        return effort_.spend(size_t(json_object_get_string_len(left)) / 64) &&
               textOf(left) == textOf(right);
      case json_type_array:
        return fits(depth) && equalArrays(left, right, depth);
      case json_type_object:
        return fits(depth) && equalObjects(left, right, depth);
      default:
        return false;  // null is no object of json-c's
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

  bool equalArrays(json_object* left, json_object* right, unsigned depth) {
    const size_t length = json_object_array_length(left);
    if (length != json_object_array_length(right)) {
      return false;
    }
    for (size_t i = 0; i < length; ++i) {
      if (!equal(json_object_array_get_idx(left, i), json_object_array_get_idx(right, i),
                 depth + 1)) {
        return false;
      }
    }
    return true;
  }

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

  static uint32_t mix(uint64_t bits) {
    bits *= 0x9E3779B97F4A7C15U;
    return static_cast<uint32_t>(bits >> 32);
  }

  // Numbers of one value have one hash, however json-c holds them.
  static uint32_t hashNumber(const Number& number) {
    if (number.isDouble && isIntegral(number) && std::fabs(number.real) < 18446744073709551616.0) {
      return mix(static_cast<uint64_t>(std::fabs(number.real)) ^ (number.real < 0 ? 0x5555U : 0U));
    }
    if (number.isDouble) {
      uint64_t bits;
      memcpy(&bits, &number.real, sizeof bits);
      return mix(bits);
    }
    return mix(number.magnitude ^ (number.negative ? 0x5555U : 0U));
  }

  uint32_t hashCounted(std::string_view text) {
    return effort_.spend(1 + text.size() / 16) ? hashText(text) : 0;
  }

  uint32_t hashArray(json_object* array, unsigned depth) {
    uint32_t hash = 17;
    const size_t length = json_object_array_length(array);
    for (size_t i = 0; i < length && effort_.spend(1); ++i) {
      hash = mix(hash * 31U + this->hash(json_object_array_get_idx(array, i), depth + 1));
    }
    return hash;
  }

  uint32_t hashObject(json_object* object, unsigned depth) {
    uint32_t sum = 19;  // a sum does not mind the order
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

// Every pair: no memory, and the fastest for a few.
EqualPair findByPairs(json_object* array, size_t length, Effort& effort) {
  for (size_t i = 1; i < length; ++i) {
    for (size_t j = 0; j < i && !effort.stopped(); ++j) {
      if (isEqual(json_object_array_get_idx(array, j), json_object_array_get_idx(array, i),
                  effort)) {
        return {true, j, i};
      }
    }
  }
  return {false, 0, 0};
}

// An open hash table of the elements seen so far.
EqualPair findByHash(json_object* array, size_t length, Effort& effort) {
  struct Seen {
    uint32_t hash;
    uint32_t element;  // its index + 1; 0 means empty
  };
  size_t size = 64;
  while (size < 2 * length) {
    size *= 2;
  }
  if (!effort.spend(size / 16)) {
    return {false, 0, 0};
  }
  std::vector<Seen> table(size, Seen{0, 0});
  Comparison comparison(effort);
  for (size_t i = 0; i < length && effort.spend(1); ++i) {
    json_object* const element = json_object_array_get_idx(array, i);
    const uint32_t hash = comparison.hash(element, 0);
    size_t at = hash & (size - 1);
    for (; table[at].element != 0 && effort.spend(1); at = (at + 1) & (size - 1)) {
      const size_t earlier = table[at].element - 1;
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

EqualPair findEqualElements(json_object* array, Effort& effort) {
  constexpr size_t kFew = 12;
  const size_t length = json_object_array_length(array);
  return length <= kFew ? findByPairs(array, length, effort) : findByHash(array, length, effort);
}

}  // namespace schema
}  // namespace hearth
