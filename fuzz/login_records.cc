// Any file as the login records: an array is kept, with the address counted as it says; anything
// else stops the store and stays as it is.
#include <cstdint>
#include <limits>

#include "fuzz/fuzz.h"
#include "hearth/be_login_record.h"

namespace {

constexpr char kFile[] = ".loginrecord.cfg";
constexpr char kAddress[] = "a";

fuzz::JsonRef records(const char* file = kFile) {
  fuzz::JsonRef document(json_object_from_file(file));
  return document;
}

// Where the address's record is; the length when it has none.
std::size_t placeIn(json_object* array) {
  std::size_t place = 0;
  for (; place < json_object_array_length(array); ++place) {
    json_object* const address =
        fuzz::memberOf(json_object_array_get_idx(array, place), "ipAddress");
    if (json_object_is_type(address, json_type_string) &&
        std::string(json_object_get_string(address),
                    static_cast<std::size_t>(json_object_get_string_len(address))) == kAddress) {
      break;
    }
  }
  return place;
}

int32_t attemptsAt(json_object* array, std::size_t place) {
  return json_object_get_int(fuzz::memberOf(json_object_array_get_idx(array, place), "attempts"));
}

// Both arrays without the element at the place.
bool sameBut(std::size_t place, json_object* before, json_object* after) {
  const std::size_t length = json_object_array_length(before);
  bool same = json_object_array_length(after) == (place == length ? length + 1 : length);
  for (std::size_t i = 0; same && i < length; ++i) {
    same = i == place || fuzz::plain(json_object_array_get_idx(before, i)) ==
                             fuzz::plain(json_object_array_get_idx(after, i));
  }
  return same;
}

void counts(json_object* before) {
  constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
  const std::size_t place = placeIn(before);
  const bool isKnown = place < json_object_array_length(before);
  const int32_t was = isKnown ? attemptsAt(before, place) : 0;
  fuzz::claim(BELoginRecord::getAttempt(kAddress).attempts == (isKnown ? was : 1),
              "attempts are read");

  BELoginRecord::setAttempt(kAddress);
  const fuzz::JsonRef after = records();
  fuzz::claim(json_object_is_type(after.get(), json_type_array) && BELoginRecord::isRunning,
              "an array stays one");
  fuzz::claim(sameBut(place, before, after.get()), "other elements stay");
  fuzz::claim(placeIn(after.get()) == place &&
                  attemptsAt(after.get(), place) == (was == kMost ? was : was + 1),
              "an attempt counts");
  const LOGIN_ATTEMPT_INFO info = BELoginRecord::getAttempt(kAddress);
  fuzz::claim(info.attempts <= 4 ? info.waitMinutes == 0
                                 : info.waitMinutes <= static_cast<uint32_t>(info.attempts) - 4,
              "nobody waits longer than the penalty");

  BELoginRecord::eraseAttempt(kAddress);
  const fuzz::JsonRef erased = records();
  fuzz::claim(attemptsAt(erased.get(), place) == 0 && sameBut(place, after.get(), erased.get()),
              "a count goes back to zero");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fuzz::Folder folder;
  const std::string input(reinterpret_cast<const char*>(data), size);
  fuzz::Folder::write(kFile, input);
  // json-c's reader waits for more behind a number or a comment that ends with its file; the
  // library takes the end of the file for their end.
  fuzz::Folder::write("with-line-end", input + "\n");
  const fuzz::JsonRef before = records("with-line-end");
  BELoginRecord::isRunning = true;
  if (json_object_is_type(before.get(), json_type_array)) {
    counts(before.get());
    return 0;
  }
  BELoginRecord::setAttempt(kAddress);
  fuzz::claim(!BELoginRecord::isRunning, "a file without records stops the store");
  BELoginRecord::eraseAttempt(kAddress);
  BELoginRecord::getAttempt(kAddress);
  fuzz::claim(fuzz::Folder::read(kFile) == input, "a stopped store writes nothing");
  return 0;
}
