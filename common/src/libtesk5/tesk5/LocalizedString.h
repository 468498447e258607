// A text of the module in the user's language.
#pragma once

#include <tesk5/TeskString.h>

#include <atomic>

namespace tesk5 {

struct CatalogueText;

/// One key of the text catalogue. Made with DiagModule::createLocalizedString, owned by the
/// framework, alive until the process ends.
class LocalizedString {
public:
    explicit LocalizedString(TeskString key);
    LocalizedString(const LocalizedString&) = delete;
    LocalizedString& operator=(const LocalizedString&) = delete;

    const TeskString& key() const { return m_key; }
    /// The text of the key in the language in force; the key itself when no catalogue has it. Read
    /// on the first call, not before; the reference stays valid. Any thread.
    const TeskString& localizedString() const;

private:
    TeskString m_key;
    // What the last call found, with the mark of its language: records are filled by the thousand.
    mutable std::atomic<const CatalogueText*> m_found{nullptr};
};

} // namespace tesk5
