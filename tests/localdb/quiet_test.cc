// The log is a view of what happens: a switch that is off takes away its own lines and nothing
// else, neither another line nor any answer. One walk through everything that logs, done and
// refused.
#include <algorithm>
#include <sstream>

#include "tests/localdb/database_fixture.h"

namespace {

constexpr const char* kNoText = nullptr;
TreeMapObject* const kNoHandle = nullptr;

std::string shown(const Handle& handle) {
  return handle != nullptr ? plain(*handle) : "none";
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
      int number = 0;
      const char* read = document.get<const char*>(path);
      out << text << " " << path << ": " << shown(part) << shown(Handle(document.clone(path)))
          << document.get<int>(path) << document.get<bool>(path) << (read != nullptr ? read : "-")
          << document.get_ex(path, number) << document.get_ex(path, read);
      document.set(path, part.get());
      document.set(path, &document);
      document.set(path, kNoHandle);
      document.set(path, kNoText);
      out << plain(document);
      document.set(path, "text");
      document.set(path, 5);
      document.dump(path);
      out << plain(document);
      document.del(path);
      out << plain(document) << document.addArrayItem(&document) << document.addArrayItem(kNoText)
          << document.addArrayItem(7) << document.delArrayItem(0) << document.clearArrayItems();
    }
  }
}

void search(std::ostream& out) {
  TreeMapObject deep(true);
  deep.set(replaced(std::string(300, '.'), ".", "[0].").append("[0]").c_str(), 1);
  out << shown(Handle(deep.clone(nullptr)));
  const TreeMapObject flat(R"([{"k":1,"o":{"k":"v"}},null,7])");
  const TreeMapObject scalar("7");
  for (const TreeMapObject* const document : {&std::as_const(deep), &flat, &scalar}) {
    for (const char* const key : {kNoText, "", "k", "none"}) {
      std::list<TreeMapObject*> all = document->find(key, 1);
      all.splice(all.end(), document->find(key, "v"));
      document->findInObject(all, key, nullptr, document->jobj);
      document->findInArray(all, key, flat.jobj, document->jobj);
      for (TreeMapObject* const found : all) {
        out << shown(Handle(found));
      }
    }
  }
}

void checkAndSave(std::ostream& out) {
  TreeMapObject document(R"({"a":1})");
  TreeMapObject empty;
  TreeMapObject wrong("{}");
  wrong.error = 1;
  constexpr char kArray[] = R"({"type":"array"})";
  putText("good", R"({"a":1})");
  putText("schema", kArray);
  putText("broken", "{");
  for (TreeMapObject* const object : {&document, &wrong, &empty, kNoHandle}) {
    for (const char* const schema : {"{", "{}", kArray, kNoText}) {
      out << JsonData::validateObject(object, schema);
    }
    for (const char* const name : {"good", "schema", "broken", "none", kNoText}) {
      out << JsonData::validateFile(object, name) << JsonData::validateFile(name, "schema")
          << JsonData::validateFile("good", name);
    }
    for (const char* const name : {"saved", "none/saved", kNoText}) {
      out << JsonData::saveObjectToFile(name, object);
    }
    out << LocalDbCtrl::validateObject(object, API_MISC, 0)
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
      out << (event[0] == 'c' ? std::to_string(LocalDbCtrl::cloneNewDB(key))
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

void nameAndConfigure(std::ostream& out) {
  for (const unsigned int area : {1U, 6U, 7U, 8U}) {
    out << TreeMapObject(area, 20).error << (LocalDbCtrl::getSchemaFile(area, 20) != nullptr)
        << (LocalDbCtrl::getApiDir(area) != nullptr);
  }
  out << answerTo("lock ");
  BEConfig::DATA_LOCATION.append(300, 'x');
  out << answerTo("save") << answerTo("lock ");
  BEConfig::DATA_LOCATION = ".";
  BEConfig::isInit = true;
  BEConfig::init("none");
  for (const char* const text : {R"([{"ipAddress":"a","attempts":7}])", "{}", "["}) {
    putText(".loginrecord.cfg", text);
    for (const char* const address : {"a", "b", kNoText}) {
      BELoginRecord::isRunning = true;
      out << BELoginRecord::getAttempt(address).waitMinutes << BELoginRecord::isRunning;
    }
  }
  BELoginRecord::isRunning = true;
  BELoginRecord::init();
  BELoginRecord::isRunning = BEConfig::isInit = false;
}

// Some of the library's lines have no line end, or several, and one text goes to standard output
// without being a line of the log.
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

using QuietTest = DatabaseTest;

TEST_F(QuietTest, SwitchesChangeTheLogAlone) {
  // What a walk answers, and the lines that it writes.
  const auto walk = [&](const std::vector<LOG_TYPE_T>& severities, uint32_t mask) {
    std::ostringstream answers;
    const auto parts = [&] {
      Logger::mask = mask;
      folder_.file("wifi/wifi.ldb", kFreshFile);
      LocalDbCtrl::init();
      readAndWrite(answers);
      search(answers);
      checkAndSave(answers);
      lockAndSave(answers);
      nameAndConfigure(answers);
    };
    std::string lines = linesOf(parts, severities);
    return std::pair(answers.str(), std::move(lines));
  };
  const auto [answers, lines] = walk(CapturedLog::all(), ~0U);
  std::string unlogged = lines;
  const std::pair<LOG_TYPE_T, const char*> kLabels[] = {
      {LOG_INFO, "INFO"}, {LOG_WARNING, "WARN"}, {LOG_DEBUG, "DEBUG"}, {LOG_ERROR, "ERROR"}};
  for (const auto& [off, label] : kLabels) {
    std::vector<LOG_TYPE_T> others = CapturedLog::all();
    others.erase(std::find(others.begin(), others.end(), off));
    const std::string left = without(label, lines);
    EXPECT_LT(left.size(), lines.size()) << label;
    EXPECT_EQ(walk(others, 1), std::pair(answers, left)) << label;
    unlogged = without(label, unlogged);
  }
  EXPECT_EQ(walk(CapturedLog::all(), ~1U), std::pair(answers, unlogged));
}

}  // namespace
