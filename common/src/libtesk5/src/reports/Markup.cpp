#include "reports/Markup.h"

#include <mrl/Unicode.h>

namespace tesk5 {

namespace {

const char* referenceFor(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return nullptr;
    }
}

} // namespace

std::string inMarkup(std::string_view utf8) {
    std::string text;
    for (const char c : mrl::escapeControls(utf8)) {
        if (const char* reference = referenceFor(c)) {
            text += reference;
        } else {
            text += c;
        }
    }
    return text;
}

} // namespace tesk5
