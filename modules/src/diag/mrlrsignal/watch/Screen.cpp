#include <watch/Screen.h>

namespace watch {

std::string Screen::changeTo(std::vector<std::string> lines, Size size) {
    std::string change;
    if (size != m_size) {
        m_size = size;
        m_shown.clear();
        change = "\x1b[2J";
    }
    m_shown.resize(lines.size());
    for (std::size_t row = 0; row < lines.size(); ++row) {
        if (lines[row] != m_shown[row]) {
            change += "\x1b[" + std::to_string(row + 1) + ";1H" + lines[row] + "\x1b[K";
        }
    }
    m_shown = std::move(lines);
    return change;
}

} // namespace watch
