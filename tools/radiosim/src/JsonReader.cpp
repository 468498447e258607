#include "JsonReader.h"

#include <algorithm>
#include <limits>
#include <set>

namespace radiosim {

namespace {

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

// The library's message without its own name and place: "... column 5: syntax error ..." ends so.
std::string reasonOf(const nlohmann::json::parse_error& error) {
    const std::string message = error.what();
    const std::size_t column = message.find("column ");
    const std::size_t colon = message.find(": ", column == std::string::npos ? 0 : column);
    return colon == std::string::npos ? message : message.substr(colon + 2);
}

std::string placeOf(std::string_view text, std::size_t byte) {
    // The library counts the byte that it stumbled over; the one past the end is possible.
    const std::string_view before = text.substr(0, std::min(byte == 0 ? 0 : byte - 1, text.size()));
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n');
    const std::size_t column =
        lineStart == std::string_view::npos ? before.size() : before.size() - lineStart - 1;
    return "line " + std::to_string(lines + 1) + ", column " + std::to_string(column + 1);
}

int hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const int lower = digit | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// A key in a path, as JSON Pointer escapes it.
std::string escaped(std::string_view key) {
    std::string text;
    for (const char character : key) {
        if (character == '~' || character == '/') {
            text += character == '~' ? "~0" : "~1";
        } else {
            text += character;
        }
    }
    return text;
}

} // namespace

ScenarioError::ScenarioError(std::string place, std::string reason)
    : std::runtime_error(place.empty() ? reason : place + ": " + reason), m_place(std::move(place)),
      m_reason(std::move(reason)) {}

JsonReader::Value JsonReader::parse(std::string_view text) {
    // Of two keys with one name the library silently keeps the last; in a scenario that is an
    // access point that quietly is not what the writer sees.
    std::vector<std::set<std::string>> keys;
    std::string twice;
    const auto watch = [&](int /*depth*/, Value::parse_event_t event, const Value& parsed) {
        if (event == Value::parse_event_t::object_start) {
            keys.emplace_back();
        } else if (event == Value::parse_event_t::object_end) {
            keys.pop_back();
        } else if (event == Value::parse_event_t::key) {
            const auto key = parsed.get<std::string>();
            if (!keys.back().insert(key).second && twice.empty()) {
                twice = key;
            }
        }
        return true;
    };
    Value value;
    try {
        value = Value::parse(text, watch);
    } catch (const Value::parse_error& error) {
        throw ScenarioError(placeOf(text, error.byte), reasonOf(error));
    } catch (const Value::exception& error) {
        throw ScenarioError("/", error.what()); // a number that no type can hold
    }
    if (!twice.empty()) {
        throw ScenarioError("/", "the key " + inQuotes(twice) + " stands twice in one object");
    }
    return value;
}

void JsonReader::refuse(const std::string& reason) const {
    throw ScenarioError(m_path.empty() ? "/" : m_path, reason);
}

void JsonReader::expectKeys(std::initializer_list<std::string_view> keys) const {
    if (!m_value.is_object()) {
        refuse("an object was expected");
    }
    for (const auto& [key, value] : m_value.items()) {
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
            at(key).refuse("there is no such key here");
        }
    }
}

bool JsonReader::has(std::string_view key) const {
    return m_value.contains(key);
}

JsonReader JsonReader::at(std::string_view key) const {
    const auto found = m_value.find(key);
    if (found == m_value.end()) {
        refuse("the key " + inQuotes(key) + " is missing");
    }
    return {*found, m_path + '/' + escaped(key)};
}

std::vector<JsonReader> JsonReader::elements() const {
    if (!m_value.is_array()) {
        refuse("an array was expected");
    }
    std::vector<JsonReader> readers;
    for (std::size_t i = 0; i < m_value.size(); ++i) {
        readers.emplace_back(m_value[i], m_path + '/' + std::to_string(i));
    }
    return readers;
}

std::string JsonReader::text() const {
    if (!m_value.is_string()) {
        refuse("a text was expected");
    }
    return m_value.get<std::string>();
}

bool JsonReader::flag() const {
    if (!m_value.is_boolean()) {
        refuse("true or false was expected");
    }
    return m_value.get<bool>();
}

std::int64_t JsonReader::integer(std::int64_t min, std::int64_t max) const {
    const std::string expected =
        "a whole number from " + std::to_string(min) + " to " + std::to_string(max);
    if (!m_value.is_number_integer()) {
        refuse(expected + " was expected");
    }
    const bool tooBig = m_value.is_number_unsigned() &&
                        m_value.get<std::uint64_t>() >
                            static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (tooBig || m_value.get<std::int64_t>() < min || m_value.get<std::int64_t>() > max) {
        refuse(m_value.dump() + " is out of range: " + expected + " was expected");
    }
    return m_value.get<std::int64_t>();
}

std::uint32_t JsonReader::unsigned32() const {
    return static_cast<std::uint32_t>(integer(0, std::numeric_limits<std::uint32_t>::max()));
}

Milliseconds JsonReader::milliseconds() const {
    constexpr std::int64_t WEEK = 7LL * 24 * 60 * 60 * 1000;
    return Milliseconds(integer(0, WEEK));
}

std::int32_t JsonReader::word(const Words& words) const {
    const std::string wanted = text();
    std::string known;
    for (const Word& word : words) {
        if (word.word == wanted) {
            return word.value;
        }
        known += (known.empty() ? "" : ", ") + std::string(word.word);
    }
    refuse(inQuotes(wanted) + " is none of " + known);
}

std::int32_t JsonReader::wordOrNumber(const Words& words) const {
    return m_value.is_number()
               ? static_cast<std::int32_t>(integer(std::numeric_limits<std::int32_t>::min(),
                                                   std::numeric_limits<std::int32_t>::max()))
               : word(words);
}

std::vector<std::uint8_t> JsonReader::hexBytes() const {
    const std::string digits = text();
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < digits.size();) {
        if (!bytes.empty() && (digits[i] == ':' || digits[i] == '-' || digits[i] == ' ')) {
            ++i;
        }
        const int high = i < digits.size() ? hexDigit(digits[i]) : -1;
        const int low = i + 1 < digits.size() ? hexDigit(digits[i + 1]) : -1;
        if (high < 0 || low < 0) {
            refuse(inQuotes(digits) + " is not made of pairs of hexadecimal digits");
        }
        bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
        i += 2;
    }
    return bytes;
}

} // namespace radiosim
