#include <tesk5/Parameter.h>

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

bool Parameter::accepts(const TeskString& text) const {
    return m_type != DataType::UINT32() || text.empty() || parseUint32(text.utf8()).has_value();
}

void Parameter::set(const TeskString& text) {
    if (!accepts(text)) {
        throw TeskException(TeskString("parameter \"" + m_name.utf8() + "\": \"" + text.utf8() +
                                       "\" is not a whole number from 0 to 4294967295"));
    }
    m_given = text;
}

void Parameter::reset() {
    m_given.reset();
}

} // namespace tesk5
