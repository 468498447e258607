// Typed values of parameters and event variables.
#pragma once

#include <tesk5/Number.h>
#include <tesk5/TeskString.h>

#include <mrl/Types.h>

#include <optional>
#include <variant>

namespace tesk5 {

/// The kind of a value. Compare with ==; the kinds are those of the static functions.
class DataType {
public:
    static const DataType& STRING();
    static const DataType& UINT32(); ///< a whole number from 0 to 4294967295

    static const DataType& INTEGER(); ///< a whole number of either sign
    static const DataType& DECIMAL(); ///< a number of either sign that may have decimals
    static const DataType& CHOICE();  ///< a text out of a few; only parameters have it

    /// "string", "uint32", "integer", "decimal" or "choice", as lists write it.
    const char* name() const { return m_name; }
    friend bool operator==(const DataType& a, const DataType& b) {
        return &a == &b || a.m_id == b.m_id;
    }

private:
    DataType(int id, const char* name) : m_id(id), m_name(name) {}
    int m_id;
    const char* m_name;
};

/// A text, an unsigned 32-bit number, or a number with sign and decimals.
class Value {
public:
    /// A text.
    Value(const TeskString& text) : m_value(text) {}
    Value(const char* utf8) : m_value(TeskString(utf8)) {}
    Value(const std::string& utf8) : m_value(TeskString(utf8)) {}
    /// A number.
    Value(mrl::Uint32 number) : m_value(number) {}
    Value(const Number& number) : m_value(number) {}

    /// Of a Number: INTEGER without decimals, else DECIMAL.
    const DataType& type() const;
    /// The text; a number in decimal: "-57.5".
    TeskString valueString() const;
    /// The number; of a text the number that it spells in decimal, 0 when it spells none; 0 of a
    /// Number.
    mrl::Uint32 valueUint32() const;
    /// The number; of a text the number that it spells, 0 when it spells none.
    Number valueNumber() const;
    /// Whether it is a Number.
    bool isNumber() const { return std::holds_alternative<Number>(m_value); }

    /// The same value, which people read as `text`; programs still get valueString().
    Value shownAs(TeskString text) const;
    /// What people read: the text of shownAs(), or else valueString().
    TeskString shownString() const;

    friend bool operator==(const Value&, const Value&) = default;

private:
    std::variant<TeskString, mrl::Uint32, Number> m_value;
    std::optional<TeskString> m_shown;
};

} // namespace tesk5
