// Login attempts.
#include <ctime>

#include "bench/bench.h"
#include "bench/documents.h"
#include "bench/floor.h"
#include "hearth/be_login_record.h"

namespace bench {
namespace {

constexpr char kFile[] = ".loginrecord.cfg";
constexpr int kRecords = 100;

// The record in the middle of the file.
std::string someAddress() {
  return loginAddress(kRecords / 2);
}

bool countByHand(const std::string& address) {
  const Json array(json_object_from_file(kFile), json_object_put);
  const size_t length = json_object_array_length(array.get());
  for (size_t i = 0; i < length; ++i) {
    json_object* const record = json_object_array_get_idx(array.get(), i);
    json_object* text = nullptr;
    json_object_object_get_ex(record, "ipAddress", &text);
    if (address == json_object_get_string(text)) {
      json_object* attempts = nullptr;
      json_object_object_get_ex(record, "attempts", &attempts);
      json_object_object_add(record, "attempts",
                             json_object_new_int(json_object_get_int(attempts) + 1));
      json_object_object_add(record, "lastAttempt",
                             json_object_new_string(std::to_string(time(nullptr)).c_str()));
      break;
    }
  }
  return saveByHand(array.get(), kFile, false);
}

}  // namespace

void addLoginCases() {
  addCase("login100/floor", [] {
    writeFile(kFile, loginRecordsText(kRecords));
    return [address = someAddress()] { return countByHand(address); };
  });
  addCase("login100/hearth", [] {
    writeFile(kFile, loginRecordsText(kRecords));
    BELoginRecord::isRunning = true;
    return [address = someAddress()] { return BELoginRecord::setAttempt(address.c_str()); };
  });
}

}  // namespace bench
