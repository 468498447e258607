// JSON values, and the one place that parses them.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace mrl {

/// A JSON value whose members keep their order.
using Json = nlohmann::ordered_json;

/// Why a text was refused. what() is the whole refusal in English, for logs.
class JsonFailure : public std::runtime_error {
public:
    enum class Reason {
        syntax,         ///< at `line` and `column`; `detail` is the parser's description
        memberTwice,    ///< `detail` is the name that one object has twice
        tooManyMembers, ///< one object has more than MOST_MEMBERS, `detail` is the first of them
        number          ///< too large for any type; `detail` is the parser's description
    };

    /// The library looks members up one by one: many more would take minutes.
    static constexpr std::size_t MOST_MEMBERS = 2000;

    JsonFailure(Reason why, std::string about, std::size_t inLine = 0, std::size_t inColumn = 0);

    Reason reason;
    std::string detail;
    std::size_t line;   ///< from 1; 0 unless the syntax is wrong
    std::size_t column; ///< in bytes, from 1; 0 unless the syntax is wrong
};

/// The value of a JSON text in UTF-8. Any thread.
/// Failure: throws JsonFailure
Json parseJson(std::string_view text);

/// Receives the parts of a JSON text in their order; each operation returns whether to go on.
using JsonParts = nlohmann::json_sax<Json>;

/// Hands the parts of a JSON text in UTF-8 to `parts` without making values of them: for many texts
/// of which a few members count. A member that an object has twice comes twice. Any thread.
/// \return false for a text that is no JSON, and when `parts` stopped; what was read has been
/// handed over by then
bool readJson(std::string_view text, JsonParts& parts);

} // namespace mrl
