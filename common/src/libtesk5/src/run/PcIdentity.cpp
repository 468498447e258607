#include "run/PcIdentity.h"

#include <mrl/Unicode.h>

#include <algorithm>

namespace tesk5 {

std::string identityText(std::string_view text) {
    constexpr std::size_t LONGEST = 200;
    constexpr std::string_view AROUND(" \t\r\n\0", 5);
    constexpr unsigned CONTINUATION = 0x80;
    constexpr unsigned CONTINUATION_BITS = 0xC0;
    const std::size_t begin = std::min(text.find_first_not_of(AROUND), text.size());
    text = text.substr(begin, text.find_last_not_of(AROUND) + 1 - begin);
    std::string utf8 = mrl::toUtf8(mrl::toUtf16(text));
    if (utf8 != text) {
        mrl::CharString characters;
        for (const char byte : text) {
            characters += static_cast<mrl::Char>(static_cast<unsigned char>(byte));
        }
        utf8 = mrl::toUtf8(characters);
    }
    std::size_t end = std::min(utf8.size(), LONGEST);
    while (end < utf8.size() &&
           (static_cast<unsigned char>(utf8[end]) & CONTINUATION_BITS) == CONTINUATION) {
        --end;
    }
    return utf8.substr(0, end);
}

} // namespace tesk5
