// A gateway configuration against its schema of 130 KB.
#include <rapidjson/document.h>
#include <rapidjson/schema.h>

#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "bench/bench.h"
#include "bench/documents.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "schema/json_validate.h"

namespace bench {
namespace {

using valijson::adapters::NlohmannJsonAdapter;

// Looks each name up in the schema, and does nothing else.
size_t visit(json_object* value, json_object* schema) {
  json_object* inside = nullptr;
  size_t visited = 1;
  if (json_object_is_type(value, json_type_object) != 0) {
    json_object_object_get_ex(schema, "properties", &inside);
    json_object_object_foreach(value, name, member) {
      json_object* rule = nullptr;
      json_object_object_get_ex(inside, name, &rule);
      visited += visit(member, rule);
    }
  } else if (json_object_is_type(value, json_type_array) != 0) {
    json_object_object_get_ex(schema, "items", &inside);
    const size_t length = json_object_array_length(value);
    for (size_t i = 0; i < length; ++i) {
      visited += visit(json_object_array_get_idx(value, i), inside);
    }
  }
  return visited;
}

std::shared_ptr<valijson::Schema> compiled(const nlohmann::json& text) {
  auto schema = std::make_shared<valijson::Schema>();
  valijson::SchemaParser().populateSchema(NlohmannJsonAdapter(text), *schema);
  return schema;
}

bool conforms(const nlohmann::json& instance, const valijson::Schema& schema) {
  return valijson::Validator().validate(schema, NlohmannJsonAdapter(instance), nullptr);
}

std::shared_ptr<rapidjson::Document> rapidDocument(const std::string& text) {
  auto document = std::make_shared<rapidjson::Document>();
  document->Parse(text.c_str());
  return document;
}

bool conforms(const rapidjson::Document& instance, const rapidjson::SchemaDocument& schema) {
  rapidjson::SchemaValidator validator(schema);
  return instance.Accept(validator);
}

// The schema comes as text each time.
void addParsed() {
  addCase("validate_parsed/floor", [] {
    return
        [text = gatewaySchemaText()] { return json_object_put(json_tokener_parse(text.c_str())); };
  });
  addCase("validate_parsed/hearth", [] {
    auto handle = std::shared_ptr<TreeMapObject>(JsonData::createObject(gatewayText().c_str()));
    return [=, text = gatewaySchemaText()] {
      return JsonData::validateObject(handle.get(), text.c_str());
    };
  });
  addCase("validate_parsed/valijson", [] {
    return [text = gatewaySchemaText(), instance = nlohmann::json::parse(gatewayText())] {
      return conforms(instance, *compiled(nlohmann::json::parse(text)));
    };
  });
  addCase("validate_parsed/rapidjson", [] {
    return [text = gatewaySchemaText(), instance = rapidDocument(gatewayText())] {
      return conforms(*instance, rapidjson::SchemaDocument(*rapidDocument(text)));
    };
  });
}

// The schema is there in the form that each way wants.
void addReady() {
  addCase("validate_ready/floor", [] {
    return [schema = parsed(gatewaySchemaText()), instance = parsed(gatewayText())] {
      return visit(instance.get(), schema.get());
    };
  });
  addCase("validate_ready/hearth", [] {
    return [schema = parsed(gatewaySchemaText()), instance = parsed(gatewayText())] {
      return json_validate_instance(instance.get(), schema.get());
    };
  });
  addCase("validate_ready/valijson", [] {
    return
        [schema = compiled(nlohmann::json::parse(gatewaySchemaText())),
         instance = nlohmann::json::parse(gatewayText())] { return conforms(instance, *schema); };
  });
  addCase("validate_ready/rapidjson", [] {
    auto schema = std::make_shared<rapidjson::SchemaDocument>(*rapidDocument(gatewaySchemaText()));
    return
        [schema, instance = rapidDocument(gatewayText())] { return conforms(*instance, *schema); };
  });
}

}  // namespace

void addValidationCases() {
  addParsed();
  addReady();
}

}  // namespace bench
