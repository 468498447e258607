#include "commandline/TomlText.h"

#include <algorithm>

namespace tesk5 {

namespace {

bool isBare(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_' || letter == '-';
}

} // namespace

std::string tomlText(const std::string& text) {
    constexpr unsigned char FIRST_PRINTABLE = 0x20;
    constexpr unsigned char DELETE = 0x7F;
    constexpr const char* HEXADECIMAL = "0123456789ABCDEF";
    std::string result = "\"";
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < FIRST_PRINTABLE || code == DELETE) {
            result += std::string("\\u00") + HEXADECIMAL[code >> 4U] + HEXADECIMAL[code & 0xFU];
            continue;
        }
        if (letter == '"' || letter == '\\') {
            result += '\\';
        }
        result += letter;
    }
    return result + "\"";
}

std::string tomlKey(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), isBare) ? name : tomlText(name);
}

} // namespace tesk5
