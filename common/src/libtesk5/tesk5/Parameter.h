// An input of tests.
#pragma once

#include <tesk5/Value.h>

#include <optional>

namespace tesk5 {

/// A named input of one or more tests. Made with DiagModule::createParameter, owned by the
/// framework, alive until the process ends. Its value is set before tests run and is the default
/// otherwise.
class Parameter {
public:
    Parameter(TeskString name, DataType type, TeskString defaultValue, bool multiValued,
              bool optional);
    Parameter(const Parameter&) = delete;
    Parameter& operator=(const Parameter&) = delete;

    const TeskString& name() const { return m_name; }
    const DataType& type() const { return m_type; }
    const TeskString& defaultValue() const { return m_default; }
    /// Whether several values may be given; the last one counts as value().
    bool multiValued() const { return m_multiValued; }
    /// Whether a test that has it may run without one given.
    bool optional() const { return m_optional; }

    /// The value in force. An empty number reads as 0.
    Value value() const;
    /// Whether a value is in force: false without a default until one is given, and after the empty
    /// text was given.
    bool isSet() const { return !text().empty(); }

    /// Lets the value, a name of at most `most` bytes, be given in hexadecimal form too, as
    /// "hex:4C6162". Each byte becomes the character of the same value. \return this
    Parameter* setBytesAllowed(std::size_t most);
    /// 0 when the value cannot be given as bytes.
    std::size_t mostBytes() const { return m_mostBytes; }

    /// Whether `text` can be a value of this parameter. A number must lie in 0 to 4294967295 and be
    /// written in decimal digits alone; the empty text is every type's "not set".
    bool accepts(const TeskString& text) const { return refusal(text) == nullptr; }
    /// The key of the reason why `text` cannot be a value; null when it can.
    const char* refusal(const TeskString& text) const;
    /// Sets the value from its text.
    /// Failure: throws TeskException for a text that it does not accept
    void set(const TeskString& text);
    /// Back to the default.
    void reset();

private:
    const TeskString& text() const { return m_given ? *m_given : m_default; }

    TeskString m_name;
    DataType m_type;
    TeskString m_default;
    bool m_multiValued;
    bool m_optional;
    std::size_t m_mostBytes = 0;
    std::optional<TeskString> m_given;
};

} // namespace tesk5
