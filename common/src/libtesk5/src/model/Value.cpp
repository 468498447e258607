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

const DataType& Value::type() const {
    return std::holds_alternative<TeskString>(m_value) ? DataType::STRING() : DataType::UINT32();
}

TeskString Value::valueString() const {
    if (const auto* text = std::get_if<TeskString>(&m_value)) {
        return *text;
    }
    return TeskString(std::to_string(std::get<mrl::Uint32>(m_value)));
}

mrl::Uint32 Value::valueUint32() const {
    if (const auto* text = std::get_if<TeskString>(&m_value)) {
        return parseUint32(text->utf8()).value_or(0);
    }
    return std::get<mrl::Uint32>(m_value);
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
