// The log is a view of what happens. A switch that is off takes away its own lines and nothing
// else: no other line, and no answer. A walk of many steps goes through everything that logs, done
// and refused, once for each setting of the switches; the steps are then compared one by one.
#include <algorithm>
#include <sstream>

#include "tests/localdb/database_fixture.h"

namespace {

constexpr const char* kNoText = nullptr;
TreeMapObject* const kNoHandle = nullptr;

std::string shown(const Handle& handle) {
  return handle != nullptr ? plain(*handle) : "none";
}

std::string orNull(const char* text) {
  return text != nullptr ? text : "null";
}

struct Step {
  std::string name;
  std::string answers;
  std::string lines;
};

// Records the steps that it is led through, with these severities on and this mask.
class Walk {
 public:
  Walk(std::vector<LOG_TYPE_T> severities, uint32_t mask)
      : severities_(std::move(severities)), mask_(mask) {}

  void step(const std::string& name, const std::function<void(std::ostream&)>& work) {
    std::ostringstream answers;
    std::string lines = linesOf(
        [&] {
          Logger::mask = mask_;
          work(answers);
        },
        severities_);
    steps_.push_back({name, answers.str(), std::move(lines)});
  }
  [[nodiscard]] const std::vector<Step>& steps() const { return steps_; }

