#include <tesk5/Parameter.h>

#include <tesk5/ByteText.h>
#include <tesk5/TeskException.h>

#include "model/Decimal.h"

#include <mrl/Unicode.h>

#include <algorithm>

namespace tesk5 {

namespace {

// What a value of the type is not, when it is refused; for the exception.
std::string missedBy(const Parameter& parameter) {
    if (parameter.type() == DataType::UINT32()) {
        return "is not a whole number from 0 to 4294967295";
    }
    if (parameter.ranged()) {
        return std::string(parameter.type() == DataType::INTEGER() ? "is not a whole number"
                                                                   : "is not a number") +
               " from " + parameter.range().lowest.text() + " to " +
               parameter.range().highest.text();
    }
    return parameter.type() == DataType::CHOICE() ? "is not one of its choices"
                                                  : "is not in hexadecimal form";
}

} // namespace

Parameter::Parameter(TeskString name, DataType type, TeskString defaultValue, bool multiValued,
                     bool optional)
    : m_name(std::move(name)), m_type(type), m_default(std::move(defaultValue)),
      m_multiValued(multiValued), m_optional(optional) {}

Value Parameter::value() const {
    if (m_type == DataType::UINT32()) {
        return Value(parseUint32(text().utf8()).value_or(0));
    }
    return ranged() ? Value(number().value_or(Number())) : Value(text());
}

std::string Parameter::bytes() const {
    if (!m_given || !m_givenAsBytes) {
        return text().utf8();
    }
    std::string bytes;
    for (const mrl::Char unit : m_given->mrlString().view()) {
        bytes += static_cast<char>(unit);
    }
    return bytes;
}

std::optional<Number> Parameter::number() const {
    return ranged() ? Number::parse(text().utf8()) : std::nullopt;
}

Parameter* Parameter::setBytesAllowed(std::size_t most) {
    m_mostBytes = most;
    return this;
}

Parameter* Parameter::setNamesFile() {
    m_namesFile = true;
    return this;
}

Parameter* Parameter::setRange(NumberRange range) {
    m_range = std::move(range);
    return this;
}

Parameter* Parameter::setReasonForOtherSign(const char* key) {
    m_otherSign = key;
    return this;
}

Parameter* Parameter::setChoices(std::vector<TeskString> choices) {
    m_choices = std::move(choices);
    return this;
}

const char* Parameter::refusalOfNumber(const std::string& text) const {
    const std::optional<Number> number = Number::parse(text);
    if (!number) {
        return withDecimalPoint(text) ? "INPUT_NUMBER_COMMA" : "INPUT_NO_NUMBER";
    }
    if (!m_range.includes(*number)) {
        return m_range.includes(number->negated()) ? m_otherSign : "INPUT_NUMBER_OUT_OF_RANGE";
    }
    if (m_type == DataType::INTEGER() && number->decimals() > 0) {
        return "INPUT_NUMBER_NOT_WHOLE";
    }
    return number->decimals() > MOST_DECIMALS ? "INPUT_NUMBER_TOO_FINE" : nullptr;
}

const TeskString* Parameter::choiceFor(const TeskString& text) const {
    const auto found =
        std::find_if(m_choices.begin(), m_choices.end(), [&text](const TeskString& choice) {
            return mrl::equalNoCase(choice.mrlString().view(), text.mrlString().view());
        });
    return found == m_choices.end() ? nullptr : &*found;
}

const char* Parameter::refusal(const TeskString& text) const {
    if (m_type == DataType::UINT32()) {
        const bool number = text.empty() || parseUint32(text.utf8()).has_value();
        return number ? nullptr : "INPUT_NOT_A_NUMBER";
    }
    if (ranged()) {
        return text.empty() ? nullptr : refusalOfNumber(text.utf8());
    }
    if (m_type == DataType::CHOICE()) {
        return text.empty() || choiceFor(text) != nullptr ? nullptr : "INPUT_NO_CHOICE";
    }
    return m_mostBytes > 0 && isHexForm(text) ? problemOfHexForm(text, m_mostBytes) : nullptr;
}

void Parameter::set(const TeskString& text) {
    if (!accepts(text)) {
        throw TeskException(TeskString("parameter \"" + m_name.utf8() + "\": \"" + text.utf8() +
                                       "\" " + missedBy(*this)));
    }
    const TeskString* const choice = choiceFor(text);
    m_givenAsBytes = m_mostBytes > 0 && isHexForm(text);
    if (choice != nullptr) {
        m_given = *choice;
    } else {
        m_given = m_givenAsBytes ? fromHexForm(text) : text;
    }
}

void Parameter::reset() {
    m_given.reset();
}

std::optional<std::string> withDecimalPoint(std::string text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return std::nullopt;
    }
    text[comma] = '.';
    const std::optional<Number> number = Number::parse(text);
    return number ? std::optional(number->text()) : std::nullopt;
}

} // namespace tesk5
