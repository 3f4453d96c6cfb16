// A handle on one JSON value: a whole document, or a member or element inside one.
//
// An owning handle (jobj_parent null) holds one reference of its value and gives it back when it is
// deleted. A borrowed handle (jobj_parent set) holds none: it is valid while its container holds
// the value, and must be deleted before the document is. Every handle that an operation returns is
// the caller's to delete; deleting a borrowed one leaves the document as it is.
//
// Paths are those of JsonData. Failures are logged and answered by results; nothing is thrown.
//
// Threads: a document and all handles on it are used by one thread at a time. There is no lock
// here.
#ifndef HEARTH_TREE_MAP_OBJECT_H
#define HEARTH_TREE_MAP_OBJECT_H

#include <json-c/json.h>

#include <list>

#include "hearth/export.h"

class HEARTH_API TreeMapObject {
 public:
  // Owning handles, on:
  TreeMapObject();                               // nothing
  explicit TreeMapObject(bool isArray);          // a new empty array, else a new empty object
  explicit TreeMapObject(const char* text);      // what the text parses to; nothing if it does not
  explicit TreeMapObject(json_object* adopted);  // that value, taking over the caller's reference
  // ... the message document of API area apiT and message index commT. A file that is missing or
  // does not parse gives an empty object; a message without a file name leaves the handle without a
  // value and sets error to 1.
  TreeMapObject(unsigned int apiT, unsigned int commT);

  // Gives back the reference of an owning handle; a borrowed one gives back nothing.
  ~TreeMapObject();

  TreeMapObject(const TreeMapObject&) = delete;
  TreeMapObject& operator=(const TreeMapObject&) = delete;

  // --- Values by path ----------------------------------------------------------------------------

  // Stores a value at path, making what is missing on the way.
  // T: int, unsigned int (stored as a signed 32-bit number), double, bool, const char* (copied).
  // Failure: logged, as JsonData::setJObj refuses; a null text changes nothing.
  template <typename T>
  void set(const char* path, T value) = delete;

  // Stores the other handle's value at path. The document shares it: both see later changes.
  // Ownership: the document takes a reference of its own; the caller still deletes obj.
  // Failure: logged, twice: by JsonData::setJObj, whose refusals are these, and with the path. A
  // null obj changes nothing; one without a value stores JSON null.
  void set(const char* path, TreeMapObject* obj);

  // The value at path, always with an answer: 0, 0.0, false or null when there is none, json-c's
  // conversion (with a warning) when it has another type.
  // T: int, double, bool, const char*.
  // Ownership: a text is the document's, valid while its value is there unchanged.
  template <typename T>
  T get(const char* path) const = delete;

  // A borrowed handle on the value at path; for "" an owning one on this handle's own value.
  // Failure: null when nothing is there, JSON null included.
  TreeMapObject* get(const char* path) const;

  // The value at path into out, and true, when it is there with the right type. Otherwise false and
  // out as it was, but null for a text.
  // T: int, double (each from either kind of number), bool, const char* (the document's).
  template <typename T>
  bool get_ex(const char* path, T& out) const = delete;

  // Removes the member or element at path; later elements move up. Nothing there: nothing happens.
  // A member holding JSON null counts as nothing, and so does an element named by an index without
  // digits, "[x]" or "[+]", which reading takes for 0: "Wrong array index" is logged.
  void del(const char* path);

  // --- The value as an array ---------------------------------------------------------------------
  // Each answers -1 (at: null) when the value is no array.

  // Number of elements.
  int len() const;

  // A borrowed handle on an element; its jobj is null for JSON null.
  // Failure: null past the end.
  TreeMapObject* at(unsigned int index) const;

  // Stores item's value at index, or at the end when index is past it. Result: where it now is.
  // Ownership: array and item share the value; the caller still deletes item, whose key_obj becomes
  // the index. Failure: -1 and nothing logged: also for a null item, one without a value, one whose
  // value is this array or holds it at any depth, and without memory.
  int setArrayItem(unsigned int index, TreeMapObject* item);
  int addArrayItem(TreeMapObject* item);

  // Appends a scalar. Result: its index.
  // T: int, bool, double, const char* (copied; -1 for null).
  template <typename T>
  int addArrayItem(T value) = delete;

