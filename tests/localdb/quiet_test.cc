// The log is a view of what happens: a switch that is off takes away its own lines and nothing
// else, neither another line nor any answer. One walk through everything that logs, done and
// refused.
#include <sstream>
#include <vector>

#include "tests/localdb/database_fixture.h"

namespace {

using Handle = std::unique_ptr<TreeMapObject>;

constexpr const char* kNoText = nullptr;
TreeMapObject* const kNoHandle = nullptr;

std::string textOf(const TreeMapObject* handle) {
  return handle != nullptr ? json_object_to_json_string(handle->jobj) : "none";
}

void readAndWrite(std::ostream& out) {
  for (const char* const text :
       {R"({"a":{"b":1},"l":[1,null,{"k":"v"}],"n":null,"t":"x"})", "[1,[2],null,{}]", "7", "{"}) {
    for (const char* const path :
         {"a",     "a.b",         "a.b.c", "a.[0]",   "l.[0]", "l.[0].x",     "l.[1].x",
          "l.[9]", "l.[9].x.[0]", "l.[x]", "l.x",     "n.x",   "m.[0].[0].x", "t",
          "",      ".",           "[1]",   "[1].[0]", "[9].x", "[2].x"}) {
      TreeMapObject document(text);
      const Handle part(document.get(path));
      out << text << " " << path << ": " << textOf(part.get())
          << textOf(Handle(document.clone(path)).get());
      int number = 0;
      const char* read = document.get<const char*>(path);
      out << document.get<int>(path) << document.get<bool>(path)
          << (read != nullptr ? read : "none") << document.get_ex(path, number)
          << document.get_ex(path, read);
      document.set(path, part.get());
      document.set(path, &document);
      document.set(path, kNoHandle);
      document.set(path, kNoText);
      out << textOf(&document);
      document.set(path, "text");
      document.set(path, 5);
      document.dump(path);
      out << textOf(&document);
      document.del(path);
      out << textOf(&document) << document.addArrayItem(&document) << document.addArrayItem(kNoText)
          << document.addArrayItem(7) << document.delArrayItem(0) << document.clearArrayItems()
          << "\n";
    }
  }
}

void search(std::ostream& out) {
  std::string path = "[0]";
  for (int levels = 0; levels < 300; ++levels) {
    path += ".[0]";
  }
  TreeMapObject deep(true);
  deep.set(path.c_str(), 1);
  out << textOf(Handle(deep.clone(nullptr)).get());
  const TreeMapObject flat(R"([{"k":1,"o":{"k":"v"}},null,7])");
  const TreeMapObject scalar("7");
  for (const TreeMapObject* const document : {&std::as_const(deep), &flat, &scalar}) {
    for (const char* const key : {kNoText, "", "k", "none"}) {
      std::list<TreeMapObject*> all = document->find(key, 1);
      all.splice(all.end(), document->find(key, "v"));
      document->findInObject(all, key, nullptr, document->jobj);
      document->findInArray(all, key, flat.jobj, document->jobj);
      for (TreeMapObject* const found : all) {
        out << textOf(found);
        delete found;
      }
    }
  }
}

void checkAndSave(std::ostream& out, const TempDir& dir) {
  TreeMapObject document(R"({"a":1})");
  TreeMapObject empty;
  TreeMapObject wrong("{}");
  wrong.error = 1;
  const std::string names[] = {dir.file("good", R"({"a":1})"),
                               dir.file("schema", R"({"type":"array"})"), dir.file("broken", "{"),
                               dir / "none"};
  for (TreeMapObject* const object : {&document, &wrong, &empty, kNoHandle}) {
    for (const char* const schema : {"{", "{}", R"({"type":"array"})", kNoText}) {
      out << JsonData::validateObject(object, schema);
    }
    for (const std::string& name : names) {
      out << JsonData::validateFile(object, name.c_str());
      out << JsonData::validateFile(name.c_str(), names[1].c_str());
      out << JsonData::validateFile(names[0].c_str(), name.c_str());
    }
    out << JsonData::validateFile(object, nullptr)
        << JsonData::saveObjectToFile((dir / "saved").c_str(), object)
        << JsonData::saveObjectToFile((dir / "none/saved").c_str(), object)
        << JsonData::saveObjectToFile(nullptr, object)
        << LocalDbCtrl::validateObject(object, API_MISC, 0)
        << LocalDbCtrl::validateObject(object, API_WIFI, 0);
    JsonData::dumpObject(object, nullptr);
  }
  out << (JsonData::cloneObject(nullptr) != nullptr)
      << JsonData::compareObjVal(document.jobj, json_type_object, wrong.jobj, json_type_object);
}

void lockAndSave(std::ostream& out) {
  for (const char* const key : {"default", "s", kNoText}) {
    for (const char* const event : {"save", "clone", "clone", "unlock", "lock no", "lock radios",
                                    "lock ", "unlock", "unlock", "lock ", "save", "lock "}) {
      out << (event == std::string("clone") ? std::to_string(LocalDbCtrl::cloneNewDB(key))
                                            : answerTo(event, key));
    }
    out << (LocalDbCtrl::lockDbObject(API_WIFI, nullptr, key) != nullptr)
        << (LocalDbCtrl::lockDbObject(8, "", key) != nullptr) << LocalDbCtrl::unlockDbObject(8, key)
        << LocalDbCtrl::removeDB(key) << LocalDbCtrl::removeDB(key) << answerTo("unlock", key)
        << (LocalDbCtrl::getDBByKey(key) != nullptr) << answerTo("lock ", key);
    LocalDbCtrl::init();  // while the area is held
    out << answerTo("unlock", key);
  }
}

void nameAndConfigure(std::ostream& out, const TempDir& dir) {
  for (const unsigned int area : {1U, 6U, 7U, 8U}) {
    const TreeMapObject document(area, 20);
    const char* const name = LocalDbCtrl::getSchemaFile(area, 20);
    out << document.error << (name != nullptr) << (LocalDbCtrl::getApiDir(area) != nullptr);
  }
  out << answerTo("lock ");
  BEConfig::DATA_LOCATION.append(300, 'x');
  out << answerTo("save") << answerTo("lock ");
  BEConfig::DATA_LOCATION = dir.path();
  BEConfig::isInit = true;
  BEConfig::init("none");
  for (const char* const text : {R"([{"ipAddress":"a","attempts":7}])", "{}", "["}) {
    dir.file(".loginrecord.cfg", text);
    for (const char* const address : {"a", "b", kNoText}) {
      BELoginRecord::isRunning = true;
      out << BELoginRecord::getAttempt(address).waitMinutes << BELoginRecord::isRunning;
    }
  }
  BELoginRecord::isRunning = true;
  BELoginRecord::init();
}

class QuietTest : public DatabaseTest {
 protected:
  QuietTest() { std::filesystem::current_path(data_.path()); }
  ~QuietTest() override {
    std::filesystem::current_path("/");
    BELoginRecord::isRunning = false;
    BEConfig::isInit = false;
  }

