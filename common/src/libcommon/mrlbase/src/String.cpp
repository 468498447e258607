#include <mrl/String.h>

#include <mrl/Unicode.h>

namespace mrl {

namespace {
constexpr CharView WHITE_SPACE = MRL_TEXT(" \t\n\v\f\r\u00a0");
} // namespace

String::String(const char* utf8)
    : String(utf8 == nullptr ? std::string_view() : std::string_view(utf8)) {}

String::String(std::string_view utf8) : m_units(toUtf16(utf8)) {}

String::String(const Char* text) : String(text == nullptr ? CharView() : CharView(text)) {}

CString String::getUTF8String() const {
    return CString(toUtf8(view()));
}

std::size_t String::find(const String& part, std::size_t from) const {
    return m_units.find(part.m_units, from);
}

std::size_t String::find(Char unit, std::size_t from) const {
    return m_units.find(unit, from);
}

String String::subString(std::size_t from, std::size_t count) const {
    return from >= length() ? String() : String(view().substr(from, count));
}

String& String::trim() {
    m_units.erase(m_units.find_last_not_of(WHITE_SPACE) + 1); // NOT_FOUND + 1 is the beginning
    m_units.erase(0, m_units.find_first_not_of(WHITE_SPACE));
    return *this;
}

String& String::operator+=(const String& other) {
    m_units += other.m_units;
    return *this;
}

bool String::equalNoCase(const String& a, const String& b) {
    return mrl::equalNoCase(a.view(), b.view());
}

} // namespace mrl