  // Removes one element, or all. Result: how many are left.
  // The elements move to a new array, which takes the old one's place in this handle and in its
  // container. Any other handle on the old array is stale:
  // - a borrowed one may be deleted, and removing through it answers -1 while its container lives;
  // - an owning one keeps the old array with all its elements. So a removal through a handle from
  //   get("") is seen by that handle alone, not by the document.
  // Handles on elements of the old array are stale too: their jobj_parent may be freed. They may be
  // deleted and nothing else; a removal through one of them reads freed memory.
  int delArrayItem(unsigned int index);
  int clearArrayItems();

  // --- Search ------------------------------------------------------------------------------------

  // Owning handles on every object, at any depth and in document order, that has a member of this
  // name and exactly this type and value. They stay valid after the document is gone. An object
  // that stands in several places is found in each.
  // T: int, unsigned int (as a signed 32-bit number), double, bool, const char*.
  // Failure: an empty list, with a log line for a key or a root that cannot be searched. What there
  // is no memory for is left out.
  template <typename T>
  std::list<TreeMapObject*> find(const char* key, T value) const = delete;

  // The two steps of find, on one object or array and a probe value of the type sought. Handles are
  // appended to result. Result: how many. Nothing of this handle is used.
  int findInObject(std::list<TreeMapObject*>& result, const char* key, json_object* probe,
                   json_object* object) const;
  int findInArray(std::list<TreeMapObject*>& result, const char* key, json_object* probe,
                  json_object* array) const;

  // --- Copy and log ------------------------------------------------------------------------------

  // An owning handle on a copy of the value at path (null or "": the whole) that shares nothing.
  // Failure: null, logged: nothing is there, or JsonData::cloneObject cannot copy it.
  TreeMapObject* clone(const char* path) const;

  // Logs the value at path ("" for the whole), as JsonData::dumpObject does.
  void dump(const char* path);

  // --- Fields ------------------------------------------------------------------------------------

  json_object* jobj;         // the value; may be null
  char key_obj[32];          // its member name or "[index]" in its container, cut at 31 characters
  json_object* jobj_parent;  // the container of a borrowed value; null when the handle owns it
  int error;                 // 1: a message document without a file name
};

template <>
HEARTH_API void TreeMapObject::set<int>(const char* path, int value);
template <>
HEARTH_API void TreeMapObject::set<unsigned int>(const char* path, unsigned int value);
template <>
HEARTH_API void TreeMapObject::set<double>(const char* path, double value);
template <>
HEARTH_API void TreeMapObject::set<bool>(const char* path, bool value);
template <>
HEARTH_API void TreeMapObject::set<const char*>(const char* path, const char* value);

template <>
HEARTH_API int TreeMapObject::get<int>(const char* path) const;
template <>
HEARTH_API double TreeMapObject::get<double>(const char* path) const;
template <>
HEARTH_API bool TreeMapObject::get<bool>(const char* path) const;
template <>
HEARTH_API const char* TreeMapObject::get<const char*>(const char* path) const;

template <>
HEARTH_API bool TreeMapObject::get_ex<int>(const char* path, int& out) const;
template <>
HEARTH_API bool TreeMapObject::get_ex<double>(const char* path, double& out) const;
template <>
HEARTH_API bool TreeMapObject::get_ex<bool>(const char* path, bool& out) const;
template <>
HEARTH_API bool TreeMapObject::get_ex<const char*>(const char* path, const char*& out) const;

template <>
HEARTH_API int TreeMapObject::addArrayItem<int>(int value);
template <>
HEARTH_API int TreeMapObject::addArrayItem<bool>(bool value);
template <>
HEARTH_API int TreeMapObject::addArrayItem<double>(double value);
template <>
HEARTH_API int TreeMapObject::addArrayItem<const char*>(const char* value);

template <>
HEARTH_API std::list<TreeMapObject*> TreeMapObject::find<int>(const char* key, int value) const;
template <>
HEARTH_API std::list<TreeMapObject*> TreeMapObject::find<unsigned int>(const char* key,
                                                                       unsigned int value) const;
template <>
HEARTH_API std::list<TreeMapObject*> TreeMapObject::find<double>(const char* key,
                                                                 double value) const;
template <>
HEARTH_API std::list<TreeMapObject*> TreeMapObject::find<bool>(const char* key, bool value) const;
template <>
HEARTH_API std::list<TreeMapObject*> TreeMapObject::find<const char*>(const char* key,
                                                                      const char* value) const;

#endif
