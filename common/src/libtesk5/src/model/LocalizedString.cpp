#include <tesk5/LocalizedString.h>

#include "texts/TextCatalogue.h"

namespace tesk5 {

LocalizedString::LocalizedString(TeskString key) : m_key(std::move(key)) {}

const TeskString& LocalizedString::localizedString() const {
    TextCatalogue& catalogue = catalogueInForce();
    const CatalogueText* found = m_found.load(std::memory_order_acquire);
    if (found == nullptr || found->catalogue != &catalogue) {
        found = &catalogue.find(m_key);
        m_found.store(found, std::memory_order_release);
    }
    return found->text;
}

} // namespace tesk5
