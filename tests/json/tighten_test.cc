// A tightened document beside the same one as parsed: equal in all but the size of its tables, and
// no member is lost when more are added. The sizes go past those at which json-c's arithmetic and
// ours could part.
#include "json/tighten.h"

#include "tests/support/captured_log.h"

namespace hearth {
namespace {

std::string objectOf(int members) {
  std::string text = "{";
  for (int i = 0; i < members; ++i) {
    text += (i == 0 ? "\"m" : ",\"m") + std::to_string(i) + "\":{\"k\":[{\"a\":null},[]]}";
  }
  return text + "}";
}

int entriesOf(json_object* object) {
  return json_object_get_object(object)->size;
}

void expectMembers(int count, json_object* object) {
  ASSERT_EQ(count, json_object_object_length(object));
  for (int i = 0; i < count; ++i) {
    EXPECT_TRUE(json_object_object_get_ex(object, ("m" + std::to_string(i)).c_str(), nullptr)) << i;
  }
  EXPECT_FALSE(json_object_object_get_ex(object, "none", nullptr));
}

void checkObject(int members) {
  SCOPED_TRACE(members);
  const JsonRef document = parse(objectOf(members));
  const int before = entriesOf(document.get());
  tighten(document.get());
  EXPECT_EQ(objectOf(members), plain(document.get()));
  expectMembers(members, document.get());

  const int entries = entriesOf(document.get());
  EXPECT_LE(entries, before);
  EXPECT_LE(entries, members * 2 + 1);
  for (int i = members; i < members * 2 + 2; ++i) {
    json_object_object_add(document.get(), ("m" + std::to_string(i)).c_str(), nullptr);
    if (i == members && entries < before) {
      EXPECT_EQ(entries, entriesOf(document.get())) << "one more fits";
    }
  }
  expectMembers(members * 2 + 2, document.get());
}

TEST(TightenTest, KeepsEveryMemberAndLeavesRoomForOne) {
  for (int members = 0; members <= 40; ++members) {
    checkObject(members);
  }
  for (const int members : {165, 166, 167, 168, 1000, 10000}) {
    checkObject(members);
  }
}

TEST(TightenTest, ReachesObjectsInObjectsAndArrays) {
  const JsonRef document = parse(R"([{"a":{"b":1}},[{"c":{}}],1,null,"text"])");
  tighten(document.get());
  const Handle handle(new TreeMapObject(json_object_get(document.get())));
  for (const char* path : {"[0]", "[0].a", "[1].[0]", "[1].[0].c"}) {
    const Handle object(handle->get(path));
    EXPECT_GE(2, entriesOf(object->jobj)) << path;
  }
  tighten(nullptr);
}

}  // namespace
}  // namespace hearth
