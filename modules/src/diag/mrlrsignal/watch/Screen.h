// What of a frame is new: a terminal is sent the lines that differ from those that it shows.
#pragma once

#include <watch/View.h>

#include <string>
#include <vector>

namespace watch {

class Screen {
public:
    /// The text with escape sequences that makes the screen show `lines`, from the top; empty when
    /// it shows them already. A new size makes a screen that shows nothing known.
    std::string changeTo(std::vector<std::string> lines, Size size);

private:
    std::vector<std::string> m_shown;
    Size m_size{.columns = 0, .rows = 0};
};

} // namespace watch
