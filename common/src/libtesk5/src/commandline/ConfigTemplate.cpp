#include "commandline/ConfigTemplate.h"

#include <tesk5/Texts.h>

#include "commandline/ConfigKeys.h"

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

} // namespace

std::string configTemplate(const Registry& registry, const std::string& program) {
    std::string text = commented(message("CONFIG_TEMPLATE_HEAD", {{"Program", program}}));
    std::string table;
    for (const ConfigKey& key : configKeys(registry)) {
        text += "\n";
        if (key.table != table) {
            table = key.table;
            text += "[" + table + "]\n";
        }
        // Explanations begin with "# ", commented-out settings with "#" alone.
        text += commented(key.comment) + "#" + tomlKey(key.name) + " = " + key.example + "\n";
    }
    return text;
}

} // namespace tesk5
