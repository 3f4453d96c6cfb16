// Stores values that are shared and stand inside each other: only a store that would make a value
// its own descendant is refused.
#include <deque>
#include <random>
#include <set>

#include "hearth/json_data.h"
#include "tests/json/nested.h"
#include "tests/json/path/path_oracle.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace {

using hearth::JsonRef;

constexpr int kScalar = -1;

// A naive model of containers and of who holds whom. Containers are numbers. It looks everywhere to
// find out if one is inside another.
class Model {
 public:
  // Containers of both kinds with nothing in them.
  explicit Model(int containers) {
    for (int i = 0; i < containers; ++i) {
      const bool isArray = i % 2 != 0;
      json_object* const made = isArray ? json_object_new_array() : json_object_new_object();
      all_.push_back({JsonRef(made), isArray, {}});
    }
  }

  int size() const { return static_cast<int>(all_.size()); }
  json_object* json(int container) const {
    return container != kScalar ? at(container).json.get() : nullptr;
  }
  bool isArray(int container) const { return at(container).isArray; }
  std::size_t length(int container) const { return at(container).children.size(); }

  bool store(int root, const std::string& path, int value) {
    const bool appends = isArray(root) && !oracle::isIndex(path);
    const std::string prefix = appends ? "[" + std::to_string(length(root)) + "]." : "";
    return store(root, oracle::tokensOf(prefix + path), 0, false, value);
  }

  void remove(int container, const std::string& token) {
    if (isArray(container) == oracle::isIndex(token)) {
      auto& children = all_[static_cast<std::size_t>(container)].children;
      const std::size_t position = positionOf(container, token);
      if (position < children.size()) {
        children.erase(children.begin() + static_cast<std::ptrdiff_t>(position));
      }
    }
  }

  // True when json-c holds the same. The containers that the last store has made are taken over.
  bool isWhatJsonHolds() {
    for (Container& container : all_) {
      std::vector<std::pair<std::string, json_object*>> actual;
      if (container.isArray) {
        for (std::size_t i = 0; i < json_object_array_length(container.json.get()); ++i) {
          actual.emplace_back("", json_object_array_get_idx(container.json.get(), i));
        }
      } else {
        json_object_object_foreach(container.json.get(), name, member) {
          actual.emplace_back(name, member);
        }
      }
      if (actual.size() != container.children.size()) return false;
      for (std::size_t i = 0; i < actual.size(); ++i) {
        const auto& [name, child] = container.children[i];
        if (name != actual[i].first) return false;
        if (child == kScalar) {
          if (!json_object_is_type(actual[i].second, json_type_int)) return false;
          continue;
        }
        Container& expected = all_[static_cast<std::size_t>(child)];
        if (expected.json == nullptr) expected.json.reset(json_object_get(actual[i].second));
        if (expected.json.get() != actual[i].second) return false;
      }
    }
    return true;
  }

 private:
  struct Container {
    JsonRef json;  // null until it is known which one the library has made
    bool isArray;
    std::vector<std::pair<std::string, int>> children;  // elements have no names
  };

  const Container& at(int container) const { return all_[static_cast<std::size_t>(container)]; }

  // Every container is asked again until none is new.
  bool contains(int container, int sought) const {
    std::set<int> held = {container};
    for (std::size_t before = 0; before != held.size();) {
      before = held.size();
      for (const int each : std::set<int>(held)) {
        for (const auto& [name, child] : at(each).children) {
          if (child != kScalar) held.insert(child);
        }
      }
    }
    return held.count(sought) != 0;
  }

  std::size_t positionOf(int container, const std::string& token) const {
    const auto& children = at(container).children;
    if (isArray(container)) return std::min<std::size_t>(*oracle::indexOf(token), children.size());
    std::size_t i = 0;
    while (i < children.size() && children[i].first != token) ++i;
    return i;
  }

  bool store(int destination, const std::vector<std::string>& tokens, std::size_t i, bool isNew,
             int value) {
    Container& container = all_[static_cast<std::size_t>(destination)];
    const bool isIndex = oracle::isIndex(tokens[i]);
    container.isArray = container.isArray || (isIndex && isNew);
    if (container.isArray != isIndex) return false;
    const bool isLast = i + 1 == tokens.size();
    if (isLast && value != kScalar && contains(value, destination)) return false;
    const std::size_t position = positionOf(destination, tokens[i]);
    const bool made = position == container.children.size();
    if (made) {
      container.children.emplace_back(isIndex ? "" : tokens[i], isLast ? value : size());
      if (!isLast) all_.push_back({nullptr, false, {}});
    } else if (isLast) {
      container.children[position].second = value;
    }
    if (isLast) return true;
    const int child = container.children[position].second;
    return child != kScalar && store(child, tokens, i + 1, made, value);
  }

