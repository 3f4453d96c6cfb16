// The program that runs in the guest. It changes the sample's store for ever and tells each change
// that the library has acknowledged, or looks at what a cut has left. Everything it says is one
// line on standard output, which is the guest's serial console, written at once.
//
//   store change WRITER DIR FIRST [DISK]   numbers its changes from FIRST + 1: "DONE n"; marks each
//                                          behind the file system of the disk too
//   store check WRITER DIR                 "FOUND n", or "BROKEN why"; then what a start would meet
//
// WRITER is hearth, or the writer that must lose: in-place, json-c's own.
#include <dirent.h>
#include <fcntl.h>
#include <hearth/hearth.h>
#include <json-c/json.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

constexpr char kFolder[] = "data/wifi";
constexpr char kFile[] = "data/wifi/wifi.ldb";
constexpr char kAddress[] = "192.0.2.1";

using Document = std::unique_ptr<TreeMapObject>;

int console = STDOUT_FILENO;

void say(const std::string& line) {
  const std::string whole = line + "\n";
  if (write(console, whole.data(), whole.size()) < 0) {
    _exit(3);
  }
}

// From nothing to some 8 KB, so that a file grows and shrinks from change to change.
int lengthOf(int number) {
  return (number * 37) % 400;
}

// The members that a change writes: its number, and a list that repeats it. A mixture of two
// changes shows by a list that does not fit its number.
Document listOf(int number) {
  Document list(new TreeMapObject(true));
  for (int i = 0; i < lengthOf(number); ++i) {
    list->addArrayItem(number);
  }
  return list;
}

bool saveByHearth(int number) {
  TreeMapObject* const wifi = LocalDbCtrl::lockDbObject(API_WIFI, "", "default");
  if (wifi == nullptr) {
    return false;
  }
  wifi->set("number", number);
  wifi->set("list", listOf(number).get());
  return LocalDbCtrl::saveDbObject(API_WIFI, "default") == 0;
}

// Cuts the file to nothing and writes it anew, as many programs do.
bool saveInPlace(int number) {
  TreeMapObject document(false);
  document.set("number", number);
  document.set("list", listOf(number).get());
  return json_object_to_file_ext(kFile, document.jobj, JSON_C_TO_STRING_PRETTY) == 0;
}

// Writes the number behind the file system: straight to the disk, past every cache of the guest.
class Marks {
 public:
  explicit Marks(const char* disk)
      : fd_(disk != nullptr ? open(disk, O_WRONLY | O_DIRECT | O_CLOEXEC) : -1) {}

  void put(int number) {
    if (fd_ >= 0) {
      snprintf(block_, sizeof(block_), "%d", number);
      if (pwrite(fd_, block_, sizeof(block_), off_t{60} << 20) != sizeof(block_)) {
        say("REFUSED a mark");
      }
    }
  }

 private:
  alignas(4096) char block_[4096] = {};
  int fd_;
};

void changeForEver(bool isHearth, int number, Marks& marks) {
  for (;;) {
    ++number;
    const bool isSaved = isHearth ? saveByHearth(number) : saveInPlace(number);
    Logger::print(LOG_INFO, LOG_GROUP_UTIL, "change %d\n", number);
    BELoginRecord::setAttempt(kAddress);
    if (isSaved) {
      marks.put(number);
    }
    say((isSaved ? "DONE " : "REFUSED ") + std::to_string(number));
  }
}

// The number of the change that the file holds. Reads with json-c alone, so that no mistake of
// hearth's can hide another.
std::string found() {
  json_object* const document = json_object_from_file(kFile);
  json_object* number = nullptr;
  json_object* list = nullptr;
  if (document == nullptr) {
    return "BROKEN it is no JSON";
  }
  if (json_object_object_get_ex(document, "number", &number) == 0) {
    return "FOUND 0";  // as it was delivered
  }
  const int value = json_object_get_int(number);
  if (json_object_object_get_ex(document, "list", &list) == 0 ||
      json_object_array_length(list) != static_cast<std::size_t>(lengthOf(value))) {
    return "BROKEN the list is not that of change " + std::to_string(value);
  }
  for (int i = 0; i < lengthOf(value); ++i) {
    if (json_object_get_int(json_object_array_get_idx(list, static_cast<std::size_t>(i))) !=
        value) {
      return "BROKEN two changes are mixed";
    }
  }
  json_object_put(document);
  return "FOUND " + std::to_string(value);
}

int strays() {
  int count = 0;
  DIR* const folder = opendir(kFolder);
  while (const dirent* const entry = readdir(folder)) {
    count += strncmp(entry->d_name, ".hearth-", 8) == 0 ? 1 : 0;
  }
  closedir(folder);
  return count;
}

// What a start meets: temporary files of interrupted saves, a login store that counts, a save that
// leaves nothing behind.
void check(bool isHearth) {
  say(found());
  const int left = strays();
  BELoginRecord::setAttempt(kAddress);
  const bool counts = BELoginRecord::isRunning && BELoginRecord::getAttempt(kAddress).attempts == 1;
  const bool saves = !isHearth || (LocalDbCtrl::lockDbObject(API_WIFI, "", "default") != nullptr &&
                                   LocalDbCtrl::saveDbObject(API_WIFI, "default") == 0);
  say("STARTS strays " + std::to_string(left) + " then " + std::to_string(strays()) + " logins " +
      (counts ? "count" : "stopped") + " saves " + (saves ? "work" : "refused"));
}

}  // namespace

int main(int count, char** words) {
  if (count < 4 || chdir(words[3]) != 0) {
    say("REFUSED there is no store");
    return EXIT_FAILURE;
  }
  const bool isHearth = std::string(words[2]) != "in-place";
  // hearth prints its log on standard output too; from here on nobody reads that.
  console = dup(STDOUT_FILENO);
  dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
  BEConfig::init("data/gateway.conf");
  Logger::init();
  LocalDbCtrl::init();
  if (std::string(words[1]) == "check") {
    check(isHearth);
  } else {
    Marks marks(count > 5 ? words[5] : nullptr);
    changeForEver(isHearth, count > 4 ? std::atoi(words[4]) : 0, marks);
  }
}
