// An input of tests.
#pragma once

#include <tesk5/Value.h>

#include <optional>
#include <vector>

namespace tesk5 {

/// The numbers that a parameter takes.
struct NumberRange {
    Number lowest;
    Number highest;
    TeskString unit; ///< as people write it after a number: "dBm"; empty for a plain number

    bool includes(const Number& number) const { return lowest <= number && number <= highest; }
};

/// A named input of one or more tests. Made with DiagModule::createParameter, owned by the
/// framework, alive until the process ends. Its value is set before tests run and is the default
/// otherwise. The setters return the parameter itself, for chains, and precede its first value.
///
/// DiagModule::createParameter("FailingLevel", DataType::DECIMAL(), "-80", false, true)
///     ->setRange({-110, -10, "dBm"});
/// DiagModule::createParameter("Band", DataType::CHOICE(), "", false, true)
///     ->setChoices({"2.4", "5", "6"});
class Parameter {
public:
    /// Decimals that a value of the type DECIMAL has at most.
    static constexpr int MOST_DECIMALS = 3;

    Parameter(TeskString name, DataType type, TeskString defaultValue, bool multiValued,
              bool optional);
    Parameter(const Parameter&) = delete;
    Parameter& operator=(const Parameter&) = delete;

    const TeskString& name() const { return m_name; }
    const DataType& type() const { return m_type; }
    const TeskString& defaultValue() const { return m_default; }
    /// Puts another default in force, for a test that has one of its own (Test::setDefault());
    /// nothing: the parameter's own again.
    void setDefaultInForce(std::optional<TeskString> text) { m_defaultInForce = std::move(text); }
    /// Whether several values may be given; the last one counts as value().
    bool multiValued() const { return m_multiValued; }
    /// Whether a test that has it may run without one given.
    bool optional() const { return m_optional; }
    /// Whether its values are numbers of a range: INTEGER or DECIMAL.
    bool ranged() const { return m_type == DataType::INTEGER() || m_type == DataType::DECIMAL(); }

    /// The value in force. An empty number reads as 0.
    Value value() const;
    /// The bytes of the value: those given in hexadecimal form, else its text in UTF-8.
    std::string bytes() const;
    /// The number in force of a ranged() parameter; nothing when it has no value.
    std::optional<Number> number() const;
    /// Whether a value is in force: false without a default until one is given, and after the empty
    /// text was given.
    bool isSet() const { return !text().empty(); }

    /// Lets the value, a name of at most `most` bytes, be given in hexadecimal form too, as
    /// "hex:4C6162". Each byte becomes the character of the same value. \return this
    Parameter* setBytesAllowed(std::size_t most);
    /// 0 when the value cannot be given as bytes.
    std::size_t mostBytes() const { return m_mostBytes; }

    /// Makes the value the name of a file: in a configuration file, a relative one counts from the
    /// folder of that file. \return this
    Parameter* setNamesFile();
    bool namesFile() const { return m_namesFile; }

    /// The numbers that a ranged() parameter takes; 0 alone until it is set. Lists, help and
    /// refusals show it with its unit.
    Parameter* setRange(NumberRange range);
    const NumberRange& range() const { return m_range; }
    /// Key of the reason for refusing a number that lies in the range with its other sign, such as
    /// 70 for -70: a text with {Value}, {Range} and {Meant}, the number with its other sign.
    /// Without it, a text of the framework says the same in general words.
    Parameter* setReasonForOtherSign(const char* key);

    /// The texts that a parameter of the type CHOICE takes, in any letter case; value() has the
    /// letter case of `choices`.
    Parameter* setChoices(std::vector<TeskString> choices);
    const std::vector<TeskString>& choices() const { return m_choices; }

    /// Whether `text` can be a value of this parameter. A UINT32 must lie in 0 to 4294967295 and be
    /// written in decimal digits alone; an INTEGER or DECIMAL is written as Number::parse() reads
    /// it and lies in the range; the empty text is every type's "not set".
    bool accepts(const TeskString& text) const { return refusal(text) == nullptr; }
    /// The key of the reason why `text` cannot be a value; null when it can.
    const char* refusal(const TeskString& text) const;
    /// Sets the value from its text.
    /// Failure: throws TeskException for a text that it does not accept
    void set(const TeskString& text);
    /// Back to the default.
    void reset();

private:
    const TeskString& text() const {
        return m_given ? *m_given : m_defaultInForce ? *m_defaultInForce : m_default;
    }
    const char* refusalOfNumber(const std::string& text) const;
    const TeskString* choiceFor(const TeskString& text) const;

    TeskString m_name;
    DataType m_type;
    TeskString m_default;
    bool m_multiValued;
    bool m_optional;
    std::size_t m_mostBytes = 0;
    bool m_namesFile = false;
    NumberRange m_range;
    const char* m_otherSign = "INPUT_NUMBER_OTHER_SIGN";
    std::vector<TeskString> m_choices;
    std::optional<TeskString> m_given;
    bool m_givenAsBytes = false;
    std::optional<TeskString> m_defaultInForce;
};

/// `text` with a decimal point where it has a decimal comma, if that makes it a number: "-70.5" for
/// "-70,5"; nothing for any other text.
std::optional<std::string> withDecimalPoint(std::string text);

} // namespace tesk5
