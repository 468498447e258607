#include <tesk5/LocalizedString.h>

namespace tesk5 {

LocalizedString::LocalizedString(TeskString key, LookUp lookUp)
    : m_key(std::move(key)), m_lookUp(lookUp) {}

const TeskString& LocalizedString::localizedString() const {
    return m_lookUp(m_key);
}

} // namespace tesk5