  // What a walk answers, and the lines that it writes.
  std::pair<std::string, std::string> walk(std::vector<LOG_TYPE_T> severities,
                                           uint32_t mask) const {
    std::ostringstream answers;
    const std::string lines = linesOf(
        [&] {
          Logger::mask = mask;
          data_.file("wifi/wifi.ldb", kFreshFile);
          LocalDbCtrl::init();
          readAndWrite(answers);
          search(answers);
          checkAndSave(answers, data_);
          lockAndSave(answers);
          nameAndConfigure(answers, data_);
        },
        severities);
    return {answers.str(), lines};
  }
};

// The lines but those of one severity. Some of the library's lines have no line end, or several,
// and one text goes to standard output without being a line of the log.
std::string without(const std::string& label, std::string lines) {
  for (const char* const any : {"INFO: ", "WARN: ", "DEBUG: ", "ERROR: ", "EXCEPTION: "}) {
    lines = replaced(lines, any, std::string("\1") + any);
  }
  std::string left;
  std::istringstream all(lines);
  for (std::string line; std::getline(all, line, '\1');) {
    left += line.rfind(label, 0) == 0 ? "" : line;
  }
  return left;
}

TEST_F(QuietTest, SwitchesChangeTheLogAlone) {
  const auto [answers, lines] = walk(CapturedLog::all(), ~0U);
  std::string unlogged = lines;
  for (const char* const severity : {"INFO", "WARN", "DEBUG", "ERROR"}) {
    unlogged = without(severity, unlogged);
  }
  const struct {
    std::vector<LOG_TYPE_T> on;
    uint32_t mask;
    std::string lines;
  } kCases[] = {
      {{LOG_WARNING, LOG_DEBUG, LOG_ERROR}, 1, without("INFO", lines)},
      {{LOG_INFO, LOG_DEBUG, LOG_ERROR}, 1, without("WARN", lines)},
      {{LOG_INFO, LOG_WARNING, LOG_ERROR}, 1, without("DEBUG", lines)},
      {{LOG_INFO, LOG_WARNING, LOG_DEBUG}, 1, without("ERROR", lines)},
      {CapturedLog::all(), ~1U, unlogged},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << "mask " << c.mask << ", first severity " << c.on.front());
    EXPECT_LT(c.lines.size(), lines.size());
    const auto told = walk(c.on, c.mask);
    EXPECT_EQ(told.first, answers);
    EXPECT_EQ(told.second, c.lines);
  }
}

}  // namespace
