// Holds JSON against a JSON Schema: one that keeps to what its drafts 7 and 2020-12 share.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace test {

class JsonSchema {
public:
    /// \param schema the schema's text
    /// Failure: throws for what is no schema
    explicit JsonSchema(std::string_view schema);
    ~JsonSchema();
    JsonSchema(const JsonSchema&) = delete;
    JsonSchema& operator=(const JsonSchema&) = delete;

    /// Why the schema refuses the JSON `text`, for people; empty when it takes it.
    std::string refusalOf(std::string_view text) const;

private:
    struct Parsed;
    std::unique_ptr<Parsed> m_parsed;
};

} // namespace test
