#include <mrl/String.h>

#include <mrl/Unicode.h>

namespace mrl {

namespace {

constexpr CharView WHITE_SPACE = MRL_TEXT(" \t\n\v\f\r\u00a0");

} // namespace

String::String(const char* utf8)
    : String(utf8 == nullptr ? std::string_view() : std::string_view(utf8)) {}

String::String(std::string_view utf8) : m_text(toUtf16(utf8)) {}

String::String(const Char* text) {
    if (text != nullptr) {
        m_text = text;
    }
}

CString String::getUTF8String() const {
    return CString(toUtf8(m_text));
}

std::size_t String::find(const String& part, std::size_t from) const {
    return m_text.find(part.m_text, from);
}

std::size_t String::find(Char unit, std::size_t from) const {
    return m_text.find(unit, from);
}

String String::subString(std::size_t from, std::size_t count) const {
    return from >= m_text.size() ? String() : String(view().substr(from, count));
}

String& String::trim() {
    const std::size_t first = m_text.find_first_not_of(WHITE_SPACE);
    if (first == NOT_FOUND) {
        m_text.clear();
        return *this;
    }
    m_text.erase(m_text.find_last_not_of(WHITE_SPACE) + 1);
    m_text.erase(0, first);
    return *this;
}

String& String::operator+=(const String& other) {
    m_text += other.m_text;
    return *this;
}

bool String::equalNoCase(const String& a, const String& b) {
    return mrl::equalNoCase(a.view(), b.view());
}

} // namespace mrl
