#include <tesk5/Parameter.h>

#include <tesk5/ByteText.h>
#include <tesk5/TeskException.h>

#include "model/Decimal.h"

namespace tesk5 {

Parameter::Parameter(TeskString name, DataType type, TeskString defaultValue, bool multiValued,
                     bool optional)
    : m_name(std::move(name)), m_type(type), m_default(std::move(defaultValue)),
      m_multiValued(multiValued), m_optional(optional) {}

Value Parameter::value() const {
    if (m_type == DataType::UINT32()) {
        return Value(parseUint32(text().utf8()).value_or(0));
    }
    return Value(text());
}

Parameter* Parameter::setBytesAllowed(std::size_t most) {
    m_mostBytes = most;
    return this;
}

const char* Parameter::refusal(const TeskString& text) const {
    if (m_type == DataType::UINT32()) {
        const bool number = text.empty() || parseUint32(text.utf8()).has_value();
        return number ? nullptr : "INPUT_NOT_A_NUMBER";
    }
    return m_mostBytes > 0 && isHexForm(text) ? problemOfHexForm(text, m_mostBytes) : nullptr;
}

void Parameter::set(const TeskString& text) {
    if (!accepts(text)) {
        throw TeskException(TeskString("parameter \"" + m_name.utf8() + "\": \"" + text.utf8() +
                                       (m_type == DataType::UINT32()
                                            ? "\" is not a whole number from 0 to 4294967295"
                                            : "\" is not in hexadecimal form")));
    }
    m_given = m_mostBytes > 0 && isHexForm(text) ? fromHexForm(text) : text;
}

void Parameter::reset() {
    m_given.reset();
}

} // namespace tesk5
