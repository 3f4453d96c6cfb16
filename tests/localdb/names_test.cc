// File names, message documents, and the check of a message against its schema.
#include "tests/localdb/database_fixture.h"

namespace {

using NamesTest = DatabaseTest;

std::string orNull(const char* text) {
  return text != nullptr ? text : "null";
}

TEST_F(NamesTest, AreFormedFromLocationAreaAndLabel) {
  struct Row {
    unsigned int area, message;
    const char *database, *document, *schema, *lines;
  };
  const Row rows[] = {
      {0, 0, "L/gateway/gateway.ldb", "L/gateway/GATEWAY_LOGIN_REQ.ldb",
       "L/gateway/GATEWAY_LOGIN_REQ_SCHEMA.ldb", ""},
      {4, 173, "L/service/service.ldb", "L/service/SERVICE_ACCESS_ADM_PUT_RESP.ldb",
       "L/service/SERVICE_ACCESS_ADM_PUT_RESP_SCHEMA.ldb", ""},
      {6, 20, "L/qos/qos.ldb", "null", "null", "ERROR: getFileName: area 6 has no message 20\n"},
      {7, 0, "L/misc/misc.ldb", "null", "null", ""},
      {8, 0, "null", "null", "null", "ERROR: getApiDir: there is no area 8\n"},
      {~0U, ~0U, "null", "null", "null", "ERROR: getApiDir: there is no area 4294967295\n"},
  };
  BEConfig::DATA_LOCATION = "L";
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << "area " << row.area << " message " << row.message);
    const char *database = nullptr, *document = nullptr, *schema = nullptr;
    EXPECT_EQ(linesOf([&] {
                document = LocalDbCtrl::getFileName(row.area, row.message);
                database = LocalDbCtrl::getFileName(row.area);
              }),
              row.lines);
    schema = LocalDbCtrl::getSchemaFile(row.area, row.message);
    EXPECT_EQ(orNull(database), row.database);
    EXPECT_EQ(orNull(document), row.document) << "each operation has its buffer";
    EXPECT_EQ(orNull(schema), row.schema);
  }
}

TEST_F(NamesTest, AreNeverCut) {
  const std::string fits(255 - std::string("/misc/misc.ldb").size(), 'x');
  BEConfig::DATA_LOCATION = fits;
  EXPECT_EQ(orNull(LocalDbCtrl::getFileName(API_MISC)), fits + "/misc/misc.ldb");
  BEConfig::DATA_LOCATION = fits + "x";
  EXPECT_EQ(linesOf([] { EXPECT_EQ(LocalDbCtrl::getFileName(API_MISC), nullptr); }),
            "ERROR: getFileName: the name of misc/misc.ldb is longer than 255 characters\n");
  EXPECT_NE(linesOf([] {
              LocalDbCtrl::lockDbObject(API_MISC, "", "default");
            }).find("WARN: lockDbObject: Cannot load database from (none)\n"),
            std::string::npos);
  EXPECT_EQ(TreeMapObject(API_WIFI, 0).error, 1);
}

TEST_F(NamesTest, BelongToTheirThread) {
  const char* const mine = LocalDbCtrl::getFileName(API_WIFI);
  Thread().run([] { return LocalDbCtrl::getFileName(API_NETWORK); });
  EXPECT_EQ(mine, data_ / "wifi/wifi.ldb");
}

TEST_F(NamesTest, LeadMessageDocumentsToTheirFiles) {
  struct Row {
    unsigned int area;
    const char *text, *value;
    int error;
    const char* lines;
  };
  constexpr char kFound[] =
      "INFO: TreeMapObject::TreeMapObject filename=DATA/wifi/WIFI_INTERFACE_GET_REQ.ldb\n";
  constexpr char kNameless[] =
      "INFO: TreeMapObject::TreeMapObject filename=(none)\n"
      "DEBUG: failed load object from (none)\n";
  const Row rows[] = {
      {API_WIFI, "[1]", "[ 1 ]", 0, kFound},
      {API_WIFI, "{", "{ }", 0, kFound},
      {API_WIFI, nullptr, "{ }", 0, kFound},
      {API_MISC, "[1]", "null", 1, kNameless},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << "area " << row.area << " text " << orNull(row.text));
    const std::string file = data_.file("wifi/WIFI_INTERFACE_GET_REQ.ldb", orNull(row.text));
    if (row.text == nullptr) {
      std::filesystem::remove(file);
    }
    std::unique_ptr<TreeMapObject> document;
    EXPECT_EQ(linesOf([&] { document = std::make_unique<TreeMapObject>(row.area, 0U); }),
              row.lines);
    EXPECT_STREQ(json_object_to_json_string(document->jobj), row.value);
    EXPECT_EQ(document->error, row.error);
    EXPECT_EQ(document->jobj_parent, nullptr);
    EXPECT_STREQ(document->key_obj, "");
  }
}

TEST_F(NamesTest, LeadMessagesToTheirSchemas) {
  TreeMapObject object(false);
  TreeMapObject nothing;
  data_.file("wifi/WIFI_RADIO_GET_REQ_SCHEMA.ldb", R"({"required": ["channel"]})");
  struct Row {
    TreeMapObject* object;
    unsigned int area, message;
    int result;
    const char* lines;
  };
  const Row rows[] = {
      {&object, 1, 0, 0, "The validation is passed with notice\n"},
      {&object, 1, 2, 2, "DEBUG: validateFile: validate file DATA/wifi/WIFI_RADIO_GET_REQ_SCHEMA"},
      {nullptr, 1, 0, 2, "ERROR: validateObject: incorrect object obj=(nil) jobj=(nil)\n"},
      {&nothing, 1, 0, 2, "ERROR: validateObject: incorrect object obj=PTR jobj=(nil)\n"},
      {nullptr, 7, 3, 2, "ERROR: validateObject: failed to get schema file apiT=7 commT=3\n"},
  };
  for (const Row& row : rows) {
    int result = -1;
    const std::string lines =
        linesOf([&] { result = LocalDbCtrl::validateObject(row.object, row.area, row.message); });
    EXPECT_NE(lines.find(row.lines), std::string::npos) << row.lines << "\nnot in\n" << lines;
    EXPECT_EQ(result, row.result) << row.lines;
  }
}

}  // namespace
