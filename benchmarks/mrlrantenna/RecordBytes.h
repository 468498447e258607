// What a record of the visible-network list takes: itself, and those of its texts that are too long
// for it.
#pragma once

#include <VisibleNetwork.h>

#include <array>
#include <cstddef>

namespace bench {

inline std::array<const mrl::String*, 7> textsOf(const VisibleNetwork& record) {
    return {&record.m_ssid,
            &record.m_security,
            &record.m_connectable,
            &record.m_bssType,
            &record.m_authAlgorithm,
            &record.m_connectedText,
            &record.m_signalQualityText};
}

inline bool isOutside(const VisibleNetwork& record, const mrl::String& text) {
    const auto* begin = reinterpret_cast<const char*>(&record);
    const auto* units = reinterpret_cast<const char*>(text.getUCS2Buffer());
    return units < begin || units >= begin + sizeof record;
}

/// How many texts of the record have blocks of their own.
inline std::size_t textsOutside(const VisibleNetwork& record) {
    std::size_t texts = 0;
    for (const mrl::String* text : textsOf(record)) {
        texts += isOutside(record, *text) ? 1 : 0;
    }
    return texts;
}

/// The bytes that a copy of the record makes anew.
inline std::size_t bytesOf(const VisibleNetwork& record) {
    std::size_t bytes = sizeof record;
    for (const mrl::String* text : textsOf(record)) {
        bytes += isOutside(record, *text) ? (text->length() + 1) * sizeof(mrl::Char) : 0;
    }
    return bytes;
}

} // namespace bench
