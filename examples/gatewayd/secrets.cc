#include "secrets.h"

#include <crypt.h>
#include <string.h>  // explicit_bzero
#include <sys/random.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "server_limits.h"

namespace {

constexpr char kYescrypt[] = "$y$";

// A hash of nothing in particular, of the same cost as those that are made here.
const std::string& nobodysHash() {
  static const std::string hash = hashOf("nobody");
  return hash;
}

// Empty on failure: the library then answers a text that begins with '*', or nothing.
std::string hashedWith(const std::string& password, const std::string& setting) {
  struct Free {
    void operator()(crypt_data* data) const {
      explicit_bzero(data, sizeof *data);
      std::free(data);
    }
  };
  const std::unique_ptr<crypt_data, Free> data(
      static_cast<crypt_data*>(std::calloc(1, sizeof(crypt_data))));
  const char* const hash =
      data != nullptr ? crypt_r(password.c_str(), setting.c_str(), data.get()) : nullptr;
  return hash != nullptr && hash[0] == '$' ? hash : "";
}

// In a time that does not tell where the texts differ.
bool isEqual(const std::string& left, const std::string& right) {
  unsigned int difference = left.size() == right.size() ? 0 : 1;
  for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
    difference |= static_cast<unsigned int>(static_cast<unsigned char>(left[i])) ^
                  static_cast<unsigned char>(right[i]);
  }
  return difference == 0;
}

}  // namespace

std::string randomSecret() {
  std::array<unsigned char, 16> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    return "";
  }
  std::string text;
  for (const unsigned char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned int>(byte));
    text += digits;
  }
  return text;
}

std::string hashOf(const std::string& password) {
  char* const setting = crypt_gensalt_ra(kYescrypt, limits::kHashCost, nullptr, 0);
  std::string hash = setting != nullptr ? hashedWith(password, setting) : "";
  std::free(setting);
  return hash;
}

bool isHash(const std::string& hash) {
  return hash.rfind(kYescrypt, 0) == 0;
}

bool isPassword(const std::string& password, const std::string& hash) {
  const bool isReal = isHash(hash);
  const std::string& compared = isReal ? hash : nobodysHash();
  const std::string made = hashedWith(password, compared);
  return isReal && !made.empty() && isEqual(made, compared);
}
