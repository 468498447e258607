#include <tesk5/TeskString.h>

namespace tesk5 {

// Both forms are made from the repaired UTF-16, so that they never differ.
TeskString::TeskString(const char* utf8) : TeskString(mrl::String(utf8)) {}

TeskString::TeskString(const std::string& utf8) : TeskString(mrl::String(std::string_view(utf8))) {}

TeskString::TeskString(const mrl::String& text)
    : m_text(text), m_utf8(text.getUTF8String().bytes()) {}

} // namespace tesk5
