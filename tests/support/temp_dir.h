// A folder of its own for a test, removed with all that is in it.
#ifndef HEARTH_TESTS_SUPPORT_TEMP_DIR_H
#define HEARTH_TESTS_SUPPORT_TEMP_DIR_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class TempDir {
 public:
  TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "hearth-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

  // Makes a file with these contents, and its folder; gives its whole path.
  std::string file(const std::string& name, const std::string& contents) const {
    const std::filesystem::path path = *this / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << contents;
    return path.string();
  }

  std::string contentsOf(const std::string& name) const {
    std::ifstream in(*this / name, std::ios::binary);
    return (std::ostringstream() << in.rdbuf()).str();
  }

 private:
  std::string path_;
};

#endif