 private:
  std::vector<LOG_TYPE_T> severities_;
  uint32_t mask_;
  std::vector<Step> steps_;
};

void readAndWrite(Walk& walk) {
  for (const std::string text :
       {R"({"a":{"b":1},"l":[1,null,{"k":"v"}],"n":null,"t":"x"})", "[1,[2],null,{}]", "7", "{"}) {
    for (const char* const path :
         {"a",     "a.b",         "a.b.c", "a.[0]",   "l.[0]", "l.[0].x",     "l.[1].x",
          "l.[9]", "l.[9].x.[0]", "l.[x]", "l.x",     "n.x",   "m.[0].[0].x", "t",
          "",      ".",           "[1]",   "[1].[0]", "[9].x", "[2].x"}) {
      walk.step("path \"" + std::string(path) + "\" in " + text, [&](std::ostream& out) {
        TreeMapObject document(text.c_str());
        const Handle part(document.get(path));
        int number = 0;
        const char* read = document.get<const char*>(path);
        out << shown(part) << shown(Handle(document.clone(path))) << document.get<int>(path)
            << document.get<bool>(path) << orNull(read) << document.get_ex(path, number)
            << document.get_ex(path, read);
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
      });
    }
  }
}

void search(Walk& walk) {
  TreeMapObject deep(true);
  walk.step("make a deep document", [&](std::ostream& out) {
    deep.set(replaced(std::string(300, '.'), ".", "[0].").append("[0]").c_str(), 1);
    out << shown(Handle(deep.clone(nullptr)));
  });
  const TreeMapObject flat(R"([{"k":1,"o":{"k":"v"}},null,7])");
  const TreeMapObject scalar("7");
  for (const TreeMapObject* const document : {&std::as_const(deep), &flat, &scalar}) {
    for (const char* const key : {kNoText, "", "k", "none"}) {
      walk.step("find " + orNull(key) + " in " + plain(*document), [&](std::ostream& out) {
        std::list<TreeMapObject*> all = document->find(key, 1);
        all.splice(all.end(), document->find(key, "v"));
        document->findInObject(all, key, nullptr, document->jobj);
        document->findInArray(all, key, flat.jobj, document->jobj);
        for (TreeMapObject* const found : all) {
          out << shown(Handle(found));
        }
      });
    }
  }
}

void checkAndSave(Walk& walk) {
  TreeMapObject document(R"({"a":1})");
  TreeMapObject empty;
  TreeMapObject wrong("{}");
  wrong.error = 1;
  constexpr char kArray[] = R"({"type":"array"})";
  putText("good", R"({"a":1})");
  putText("schema", kArray);
  putText("broken", "{");
  for (TreeMapObject* const object : {&document, &wrong, &empty, kNoHandle}) {
    const std::string text = object != nullptr ? plain(*object) : "no handle";
    walk.step("check and save " + text, [&](std::ostream& out) {
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
    });
  }
  walk.step("copy and compare", [&](std::ostream& out) {
    out << (JsonData::cloneObject(nullptr) != nullptr)
        << JsonData::compareObjVal(document.jobj, json_type_object, wrong.jobj, json_type_object);
  });
}

void lockAndSave(Walk& walk) {
  for (const char* const key : {"default", "s", kNoText}) {
    for (const std::string event : {"save", "clone", "clone", "unlock", "lock no", "lock radios",
                                    "lock ", "unlock", "unlock", "lock ", "save", "lock "}) {
      walk.step(event + " of session " + orNull(key), [&](std::ostream& out) {
        out << (event == "clone" ? std::to_string(LocalDbCtrl::cloneNewDB(key))
                                 : answerTo(event, key));
      });
    }
    walk.step("bad locks, and removals of session " + orNull(key), [&](std::ostream& out) {
      out << (LocalDbCtrl::lockDbObject(API_WIFI, nullptr, key) != nullptr)
          << (LocalDbCtrl::lockDbObject(8, "", key) != nullptr)
          << LocalDbCtrl::unlockDbObject(8, key) << LocalDbCtrl::removeDB(key)
          << LocalDbCtrl::removeDB(key) << answerTo("unlock", key)
          << (LocalDbCtrl::getDBByKey(key) != nullptr) << answerTo("lock ", key);
    });
    walk.step("init while session " + orNull(key) + " is held", [&](std::ostream& out) {
      LocalDbCtrl::init();
      out << answerTo("unlock", key);
    });
  }
}

void nameAndConfigure(Walk& walk) {
  walk.step("names", [](std::ostream& out) {
    for (const unsigned int area : {1U, 6U, 7U, 8U}) {
      out << TreeMapObject(area, 20).error << (LocalDbCtrl::getSchemaFile(area, 20) != nullptr)
          << (LocalDbCtrl::getApiDir(area) != nullptr);
    }
  });
  walk.step("a name that is too long", [](std::ostream& out) {
    out << answerTo("lock ");
    BEConfig::DATA_LOCATION.append(300, 'x');
    out << answerTo("save") << answerTo("lock ");
    BEConfig::DATA_LOCATION = ".";
  });
  walk.step("configuration and login records", [](std::ostream& out) {
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
  });
}

std::vector<Step> walkThroughAll(std::vector<LOG_TYPE_T> severities, uint32_t mask) {
  Walk walk(std::move(severities), mask);
  putText("wifi/wifi.ldb", kFreshFile);
  walk.step("init", [](std::ostream&) { LocalDbCtrl::init(); });
  readAndWrite(walk);
  search(walk);
  checkAndSave(walk);
  lockAndSave(walk);
  nameAndConfigure(walk);
  return walk.steps();
}

// The lines without those of a label. Some of the library's lines have no line end, or several, and
// one text goes to standard output without being a line of the log.
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

// The steps of a full walk as they must be when the lines of a label are off.
std::vector<Step> without(const std::string& label, std::vector<Step> steps) {
  bool isAnyLess = false;
  for (Step& step : steps) {
    std::string left = without(label, step.lines);
    isAnyLess |= left.size() < step.lines.size();
    step.lines = std::move(left);
  }
  EXPECT_TRUE(isAnyLess) << "no step logs " << label;
  return steps;
}

void expectSame(const std::vector<Step>& expected, const std::vector<Step>& steps) {
  ASSERT_EQ(expected.size(), steps.size());
  for (std::size_t i = 0; i < steps.size(); ++i) {
    EXPECT_EQ(expected[i].answers, steps[i].answers) << "at the step: " << steps[i].name;
    EXPECT_EQ(expected[i].lines, steps[i].lines) << "at the step: " << steps[i].name;
  }
}

using QuietTest = DatabaseTest;

TEST_F(QuietTest, SwitchesChangeTheLogAlone) {
  const std::vector<Step> full = walkThroughAll(CapturedLog::all(), ~0U);
  std::vector<Step> unlogged = full;
  const std::pair<LOG_TYPE_T, const char*> rows[] = {
      {LOG_INFO, "INFO"}, {LOG_WARNING, "WARN"}, {LOG_DEBUG, "DEBUG"}, {LOG_ERROR, "ERROR"}};
  for (const auto& [off, label] : rows) {
    SCOPED_TRACE(std::string(label) + " is off");
    std::vector<LOG_TYPE_T> others = CapturedLog::all();
    others.erase(std::find(others.begin(), others.end(), off));
    expectSame(without(label, full), walkThroughAll(others, 1));
    unlogged = without(label, unlogged);
  }
  SCOPED_TRACE("the group is off");
  expectSame(unlogged, walkThroughAll(CapturedLog::all(), ~1U));
}

}  // namespace
