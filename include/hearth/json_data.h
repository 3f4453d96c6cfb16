// Paths into json-c trees, and services on whole documents.
//
// A path is member names and index tokens joined by dots: "radios.[0].ssid". docs/paths.md has the
// whole language.
//
// Threads, for all operations here: any thread may call them, and each is as safe as the values
// given to it; the caller keeps other threads off a tree that it reads or changes, and off json-c
// values that two trees share. LocalDbCtrl's area lock does that for the local database. Nothing is
// kept between calls but by saveObjectToFile, which says so.
#ifndef HEARTH_JSON_DATA_H
#define HEARTH_JSON_DATA_H

#include <json-c/json.h>

#include "hearth/export.h"

class TreeMapObject;

class HEARTH_API JsonData {
 public:
  JsonData() = delete;

  // --- Paths -------------------------------------------------------------------------------------

  // Finds the value at path below jobj. "" is jobj itself.
  // Failure: null. A path that ends at a member holding JSON null gives null too, with parent and
  // key set; an array element holding JSON null is a failure.
  // Ownership: the value and parent stay the tree's. key is a copy of the last token that the
  // caller releases with delete[]; it is null for "", for an empty last token and after a failure
  // before the last token. parent is the container of the value; after a failure at the last token
  // it is the container in which that token was looked up, after an earlier one it is null.
  // Requires: nothing; with a null jobj or path neither parent nor key is written.
  static json_object* getJObj(json_object* jobj, const char* path, json_object*& parent,
                              const char*& key);

  // The same without parent and key.
  static json_object* getJObj(json_object* jobj, const char* path);

  // Stores jval at path below jobj, making the objects, arrays and elements that are missing on the
  // way. An index at or past an array's end appends. A path that begins with a member name, applied
  // to an array, goes to a new element at the array's end; with that index in front of it, it is
  // cut at 255 characters. A null jval stores JSON null.
  // Result: 0 when stored, else 2 after one LOG_ERROR line. What earlier steps made stays; nothing
  // else is changed.
  // Ownership: the tree takes a reference of its own on jval, the caller keeps its own. On success
  // parent is the container that now holds jval, and key a copy of the last token that the caller
  // releases with free() (null if there is no memory for it); on failure neither is written.
  // Refused:
  // - a null jobj or path, and the empty path;
  // - a member name where the tree holds no object, an index where it holds no array, and JSON null
  //   on the way;
  // - an index token that is shorter than 3 characters or blank inside;
  // - a path of more than 64 tokens on which something would have to be made (one of any length
  //   reaches what is there);
  // - a jval that is, or holds at any depth, the container that it would be stored in. Nothing else
  //   about jval matters: it may be large, shared or deep. One that is an object or array is
  //   searched for that container, in a time that grows with the number of values in it;
  // - anything for which there is no memory.
  // Depth: nothing limits how deep calls on handles inside handles nest a tree, but json-c releases
  // it by recursion: on a thread with 128 KiB of stack some 2,600 levels, less with a debug build.
  static int setJObj(json_object* jobj, const char* path, json_object* jval, json_object*& parent,
                     const char*& key);

  // The same without parent and key.
  static int setJObj(json_object* jobj, const char* path, json_object* jval);

  // --- Comparison --------------------------------------------------------------------------------

  // 1 when two scalars of the types given are equal, else 0. Types that differ, and two nulls, are
  // not equal. Integers and booleans are compared as 32-bit integers, doubles exactly, strings
  // whole. Requires: srcType and dstType are the values' own types. Objects and arrays are not
  // compared: the answer is 1, with a warning.
  static int compareObjVal(json_object* src, json_type srcType, json_object* dst,
                           json_type dstType);

  // --- Documents ---------------------------------------------------------------------------------
  // Handles returned here own their value; the caller deletes them.

  // A handle on the value that text parses to.
  // Failure: null when it does not parse, for a null text, and for the text "null": JSON null is a
  // null pointer in json-c, and so no value.
  static TreeMapObject* createObject(const char* text);

  // A handle on the value in the file at path.
  // Failure: null when there is no such file; a handle with a null jobj when the file does not
  // parse, holds JSON null, cannot be read or is no regular file.
  static TreeMapObject* createObjectFromFile(const char* path);

  // The handle's value as indented text.
  // Failure: null for a null handle, one whose error is set, and one without a value; for a value
  // nested more than 256 levels deep, which a small stack cannot render; and without memory.
  // Ownership: the text is the value's, until that is rendered again, changed or released.
  static const char* getJson(TreeMapObject* obj);

  // A copy of the value that shares nothing with it: what rendering it and parsing the text gives.
  // A json-c serializer of the caller's own counts where it comes with user data or stands on a
  // double; json-c does not tell of others, and such a value is copied as if it had none.
  // Failure: null for a null value, for one nested deeper than the parser reads (32 levels, the
  // innermost value counted), for one whose text does not parse, and without memory.
  // Ownership: the caller holds the one reference.
  static json_object* cloneObject(json_object* jobj);

  // Writes the handle's value to the file at path, indented. The file is replaced in one step: at
  // every moment, power cuts included, it holds the old document or the new one. Mode and owner of
  // an existing file are kept, a symbolic link's target is replaced, devices and pipes are written
  // straight.
  // Result: 0 when written, else 2 with the file as it was. Refused: a null handle, one without a
  // value, and a value nested deeper than the parser would read back (32 levels, the innermost
  // value counted).
  // State: the new document is first written to a temporary file beside the old one. One that a
  // crash left in that folder is removed; which folders have been searched for such strays is
  // remembered for the whole process, under a lock of its own.
  static int saveObjectToFile(const char* path, TreeMapObject* obj);

  // Logs the value at path ("" for the whole) as LOG_INFO. Log lines are cut at 1,023 bytes. A
  // value nested more than 256 levels deep is logged as "(null)".
  static void dumpObject(TreeMapObject* obj, const char* path);

  // --- Validation against a JSON Schema ----------------------------------------------------------
  // Result: 0 when the value conforms or there is nothing to check against, else 2. A schema that
  // is missing, or a schema text that does not parse, lets the value pass with a warning; a schema
  // file that exists and does not parse fails it.

  static int validateObject(TreeMapObject* obj, const char* schemaText);
  static int validateFile(const char* instanceFile, const char* schemaFile);
  static int validateFile(TreeMapObject* obj, const char* schemaFile);
};

#endif
