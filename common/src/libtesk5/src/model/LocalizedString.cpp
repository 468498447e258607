#include <tesk5/LocalizedString.h>

#include "texts/TextCatalogue.h"

namespace tesk5 {

LocalizedString::LocalizedString(TeskString key) : m_key(std::move(key)) {}

const TeskString& LocalizedString::localizedString() const {
    return catalogueInForce().find(m_key);
}

} // namespace tesk5
