#include <tesk5/LocalizedString.h>

#include <tesk5/Texts.h>

namespace tesk5 {

LocalizedString::LocalizedString(TeskString key) : m_key(std::move(key)) {}

const TeskString& LocalizedString::localizedString() const {
    return textOf(m_key);
}

} // namespace tesk5
