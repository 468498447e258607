#include "support/JsonSchema.h"

#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

namespace test {

using Adapter = valijson::adapters::NlohmannJsonAdapter;

struct JsonSchema::Parsed {
    valijson::Schema schema;
};

JsonSchema::JsonSchema(std::string_view schema) : m_parsed(std::make_unique<Parsed>()) {
    const nlohmann::json text = nlohmann::json::parse(schema);
    valijson::SchemaParser().populateSchema(Adapter(text), m_parsed->schema);
}

JsonSchema::~JsonSchema() = default;

std::string JsonSchema::refusalOf(std::string_view text) const {
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    if (json.is_discarded()) {
        return "no JSON";
    }
    // Numbers are no texts that spell numbers.
    valijson::Validator validator(valijson::Validator::kStrongTypes);
    valijson::ValidationResults results;
    if (validator.validate(m_parsed->schema, Adapter(json), &results)) {
        return {};
    }
    std::string all = "refused";
    for (const auto& error : results) {
        all += "\n";
        for (const std::string& step : error.context) {
            all += step;
        }
        all += ": " + error.description;
    }
    return all;
}

} // namespace test
