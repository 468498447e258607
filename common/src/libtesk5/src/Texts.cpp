#include <tesk5/Texts.h>

#include <tesk5/ModuleInfo.h>

#include "TextCatalogue.h"

#include <mrl/System.h>

#include <algorithm>

namespace tesk5 {

namespace {

TextCatalogue& catalogue() {
    static TextCatalogue texts(textFolders(moduleInfo().name, mrl::System::executableFolder()),
                               "en", moduleInfo().builtInTexts);
    return texts;
}

} // namespace

const TeskString& textOf(const TeskString& key) {
    return catalogue().textOf(key);
}

std::string fillPlaceholders(const std::string& text, const Event::Variables& variables) {
    std::string filled;
    std::size_t done = 0;
    for (std::size_t open = text.find('{'); open != std::string::npos;
         open = text.find('{', open)) {
        const std::size_t close = text.find('}', open);
        if (close == std::string::npos) {
            break;
        }
        const std::string_view name = std::string_view(text).substr(open + 1, close - open - 1);
        const auto variable =
            std::find_if(variables.begin(), variables.end(),
                         [name](const auto& candidate) { return candidate.first.utf8() == name; });
        if (variable == variables.end()) {
            ++open; // another brace may open inside
            continue;
        }
        filled.append(text, done, open - done);
        // The system's own messages end their line; in the middle of a sentence that is noise.
        constexpr std::string_view LINE_END = "\r\n";
        std::string value = variable->second.valueString().utf8();
        if (value.ends_with(LINE_END)) {
            value.resize(value.size() - LINE_END.size());
        }
        filled += value;
        done = open = close + 1;
    }
    return filled.append(text, done);
}

} // namespace tesk5