  std::deque<Container> all_;
};

TEST(Store, RefusesCyclesAndNothingElse) {
  const char* const tokens[] = {"a", "b", "[0]", "[1]", "[9]"};
  int refused = 0;
  for (unsigned int seed = 0; seed < 300; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
    Model model(8);
    for (int step = 0; step < 80; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
      const int root = below(model.size());
      const int value = below(5) == 0 ? kScalar : below(model.size());
      const JsonRef number(json_object_new_int(step));
      json_object* const json = value != kScalar ? model.json(value) : number.get();
      TreeMapObject handle(json_object_get(model.json(root)));
      TreeMapObject item(json_object_get(json));
      std::string path = tokens[below(5)];
      const int length = handle.len();
      const int action = below(8);
      bool isStored = false;
      if (action == 0) {
        model.remove(root, path);
        handle.del(path.c_str());
      } else if (action == 1 && model.isArray(root)) {
        isStored = model.store(root, "[9999]", value);
        EXPECT_EQ(isStored ? length : -1, handle.addArrayItem(&item));
      } else if (action == 2 && model.isArray(root)) {
        isStored = model.store(root, "[1]", value);
        EXPECT_EQ(isStored ? std::min(length, 1) : -1, handle.setArrayItem(1, &item));
      } else {
        for (int more = below(3); more > 0; --more) path += std::string(".") + tokens[below(5)];
        isStored = model.store(root, path, value);
        EXPECT_EQ(isStored ? 0 : 2, JsonData::setJObj(handle.jobj, path.c_str(), json)) << path;
      }
      refused += action != 0 && !isStored ? 1 : 0;
      ASSERT_TRUE(model.isWhatJsonHolds());
    }
  }
  EXPECT_GT(refused, 1000);
}

// Stores the value in new containers, which is no cycle, and in one inside itself, which is.
void expectOnlyACycleIsRefused(json_object* value, json_object* inside) {
  TreeMapObject document("{\"list\":[]}");
  TreeMapObject item(json_object_get(value));
  const Handle list(document.get("list"));
  EXPECT_EQ(0, JsonData::setJObj(document.jobj, "a.b", value));
  EXPECT_EQ(0, JsonData::setJObj(document.jobj, "list.[0]", value));
  EXPECT_EQ(1, list->addArrayItem(&item));
  EXPECT_EQ(2, JsonData::setJObj(inside, json_object_is_type(inside, json_type_array) ? "[5]" : "x",
                                 value));
}

TEST(Store, LooksAtValuesOfAnySizeSharingAndDepth) {
  onSmallStack([] {
    const JsonRef shared = parse(R"({"a":[[]]})");
    const JsonRef wide = parse("[]");
    for (int i = 0; i < 1'100'000; ++i) {
      json_object_array_add(wide.get(), json_object_get(shared.get()));
    }
    for (int i = 0; i < 50'000; ++i) {
      json_object* const element = json_object_new_array_ext(1);
      json_object_array_add(element, json_object_new_array_ext(1));
      json_object_array_add(wide.get(), element);
    }
    expectOnlyACycleIsRefused(wide.get(), json_object_array_get_idx(wide.get(), 1'149'999));
    expectOnlyACycleIsRefused(wide.get(), JsonData::getJObj(shared.get(), "a.[0]"));
    JsonRef twice = parse(R"({"a":{"k":1}})");
    json_object* const innermost = JsonData::getJObj(twice.get(), "a");
    for (int level = 0; level < 100; ++level) {
      JsonRef outer = parse("{}");
      json_object_object_add(outer.get(), "a", json_object_get(twice.get()));
      json_object_object_add(outer.get(), "b", json_object_get(twice.get()));
      twice = std::move(outer);
    }
    expectOnlyACycleIsRefused(twice.get(), innermost);
    const std::vector<JsonRef> deep = nested(100'000);
    expectOnlyACycleIsRefused(deep.front().get(), deep.back().get());
  });
}

}  // namespace
