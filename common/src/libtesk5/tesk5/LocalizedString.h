// A text of the module in the language of the run.
#pragma once

#include <tesk5/TeskString.h>

namespace tesk5 {

/// One key of the text catalogue. Made with DiagModule::createLocalizedString, owned by the
/// framework, alive until the process ends.
class LocalizedString {
public:
    /// Finds the text of `key` in the current Language, whose text it is. Any thread.
    using LookUp = const TeskString& (*)(const TeskString& key);

    LocalizedString(TeskString key, LookUp lookUp) : m_key(std::move(key)), m_lookUp(lookUp) {}
    LocalizedString(const LocalizedString&) = delete;
    LocalizedString& operator=(const LocalizedString&) = delete;

    const TeskString& key() const { return m_key; }
    /// The text of the key in the current Language; the key itself when there is none. Valid as
    /// long as the language: that of the process stays. Any thread.
    const TeskString& localizedString() const { return m_lookUp(m_key); }

private:
    TeskString m_key;
    LookUp m_lookUp;
};

} // namespace tesk5
