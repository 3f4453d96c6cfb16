// The road of a request through hearth, told as a story: start the library as a backend does, work
// on a copy of the sample gateway, and check every answer on the way.
//
//   request_road SAMPLE_DATA FOLDER
//
// copies SAMPLE_DATA to FOLDER/data, works there, and leaves the changed files behind. The exit
// status is 0 when everything came out as it should. The chapters are in chapters.h.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "chapters.h"

namespace {

constexpr const char* kConsoleFile = "console.log";

// Puts a fresh copy of the sample data into the folder and makes the folder the working directory,
// to which every relative path of the configuration refers.
bool prepare(const std::filesystem::path& sample, const std::filesystem::path& folder) {
  namespace fs = std::filesystem;
  if (!fs::is_regular_file(sample / "gateway.conf")) {
    std::fprintf(stderr, "%s is not the sample data: it has no gateway.conf\n", sample.c_str());
    return false;
  }
  std::error_code error;
  fs::create_directories(folder, error);
  if (!error) {
    fs::copy(sample, folder / "data",
             fs::copy_options::recursive | fs::copy_options::overwrite_existing, error);
  }
  if (!error) {
    fs::current_path(folder, error);
  }
  if (error) {
    std::fprintf(stderr, "cannot copy %s to %s/data: %s\n", sample.c_str(), folder.c_str(),
                 error.message().c_str());
  }
  return !error;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s SAMPLE_DATA FOLDER\n", argv[0]);
    return EXIT_FAILURE;
  }
  Story story;
  if (!prepare(argv[1], argv[2]) || !story.begin(kConsoleFile)) {
    return EXIT_FAILURE;
  }
  const auto chapters = {startUp,
                         readRadio,
                         changeRadio,
                         addPortForward,
                         refuseMessages,
                         changeNothing,
                         askForWhatIsNotThere,
                         turnSecondLockerAway,
                         giveSessionsTheirOwn,
                         countInACrowd,
                         slowDownGuessing,
                         leaveFilesInOrder};
  for (const auto& chapter : chapters) {
    chapter(story);
  }
  const std::string here = std::filesystem::current_path().string();
  return story.end("The changed databases are in " + here + "/data, the log is " + here +
                   "/gateway.log,\nwhat the library printed on standard output is in " + here +
                   "/" + kConsoleFile + ".\n");
}
