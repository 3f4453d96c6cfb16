// A handle's value as an array: elements stored, removed, and found again after a removal.
#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/captured_log.h"

namespace {

TEST(Array, OnlyArraysHaveElements) {
  for (const char* const text : {"{}", "\"s\"", "7", "{"}) {
    SCOPED_TRACE(text);
    TreeMapObject other(text);
    TreeMapObject item("1");
    EXPECT_EQ(-1, other.len());
    EXPECT_EQ(nullptr, other.at(0));
    EXPECT_EQ(-1, other.setArrayItem(0, &item));
    EXPECT_EQ(-1, other.addArrayItem(&item));
    EXPECT_EQ(-1, other.addArrayItem(1));
    EXPECT_EQ(-1, other.addArrayItem("x"));
    EXPECT_EQ(-1, other.delArrayItem(0));
    EXPECT_EQ(-1, other.clearArrayItems());
  }
}

TEST(Array, GivesHandlesOnElements) {
  const TreeMapObject array("[1,null,[2]]");
  EXPECT_EQ(3, array.len());
  EXPECT_EQ(nullptr, array.at(3));
  EXPECT_EQ(nullptr, array.at(4294967295U));
  const Handle null(array.at(1));
  EXPECT_EQ(nullptr, null->jobj);
  EXPECT_STREQ("[1]", null->key_obj);
  const Handle inner(array.at(2));
  EXPECT_EQ(array.jobj, inner->jobj_parent);
  EXPECT_EQ(2, inner->get<int>("[0]"));
}

TEST(Array, StoresItems) {
  TreeMapObject array("[1,2,3]");
  TreeMapObject item("\"x\"");
  TreeMapObject empty;
  EXPECT_EQ(1, array.setArrayItem(1, &item));
  EXPECT_STREQ("[1]", item.key_obj);
  EXPECT_EQ(3, array.setArrayItem(10, &item));
  EXPECT_STREQ("[3]", item.key_obj);
  EXPECT_EQ(4, array.addArrayItem(&item));
  EXPECT_EQ(-1, array.addArrayItem(&empty));
  EXPECT_EQ(-1, array.setArrayItem(0, nullptr));
  TreeMapObject outer(true);
  outer.addArrayItem(&array);
  const auto refuse = [&] {
    EXPECT_EQ(-1, array.addArrayItem(&array));
    EXPECT_EQ(-1, array.setArrayItem(0, &outer));
  };
  EXPECT_EQ("", linesOf(refuse));
  EXPECT_STREQ("[0]", array.key_obj);
  EXPECT_EQ(R"([1,"x",3,"x","x"])", plain(array));
  const Handle same(array.at(0));
  EXPECT_EQ(0, array.setArrayItem(0, same.get()));
  EXPECT_EQ(R"([1,"x",3,"x","x"])", plain(array));
}

TEST(Array, AppendsScalars) {
  TreeMapObject array(true);
  EXPECT_EQ(0, array.addArrayItem(7));
  EXPECT_EQ(1, array.addArrayItem(true));
  EXPECT_EQ(2, array.addArrayItem(0.5));
  EXPECT_EQ(3, array.addArrayItem("s"));
  EXPECT_EQ(-1, array.addArrayItem(static_cast<const char*>(nullptr)));
  EXPECT_EQ(R"([7,true,0.5,"s"])", plain(array));
}

TEST(Array, RemovesElements) {
  TreeMapObject array("[10,null,30]");
  EXPECT_EQ(-1, array.delArrayItem(3));
  EXPECT_EQ(2, array.delArrayItem(0));
  EXPECT_EQ("[null,30]", plain(array));
  EXPECT_EQ(0, array.clearArrayItems());
  EXPECT_EQ(-1, array.delArrayItem(0));
  EXPECT_EQ("[]", plain(array));
}

TEST(Array, PutsTheRebuiltArrayInItsPlace) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {R"({"x":0,"list":[1,2,3]})", "list", R"({"x":0,"list":[2,3]})"},
      {R"([5,[1,2]])", "[1]", "[5,[2]]"},
      {R"([5,[1,2]])", "[ 1x", "[5,[2]]"},
      {R"({"":[1]})", ".", R"({"":[]})"},
      {R"({"a234567890123456789012345678901-cut":[1,2],"a234567890123456789012345678901":[8]})",
       "a234567890123456789012345678901-cut",
       R"({"a234567890123456789012345678901-cut":[2],"a234567890123456789012345678901":[8]})"},
  };
  for (const auto& [before, path, after] : rows) {
    SCOPED_TRACE(path);
    const TreeMapObject document(before);
    const Handle array(document.get(path));
    ASSERT_NE(nullptr, array);
    const int left = array->len() - 1;
    EXPECT_EQ(left, array->delArrayItem(0));
    EXPECT_EQ(after, plain(document));
    EXPECT_EQ(0, array->clearArrayItems());
    EXPECT_EQ(0, array->len());
  }
}

TEST(Array, AStaleHandleChangesNothing) {
  const TreeMapObject document(R"({"list":[1,2,3],"other":[9]})");
  const Handle first(document.get("list"));
  const Handle stale(document.get("list"));
  EXPECT_EQ(2, first->delArrayItem(0));
  EXPECT_EQ(-1, stale->delArrayItem(0));
  EXPECT_EQ(-1, stale->clearArrayItems());
  EXPECT_EQ(R"({"list":[2,3],"other":[9]})", plain(document));
  TreeMapObject outer("[0,[1],[9]]");
  const Handle gone(outer.at(1));
  outer.del("[1]");
  EXPECT_EQ(-1, gone->delArrayItem(0));
  outer.clearArrayItems();
  EXPECT_EQ("[]", plain(outer));
}

TEST(Array, AnOwningHandleOnTheSameArrayIsRebuiltAlone) {
  const TreeMapObject document("[1,2]");
  const Handle whole(document.get(""));
  EXPECT_EQ(1, whole->delArrayItem(0));
  EXPECT_EQ("[2]", plain(*whole));
  EXPECT_EQ("[1,2]", plain(document));
}

TEST(Array, IsFoundWhereItIs) {
  TreeMapObject moving("[0,[1,2]]");
  const Handle moved(moving.get("[1]"));
  moving.del("[0]");
  EXPECT_EQ(1, moved->delArrayItem(0));
  EXPECT_EQ("[[2]]", plain(moving));
  // Another array has overwritten the key.
  const TreeMapObject document(R"({"[0]":[9],"list":[1,2]})");
  TreeMapObject box(true);
  const Handle list(document.get("list"));
  EXPECT_EQ(0, box.addArrayItem(list.get()));
  EXPECT_STREQ("[0]", list->key_obj);
  EXPECT_EQ(1, list->delArrayItem(0));
  EXPECT_EQ(R"({"[0]":[9],"list":[2]})", plain(document));
}

}  // namespace
