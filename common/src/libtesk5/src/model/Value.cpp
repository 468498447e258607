#include <tesk5/Value.h>

#include "model/Decimal.h"

namespace tesk5 {

const DataType& DataType::STRING() {
    static const DataType type(0, "string");
    return type;
}

const DataType& DataType::UINT32() {
    static const DataType type(1, "uint32");
    return type;
}

const DataType& DataType::INTEGER() {
    static const DataType type(2, "integer");
    return type;
}

const DataType& DataType::DECIMAL() {
    static const DataType type(3, "decimal");
    return type;
}

const DataType& DataType::CHOICE() {
    static const DataType type(4, "choice");
    return type;
}

const DataType& Value::type() const {
    if (const auto* number = std::get_if<Number>(&m_value)) {
        return number->decimals() == 0 ? DataType::INTEGER() : DataType::DECIMAL();
    }
    return std::holds_alternative<TeskString>(m_value) ? DataType::STRING() : DataType::UINT32();
}

TeskString Value::valueString() const {
    if (const auto* text = std::get_if<TeskString>(&m_value)) {
        return *text;
    }
    if (const auto* number = std::get_if<Number>(&m_value)) {
        return TeskString(number->text());
    }
    return TeskString(std::to_string(std::get<mrl::Uint32>(m_value)));
}

mrl::Uint32 Value::valueUint32() const {
    if (const auto* text = std::get_if<TeskString>(&m_value)) {
        return parseUint32(text->utf8()).value_or(0);
    }
    const auto* number = std::get_if<mrl::Uint32>(&m_value);
    return number == nullptr ? 0 : *number;
}

Number Value::valueNumber() const {
    if (const auto* number = std::get_if<Number>(&m_value)) {
        return *number;
    }
    if (const auto* number = std::get_if<mrl::Uint32>(&m_value)) {
        return *number;
    }
    return Number::parse(std::get<TeskString>(m_value).utf8()).value_or(Number());
}

Value Value::shownAs(TeskString text) const {
    Value copy = *this;
    copy.m_shown = std::move(text);
    return copy;
}

TeskString Value::shownString() const {
    return m_shown ? *m_shown : valueString();
}

} // namespace tesk5
