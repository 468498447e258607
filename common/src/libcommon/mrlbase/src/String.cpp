#include <mrl/String.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace mrl {

namespace {

constexpr CharView WHITE_SPACE = MRL_TEXT(" \t\n\v\f\r\u00a0");

// Lengths have 32 bits, of which doubling takes one.
constexpr std::size_t LONGEST = 0x7fffffff;

} // namespace

String::String(const char* utf8)
    : String(utf8 == nullptr ? std::string_view() : std::string_view(utf8)) {}

String::String(std::string_view utf8) : String(toUtf16(utf8)) {}

String::String(const Char* text) : String(text == nullptr ? CharView() : CharView(text)) {}

String& String::operator=(const String& other) {
    if (isShort() && other.isShort()) {
        copyMembersOf(other);
    } else {
        String copy(other);
        swap(copy);
    }
    return *this;
}

void String::append(CharView text) {
    const std::size_t length = m_length + text.size();
    if (length > LONGEST) {
        throw std::length_error("a text of more than 2^31 units");
    }
    if (length > m_capacity) {
        const std::size_t capacity = std::max<std::size_t>(length, 2 * std::size_t{m_capacity});
        Char* const larger = std::allocator<Char>().allocate(capacity + 1);
        std::copy_n(units(), m_length, larger);
        std::copy_n(text.data(), text.size(), larger + m_length); // before what it may lie in goes
        if (!isShort()) {
            release();
        }
        setBlock(larger, static_cast<Uint32>(capacity));
    } else {
        std::copy_n(text.data(), text.size(), units() + m_length);
    }
    m_length = static_cast<Uint32>(length);
    units()[m_length] = 0;
}

void String::release() noexcept {
    std::allocator<Char>().deallocate(block(), std::size_t{m_capacity} + 1);
}

CString String::getUTF8String() const {
    return CString(toUtf8(view()));
}

std::size_t String::find(const String& part, std::size_t from) const {
    return view().find(part.view(), from);
}

std::size_t String::find(Char unit, std::size_t from) const {
    return view().find(unit, from);
}

String String::subString(std::size_t from, std::size_t count) const {
    return from >= m_length ? String() : String(view().substr(from, count));
}

String& String::trim() {
    const CharView text = view();
    const std::size_t first = text.find_first_not_of(WHITE_SPACE);
    if (first == NOT_FOUND) {
        clear();
        return *this;
    }
    const std::size_t length = text.find_last_not_of(WHITE_SPACE) + 1 - first;
    std::copy_n(text.data() + first, length, units());
    m_length = static_cast<Uint32>(length);
    units()[m_length] = 0;
    return *this;
}

String& String::operator+=(const String& other) {
    append(other.view());
    return *this;
}

bool String::equalNoCase(const String& a, const String& b) {
    return mrl::equalNoCase(a.view(), b.view());
}

} // namespace mrl
