#include <tesk5/Texts.h>

#include <tesk5/ByteText.h>
#include <tesk5/Language.h>

#include "texts/NumberText.h"

#include <algorithm>

namespace tesk5 {

const TeskString& lookUpText(const TeskString& key) {
    return Language::current().find(key);
}

TeskString translation(const TeskString& key) {
    return lookUpText(key);
}

std::string message(const TeskString& key, const Event::Variables& variables) {
    return fillPlaceholders(translation(key).utf8(), variables);
}

std::string message(const Finding& finding) {
    return message(finding.key, finding.variables);
}

std::string message(const Mismatch& reason) {
    return message(reason.key, reason.variables);
}

Value quantity(const Number& number, const TeskString& unit) {
    return Value(number).shownAs(TeskString(withUnit(number, unit)));
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
        // The system's messages end in a line end, which would break the sentence.
        constexpr std::string_view LINE_END = "\r\n";
        std::string value = variable->second.shownString().utf8();
        if (value.ends_with(LINE_END)) {
            value.resize(value.size() - LINE_END.size());
        }
        filled += withUtf8Reading(value);
        done = open = close + 1;
    }
    return filled.append(text, done);
}

} // namespace tesk5
