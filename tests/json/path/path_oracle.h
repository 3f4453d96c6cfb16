// A naive model of the path language, to compare the walks with: strings and copies everywhere, one
// rule per line, nothing shared with the library. The exhaustive tests and a fuzz target use it.
#ifndef HEARTH_TESTS_JSON_PATH_PATH_ORACLE_H
#define HEARTH_TESTS_JSON_PATH_PATH_ORACLE_H

#include <json-c/json.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace oracle {

inline std::vector<std::string> tokensOf(std::string path) {
  std::vector<std::string> tokens;
  for (std::size_t dot; (dot = path.find('.')) != std::string::npos; path = path.substr(dot + 1)) {
    tokens.push_back(path.substr(0, dot));
  }
  if (!path.empty()) {
    tokens.push_back(path);
  }
  return tokens;
}

inline bool isIndex(const std::string& token) {
  return token.substr(0, 1) == "[";
}

// No index: the token is too short or blank inside.
inline std::optional<uint32_t> indexOf(const std::string& token) {
  if (token.size() < 3) return std::nullopt;
  std::string text = token.substr(1, token.size() - 2);
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string::npos) return std::nullopt;
  text = text.substr(start);
  const bool negative = text[0] == '-';
  if (negative || text[0] == '+') text = text.substr(1);
  text = text.substr(0, text.find_first_not_of("0123456789"));
  if (negative) {
    uint32_t wrapped = 0;
    for (const char digit : text) wrapped = wrapped * 10 + static_cast<uint32_t>(digit - '0');
    return 0 - wrapped;
  }
  text.erase(0, text.find_first_not_of('0'));
  if (text.size() > 10 || (text.size() == 10 && text > "4294967295")) return UINT32_MAX;
  return text.empty() ? 0 : static_cast<uint32_t>(std::stoull(text));
}

struct Found {
  json_object* value = nullptr;
  json_object* parent = nullptr;
  std::string key;
};

inline Found read(json_object* root, const std::string& path) {
  if (path.empty()) return {root, nullptr, ""};
  const std::vector<std::string> tokens = tokensOf(path);
  json_object* current = root;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    json_object* child = nullptr;
    bool found = false;
    if (!isIndex(tokens[i])) {
      found = json_object_object_get_ex(current, tokens[i].c_str(), &child);
    } else if (const auto index = indexOf(tokens[i])) {
      if (json_object_is_type(current, json_type_array) &&
          *index < json_object_array_length(current)) {
        child = json_object_array_get_idx(current, *index);
        found = child != nullptr;
      }
    }
    if (i + 1 == tokens.size()) return {child, current, tokens[i]};
    if (!found) return {};
    current = child;
  }
  return {};
}

// A document as plain data.
struct Node {
  json_type type = json_type_null;
  std::string scalar;                                  // as JSON text
  std::vector<std::pair<std::string, Node>> children;  // elements have no names

  static Node of(json_object* value) {
    Node node;
    node.type = json_object_get_type(value);
    if (node.type == json_type_object) {
      json_object_object_foreach(value, name, member) node.children.emplace_back(name, of(member));
    } else if (node.type == json_type_array) {
      for (std::size_t i = 0; i < json_object_array_length(value); ++i) {
        node.children.emplace_back("", of(json_object_array_get_idx(value, i)));
      }
    } else {
      node.scalar = json_object_to_json_string(value);
    }
    return node;
  }

  bool operator==(const Node& other) const {
    return type == other.type && scalar == other.scalar && children == other.children;
  }
};

// Stores below `node`, which `isNew` when this very store made it. False where the walk fails; what
// it made before stays.
inline bool write(Node& node, const std::vector<std::string>& tokens, std::size_t i, bool isNew,
                  const Node& value) {
  const std::string& token = tokens[i];
  const bool last = i + 1 == tokens.size();
  Node* child = nullptr;
  if (isIndex(token)) {
    const auto index = indexOf(token);
    if (!index || (node.type != json_type_array && !isNew)) return false;
    if (node.type != json_type_array) node = Node{json_type_array, "", {}};
    if (*index < node.children.size()) {
      child = &node.children[*index].second;
      if (!last && child->type == json_type_null) return false;
    }
  } else {
    if (node.type != json_type_object) return false;
    for (auto& [name, member] : node.children) child = name == token ? &member : child;
  }
  const bool made = child == nullptr;
  if (made && !last && tokens.size() > 64) return false;
  if (made) {
    node.children.emplace_back(isIndex(token) ? "" : token, Node{json_type_object, "", {}});
    child = &node.children.back().second;
  }
  if (!last) return write(*child, tokens, i + 1, made, value);
  *child = value;
  return true;
}

inline bool write(Node& root, std::string path, const Node& value) {
  if (path.empty()) return false;
  if (root.type == json_type_array && !isIndex(path)) {
    path = ("[" + std::to_string(root.children.size()) + "]." + path).substr(0, 255);
  }
  return write(root, tokensOf(path), 0, false, value);
}

}  // namespace oracle

#endif
