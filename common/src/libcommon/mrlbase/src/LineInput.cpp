#include <mrl/LineInput.h>

#include "StandardInput.h"

#include <algorithm>

namespace mrl {

std::optional<std::string> ArrivingLines::line(const std::function<bool()>& stop) {
    while (!stop()) {
        const std::size_t end = m_kept.find('\n');
        if (end != std::string::npos || m_kept.size() >= LONGEST || (m_ended && !m_kept.empty())) {
            std::string text = m_kept.substr(0, std::min(end, LONGEST));
            m_kept.erase(0, end <= LONGEST ? end + 1 : LONGEST);
            if (text.ends_with('\r')) {
                text.pop_back();
            }
            return text;
        }
        if (m_ended) {
            break;
        }
        const std::optional<std::string> arrived = m_arrived();
        m_ended = !arrived;
        m_kept += arrived.value_or("");
    }
    return std::nullopt;
}

LineInput& LineInput::ofProcess() {
    static ArrivingLines lines(readStandardInput);
    return lines;
}

} // namespace mrl
