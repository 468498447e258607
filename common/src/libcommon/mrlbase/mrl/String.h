// UTF-16 text with value semantics, and its UTF-8 form for consoles, files and reports.
#pragma once

#include <mrl/Types.h>

#include <compare>
#include <cstddef>
#include <utility>

namespace mrl {

/// A UTF-8 text that owns its bytes; what String::getUTF8String() hands out.
class CString {
public:
    explicit CString(std::string bytes) : m_bytes(std::move(bytes)) {}

    /// The bytes, terminated; valid as long as this object.
    const char* c_str() const { return m_bytes.c_str(); }
    const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

/// UTF-16 text. Copies are independent. Not synchronised: one thread at a time an object.
///
/// Failure, of every operation that makes a text longer: std::bad_alloc, std::length_error.
class String {
public:
    /// Returned by find() when nothing was found.
    static constexpr std::size_t NOT_FOUND = CharView::npos;

    String() = default;
    /// From UTF-8; ill-formed sequences become U+FFFD. A null pointer gives the empty text.
    /// Implicit, because texts are written as literals.
    String(const char* utf8);
    explicit String(std::string_view utf8);
    /// From terminated UTF-16. A null pointer gives the empty text.
    explicit String(const Char* text);
    explicit String(CharView text) : m_units(text) {}

    bool empty() const { return m_units.empty(); }
    /// Length in UTF-16 units.
    std::size_t length() const { return m_units.size(); }
    /// The units, terminated; valid until the text changes or the object is destroyed.
    const Char* getUCS2Buffer() const { return m_units.c_str(); }
    CharView view() const { return m_units; }

    /// The text as UTF-8; a surrogate without its partner becomes U+FFFD.
    CString getUTF8String() const;

    /// Position of the first occurrence of `part` at or after `from`, or NOT_FOUND. The empty text
    /// occurs everywhere. Case-sensitive, unit by unit.
    std::size_t find(const String& part, std::size_t from = 0) const;
    /// Position of the first `unit` at or after `from`, or NOT_FOUND.
    std::size_t find(Char unit, std::size_t from = 0) const;
    /// At most `count` units from `from` on; the empty text when `from` lies beyond the end.
    String subString(std::size_t from, std::size_t count = NOT_FOUND) const;

    /// Removes white space from both ends: blank, \t, \n, \v, \f, \r and the no-break space.
    /// \return this text
    String& trim();
    void clear() { m_units.clear(); }
    void swap(String& other) noexcept { m_units.swap(other.m_units); }

    String& operator+=(const String& other);
    friend String operator+(String left, const String& right) { return left += right; }
    friend bool operator==(const String& a, const String& b) { return a.view() == b.view(); }
    friend auto operator<=>(const String& a, const String& b) { return a.view() <=> b.view(); }

    /// Whether the two are the same except for letter case (mrl::foldCase).
    static bool equalNoCase(const String& a, const String& b);

private:
    CharString m_units;
};

} // namespace mrl
