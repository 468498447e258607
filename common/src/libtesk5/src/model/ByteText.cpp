#include <tesk5/ByteText.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <string_view>

namespace tesk5 {

namespace {

constexpr mrl::Char HIGHEST_BYTE = 0xFF;
constexpr char32_t HIGHEST_ASCII = 0x7F;
constexpr std::string_view HEX_DIGITS = "0123456789ABCDEF";

std::string_view digitsOf(const TeskString& text) {
    return std::string_view(text.utf8()).substr(std::string_view(HEX_PREFIX).size());
}

// 0 to 15; npos for any other character.
std::size_t valueOf(char digit) {
    return HEX_DIGITS.find(digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A')
                                                        : digit);
}

std::string bytesIn(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(valueOf(digits[i]) * HEX_DIGITS.size() + valueOf(digits[i + 1]));
    }
    return bytes;
}

std::optional<std::string> bytesOf(const TeskString& text) {
    std::string bytes;
    for (const mrl::Char unit : text.mrlString().view()) {
        if (unit > HIGHEST_BYTE) {
            return std::nullopt;
        }
        bytes += static_cast<char>(unit);
    }
    return bytes;
}

} // namespace

bool isHexForm(const TeskString& text) {
    const mrl::String prefix(HEX_PREFIX);
    return mrl::equalNoCase(text.mrlString().view().substr(0, prefix.view().size()), prefix.view());
}

const char* problemOfHexForm(const TeskString& text, std::size_t most) {
    const std::string_view digits = digitsOf(text);
    if (digits.empty()) {
        return "INPUT_HEX_EMPTY";
    }
    if (std::any_of(digits.begin(), digits.end(),
                    [](char digit) { return valueOf(digit) == std::string_view::npos; })) {
        return "INPUT_HEX_NO_DIGIT";
    }
    if (digits.size() % 2 != 0) {
        return "INPUT_HEX_ODD";
    }
    const std::string bytes = bytesIn(digits);
    if (bytes.size() > most) {
        return "INPUT_HEX_TOO_LONG";
    }
    return bytes.find('\0') == std::string::npos ? nullptr : "INPUT_HEX_ZERO";
}

TeskString fromHexForm(const TeskString& text) {
    mrl::CharString characters;
    for (const char byte : bytesIn(digitsOf(text))) {
        characters += static_cast<unsigned char>(byte);
    }
    return TeskString(mrl::String(characters.c_str()));
}

std::string toHexForm(const TeskString& text) {
    const std::optional<std::string> bytes = bytesOf(text);
    if (!bytes) {
        return text.utf8();
    }
    std::string form = HEX_PREFIX;
    for (const char byte : *bytes) {
        const auto value = static_cast<unsigned char>(byte);
        form += HEX_DIGITS[value / HEX_DIGITS.size()];
        form += HEX_DIGITS[value % HEX_DIGITS.size()];
    }
    return form;
}

std::string withUtf8Reading(const std::string& text) {
    const std::optional<std::string> bytes = bytesOf(TeskString(text));
    if (!bytes) {
        return text;
    }
    constexpr char32_t REPLACEMENT = 0xFFFD; // stands for an ill-formed sequence
    const std::u32string reading = mrl::toUtf32(*bytes);
    const bool differs = std::any_of(reading.begin(), reading.end(),
                                     [](char32_t unit) { return unit > HIGHEST_ASCII; });
    return differs && reading.find(REPLACEMENT) == std::u32string::npos
               ? text + " [UTF-8: " + *bytes + "]"
               : text;
}

} // namespace tesk5
