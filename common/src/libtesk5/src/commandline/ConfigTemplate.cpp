#include "commandline/ConfigFile.h"

#include <tesk5/Texts.h>

#include <algorithm>

namespace tesk5 {

namespace {

// A comment for each line of `text`.
std::string commented(const std::string& text) {
    std::string result;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        result += "# " + text.substr(begin, end - begin) + "\n";
        begin = end + 1;
    }
    return result;
}

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

std::string configTemplate(const Registry& registry, const std::string& program) {
    std::string text = commented(message("CONFIG_TEMPLATE_HEAD", {{"Program", program}}));
    std::string table;
    for (const ConfigKey& key : configKeys(registry)) {
        text += "\n";
        if (key.table != table) {
            table = key.table;
            text += "[" + table + "]\n";
        }
        // Comments of the template begin with "# ", settings to be taken into use with "#".
        text += commented(key.comment) + "#" + tomlKey(key.name) + " = " + key.example + "\n";
    }
    return text;
}

} // namespace tesk5
