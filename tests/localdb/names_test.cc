// File names, message documents, and the check of a message against its schema.
#include <climits>

#include "tests/localdb/database_fixture.h"

namespace {

using NamesTest = DatabaseTest;

std::string orNull(const char* text) {
  return text != nullptr ? text : "null";
}

TEST_F(NamesTest, AreFormedFromLocationAreaAndLabel) {
  const struct {
    unsigned int area, message;
    const char *database, *document, *schema, *lines;
  } rows[] = {
      {0, 0, "L/gateway/gateway.ldb", "L/gateway/GATEWAY_LOGIN_REQ.ldb",
       "L/gateway/GATEWAY_LOGIN_REQ_SCHEMA.ldb", ""},
      {6, 19, "L/qos/qos.ldb", "L/qos/QOS_IPTV_UPDATE_RESP.ldb",
       "L/qos/QOS_IPTV_UPDATE_RESP_SCHEMA.ldb", ""},
      {6, 20, "L/qos/qos.ldb", "null", "null", "ERROR: getFileName: area 6 has no message 20\n"},
      {7, 0, "L/misc/misc.ldb", "null", "null", ""},
      {UINT_MAX, UINT_MAX, "null", "null", "null",
       "ERROR: getApiDir: there is no area 4294967295\n"
       "ERROR: getApiDir: there is no area 4294967295\n"},
  };
  BEConfig::DATA_LOCATION = "L";
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "area " << row.area << " message " << row.message);
    CapturedLog log;
    const char* const document = LocalDbCtrl::getFileName(row.area, row.message);
    const char* const database = LocalDbCtrl::getFileName(row.area);
    EXPECT_EQ(row.lines, log.text());
    EXPECT_EQ(row.schema, orNull(LocalDbCtrl::getSchemaFile(row.area, row.message)));
    std::async(std::launch::async, [] { LocalDbCtrl::getFileName(API_WIFI); }).get();
    EXPECT_EQ(row.database, orNull(database)) << "each operation and thread has its buffer";
    EXPECT_EQ(row.document, orNull(document));
  }
}

TEST_F(NamesTest, AreNeverCut) {
  const std::string fits(255 - std::string("/misc/misc.ldb").size(), 'x');
  BEConfig::DATA_LOCATION = fits;
  EXPECT_EQ(fits + "/misc/misc.ldb", orNull(LocalDbCtrl::getFileName(API_MISC)));
  BEConfig::DATA_LOCATION = fits + "x";
  EXPECT_EQ("null", orNull(LocalDbCtrl::getFileName(API_MISC)));
  CapturedLog log;
  LocalDbCtrl::lockDbObject(API_MISC, "", "default");
  EXPECT_TRUE(log.has("getFileName: the name of misc/misc.ldb is longer than 255 characters\n"));
  EXPECT_TRUE(log.has("WARN: lockDbObject: Cannot load database from (none)\n"));
}

TEST_F(NamesTest, LeadMessageDocumentsToTheirFiles) {
  const struct {
    unsigned int area, message;
    const char* value;
    int error;
    const char* lines;
  } rows[] = {
      {1, 0, "[1]", 0, "INFO: TreeMapObject::TreeMapObject filename=./wifi/"},
      {1, 1, "{}", 0, "INFO: TreeMapObject::TreeMapObject filename=./wifi/"},
      {1, 2, "{}", 0, "INFO: TreeMapObject::TreeMapObject filename=./wifi/"},
      {7, 0, "null", 1,
       "INFO: TreeMapObject::TreeMapObject filename=(none)\n"
       "DEBUG: failed load object from (none)\n"},
  };
  folder_.file("wifi/WIFI_INTERFACE_GET_REQ.ldb", "[1]");
  folder_.file("wifi/WIFI_INTERFACE_GET_RESP.ldb", "{");
  for (const auto& row : rows) {
    CapturedLog log;
    const TreeMapObject document(row.area, row.message);
    EXPECT_EQ(0U, log.text().rfind(row.lines, 0)) << row.lines;
    EXPECT_EQ(row.value, plain(document));
    EXPECT_EQ(row.error, document.error);
    EXPECT_EQ(nullptr, document.jobj_parent);
    EXPECT_STREQ("", document.key_obj);
  }
}

TEST_F(NamesTest, LeadMessagesToTheirSchemas) {
  TreeMapObject object(false);
  TreeMapObject nothing;
  folder_.file("wifi/WIFI_RADIO_GET_REQ_SCHEMA.ldb", R"({"required": ["channel"]})");
  const struct {
    TreeMapObject* checked;
    unsigned int area, message;
    int result;
    const char* line;
  } rows[] = {
      {&object, 1, 0, 0, "The validation is passed with notice\n"},
      {&object, 1, 2, 2, "DEBUG: validateFile: validate file ./wifi/WIFI_RADIO_GET_REQ_SCHEMA"},
      {nullptr, 1, 0, 2, "ERROR: validateObject: incorrect object obj=(nil) jobj=(nil)\n"},
      {&nothing, 1, 0, 2, "ERROR: validateObject: incorrect object obj=PTR jobj=(nil)\n"},
      {nullptr, 7, 3, 2, "ERROR: validateObject: failed to get schema file apiT=7 commT=3\n"},
  };
  for (const auto& row : rows) {
    CapturedLog log;
    EXPECT_EQ(row.result, LocalDbCtrl::validateObject(row.checked, row.area, row.message))
        << row.line;
    EXPECT_TRUE(log.has(row.line)) << row.line << "not in\n" << log.text();
  }
}

}  // namespace
