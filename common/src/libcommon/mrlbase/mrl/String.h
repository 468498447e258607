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
/// Short texts lie inside the object. That makes it large, and copying records full of short texts
/// (names of networks, words of a dialog) a matter of copying bytes: no memory is asked for.
class String {
public:
    /// The longest text, in UTF-16 units, that takes no memory of its own: longer than any SSID.
    static constexpr std::size_t SHORT_LENGTH = 35;

    /// Returned by find() when nothing was found.
    static constexpr std::size_t NOT_FOUND = CharView::npos;

    String() noexcept = default;
    String(const String& other) {
        if (other.isShort()) {
            copyMembersOf(other);
        } else {
            append(other.view());
        }
    }
    String(String&& other) noexcept { swap(other); }
    String& operator=(const String& other);
    String& operator=(String&& other) noexcept {
        String taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~String() {
        if (!isShort()) {
            release();
        }
    }
    /// From UTF-8; ill-formed sequences become U+FFFD. A null pointer gives the empty text.
    String(const char* utf8); // NOLINT(google-explicit-constructor): texts are written as literals
    explicit String(std::string_view utf8);
    /// From terminated UTF-16. A null pointer gives the empty text.
    explicit String(const Char* text);
    /// Failure, here and wherever a text grows: std::bad_alloc; std::length_error beyond 2^31
    /// units.
    explicit String(CharView text) : String() { append(text); }

    bool empty() const { return m_length == 0; }
    /// Length in UTF-16 units.
    std::size_t length() const { return m_length; }
    /// The units, terminated; valid until the text changes or the object goes.
    const Char* getUCS2Buffer() const { return isShort() ? shortUnits() : block(); }
    CharView view() const { return {getUCS2Buffer(), m_length}; }

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
    void clear() { *this = String(); }
    void swap(String& other) noexcept {
        std::swap(m_place, other.m_place);
        std::swap(m_length, other.m_length);
        std::swap(m_capacity, other.m_capacity);
    }

    String& operator+=(const String& other);
    friend String operator+(String left, const String& right) { return left += right; }
    friend bool operator==(const String& a, const String& b) { return a.view() == b.view(); }
    friend auto operator<=>(const String& a, const String& b) { return a.view() <=> b.view(); }

    /// Whether the two are the same but for letter case (mrl::foldCase).
    static bool equalNoCase(const String& a, const String& b);

private:
    bool isShort() const { return m_capacity == SHORT_LENGTH; }
    // Which of the two there is, the capacity says.
    // NOLINTBEGIN(cppcoreguidelines-pro-type-union-access)
    const Char* shortUnits() const { return m_place.units; }
    Char* shortUnits() { return m_place.units; }
    Char* block() const { return m_place.block; }
    void setBlock(Char* larger, Uint32 capacity) {
        m_place.block = larger;
        m_capacity = capacity;
    }
    // NOLINTEND(cppcoreguidelines-pro-type-union-access)
    Char* units() { return isShort() ? shortUnits() : block(); }
    // Of a short text that is all there is; a block would have two owners then.
    void copyMembersOf(const String& other) noexcept {
        m_place = other.m_place;
        m_length = other.m_length;
        m_capacity = other.m_capacity;
    }
    // `text` may be this text, or lie in it.
    void append(CharView text);
    void release() noexcept;

    union Place {
        Char units[SHORT_LENGTH + 1];
        Char* block; ///< of more than SHORT_LENGTH units, with a terminator
    };
    Place m_place = {};
    Uint32 m_length = 0;
    Uint32 m_capacity = SHORT_LENGTH; ///< in units, without the terminator
};

} // namespace mrl
