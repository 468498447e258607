// The framework's text: UTF-8 and UTF-16 at once, so that either side of the system can be handed a
// buffer that lives as long as the text.
#pragma once

#include <mrl/String.h>

namespace tesk5 {

/// An immutable text. Copies are independent.
class TeskString {
public:
    TeskString() = default;
    /// From UTF-8; ill-formed sequences become U+FFFD. A null pointer gives the empty text.
    TeskString(const char* utf8); // keys are literals
    explicit TeskString(const std::string& utf8);
    explicit TeskString(const mrl::String& text);

    bool empty() const { return m_text.empty(); }
    /// Terminated UTF-16; valid as long as this object.
    const mrl::Char* getUCS2Buffer() const { return m_text.getUCS2Buffer(); }
    /// Terminated UTF-8; valid as long as this object.
    const char* getUTF8Buffer() const { return m_utf8.c_str(); }
    /// The same text as a Basekit string.
    const mrl::String& mrlString() const { return m_text; }
    const std::string& utf8() const { return m_utf8; }

    friend bool operator==(const TeskString& a, const TeskString& b) {
        return a.m_utf8 == b.m_utf8;
    }
    friend auto operator<=>(const TeskString& a, const TeskString& b) {
        return a.m_utf8 <=> b.m_utf8;
    }

private:
    mrl::String m_text;
    std::string m_utf8;
};

} // namespace tesk5
