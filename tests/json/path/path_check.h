// Compares the reading and the writing of one path with the model. The exhaustive tests and the
// fuzz target share it.
#ifndef HEARTH_TESTS_JSON_PATH_PATH_CHECK_H
#define HEARTH_TESTS_JSON_PATH_PATH_CHECK_H

#include <cstdlib>
#include <string>

#include "hearth/json_data.h"
#include "tests/json/path/path_oracle.h"
#include "tests/support/references.h"

// Answers what differs, or an empty text. Results, out-parameters and key copies are all compared.
inline std::string readingDiffers(json_object* root, const std::string& path) {
  const oracle::Found expected = oracle::read(root, path);
  json_object* parent = nullptr;
  const char* key = nullptr;
  json_object* const value = JsonData::getJObj(root, path.c_str(), parent, key);
  const std::string copy = key != nullptr ? key : "";
  const bool emptyCopy = key != nullptr && copy.empty();
  delete[] key;
  if (value != expected.value) return "value";
  if (parent != expected.parent) return "parent";
  if (copy != expected.key || emptyCopy) return "key '" + copy + "'";
  return JsonData::getJObj(root, path.c_str()) == value ? "" : "two-argument form";
}

// Does the same for a number written at the path. Takes over the root.
inline std::string writingDiffers(json_object* root, const std::string& path) {
  json_object* const value = json_object_new_int(42);
  oracle::Node expected = oracle::Node::of(root);
  const bool stores = oracle::write(expected, path, oracle::Node::of(value));
  json_object* parent = nullptr;
  const char* key = nullptr;
  const int result = JsonData::setJObj(root, path.c_str(), value, parent, key);
  std::string difference;
  if (result != (stores ? 0 : 2)) {
    difference = "result " + std::to_string(result);
  } else if (!(oracle::Node::of(root) == expected)) {
    difference = std::string("document ") + json_object_to_json_string(root);
  } else if (stores != (key != nullptr) || stores != (parent != nullptr)) {
    difference = "out-parameters";
  }
  std::free(const_cast<char*>(key));
  // The tree holds a reference exactly when the store succeeded.
  if (!wasLastReference(root)) difference += " root kept";
  if (!wasLastReference(value)) difference += " reference leaked";
  return difference;
}

#endif
