#include "JsonReader.h"

#include <algorithm>
#include <limits>

namespace radiosim {

namespace {

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
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

mrl::Json JsonReader::parse(std::string_view text) {
    try {
        return mrl::parseJson(text);
    } catch (const mrl::JsonFailure& failure) {
        switch (failure.reason) {
        case mrl::JsonFailure::Reason::syntax:
            throw ScenarioError("line " + std::to_string(failure.line) + ", column " +
                                    std::to_string(failure.column),
                                failure.detail);
        case mrl::JsonFailure::Reason::memberTwice:
            throw ScenarioError("/", "the key " + inQuotes(failure.detail) +
                                         " stands twice in one object");
        case mrl::JsonFailure::Reason::tooManyMembers:
            throw ScenarioError("/", failure.what());
        case mrl::JsonFailure::Reason::number:
            break;
        }
        throw ScenarioError("/", failure.detail);
    }
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

double JsonReader::decimal(int min, int max) const {
    const std::string expected =
        "a number from " + std::to_string(min) + " to " + std::to_string(max);
    if (!m_value.is_number()) {
        refuse(expected + " was expected");
    }
    const auto value = m_value.get<double>();
    if (value < min || value > max) {
        refuse(m_value.dump() + " is out of range: " + expected + " was expected");
    }
    return value;
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
