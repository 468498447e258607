// Reads the values of a scenario; every refusal names the path of the value.
#pragma once

#include <radiosim/Scenario.h>

#include <mrl/Json.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace radiosim {

/// The word for a number.
struct Word {
    std::string_view word;
    std::int32_t value;
};

using Words = std::vector<Word>;

/// One value and its path. A reading operation throws a ScenarioError with the path when the value
/// is not as it expects.
class JsonReader {
public:
    /// The value of `text`.
    /// Failure: throws ScenarioError: malformed text with its line and column, a key that stands
    /// twice in one object with its name
    static mrl::Json parse(std::string_view text);

    /// \param value must outlive the reader
    JsonReader(const mrl::Json& value, std::string path)
        : m_value(value), m_path(std::move(path)) {}

    [[noreturn]] void refuse(const std::string& reason) const;

    /// The value must be an object, with no other keys than these.
    void expectKeys(std::initializer_list<std::string_view> keys) const;
    bool has(std::string_view key) const;
    /// The value of a key of an object; it must be there.
    JsonReader at(std::string_view key) const;
    /// The elements of an array.
    std::vector<JsonReader> elements() const;
    bool isNumber() const { return m_value.is_number(); }
    bool isArray() const { return m_value.is_array(); }
    bool isObject() const { return m_value.is_object(); }
    bool isNull() const { return m_value.is_null(); }

    std::string text() const;
    bool flag() const;
    std::int64_t integer(std::int64_t min, std::int64_t max) const;
    std::uint32_t unsigned32() const;
    /// A number with or without decimals.
    double decimal(int min, int max) const;
    Milliseconds milliseconds() const;
    /// One of `words`, or a number that need not be among them.
    std::int32_t wordOrNumber(const Words& words) const;
    /// The place in `words` alone.
    std::int32_t word(const Words& words) const;
    /// Pairs of hexadecimal digits, with or without one ':' or '-' or blank between the pairs.
    std::vector<std::uint8_t> hexBytes() const;

    /// Sets `target` when the key is there.
    template <typename Target, typename Read>
    void optional(std::string_view key, Target& target, Read read) const {
        if (has(key)) {
            target = read(at(key));
        }
    }

private:
    const mrl::Json& m_value;
    std::string m_path;
};

} // namespace radiosim
