#include <tesk5/Parameter.h>

#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "model/Decimal.h"

namespace tesk5 {

Parameter::Parameter(TeskString name, DataType type, TeskString defaultValue, bool multiValued,
                     bool optional)
    : m_name(std::move(name)), m_type(type), m_default(std::move(defaultValue)),
      m_multiValued(multiValued), m_optional(optional) {}

Value Parameter::value() const {
    const TeskString& text = m_given ? *m_given : m_default;
    if (m_type == DataType::UINT32()) {
        return Value(parseUint32(text.utf8()).value_or(0));
    }
    return Value(text);
}

std::optional<std::string> Parameter::refuses(const TeskString& text) const {
    if (m_type == DataType::UINT32() && !text.empty() && !parseUint32(text.utf8())) {
        return message("INPUT_NOT_A_NUMBER", {{"Value", text}});
    }
    return std::nullopt;
}

void Parameter::set(const TeskString& text) {
    if (const auto reason = refuses(text)) {
        throw TeskException(TeskString("parameter \"" + m_name.utf8() + "\": " + *reason));
    }
    m_given = text;
}

void Parameter::reset() {
    m_given.reset();
}

} // namespace tesk5
