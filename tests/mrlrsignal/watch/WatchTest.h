// Readings and frames for the tests of the live view.
#pragma once

#include <watch/Model.h>
#include <watch/View.h>

#include <mrl/DisplayWidth.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace watch {

using namespace std::chrono_literals;

inline constexpr readings::Bssid LAB{2, 0, 0, 0, 1, 0};
inline constexpr readings::Bssid LAB_5{2, 0, 0, 0, 1, 1};

inline readings::Reading reading(Moment at, LONG dbm, const readings::Bssid& bssid = LAB,
                                 const std::string& name = "Lab") {
    return {.at = at,
            .dbm = dbm,
            .source = readings::Source::SCAN,
            .bssid = bssid,
            .ssid = name,
            .mhz = 5180};
}

/// The lines of a frame without the empty ones at the end of its upper part.
inline std::vector<std::string> linesOf(const Model& model, Moment now, Size size) {
    std::vector<std::string> lines = frame(model, now, size, false);
    EXPECT_LE(lines.size(), size.rows);
    for (const std::string& line : lines) {
        EXPECT_LT(mrl::columnsOf(line), size.columns) << line;
        EXPECT_EQ(line.find('\x1b'), std::string::npos) << line;
    }
    return lines;
}

inline std::string textOf(const Model& model, Moment now, Size size = {}) {
    std::string text;
    for (const std::string& line : linesOf(model, now, size)) {
        text += line + "\n";
    }
    return text;
}

} // namespace watch
