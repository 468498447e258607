// The crossed study that textbooks show: 10 parts, 3 appraisers, 3 trials.
// Source: Automotive Industry Action Group, "Measurement Systems Analysis", 4th edition (2010),
// chapter III section B
#pragma once

#include <gauge/CrossedReadings.h>

namespace test {

inline constexpr gauge::Design TEXTBOOK_DESIGN{.parts = 10, .operators = 3, .trials = 3};

// By appraiser, part and trial, as the book has them.
inline constexpr double TEXTBOOK_READINGS[3][10][3] = {
    {{0.29, 0.41, 0.64},
     {-0.56, -0.68, -0.58},
     {1.34, 1.17, 1.27},
     {0.47, 0.50, 0.64},
     {-0.80, -0.92, -0.84},
     {0.02, -0.11, -0.21},
     {0.59, 0.75, 0.66},
     {-0.31, -0.20, -0.17},
     {2.26, 1.99, 2.01},
     {-1.36, -1.25, -1.31}},
    {{0.08, 0.25, 0.07},
     {-0.47, -1.22, -0.68},
     {1.19, 0.94, 1.34},
     {0.01, 1.03, 0.20},
     {-0.56, -1.20, -1.28},
     {-0.20, 0.22, 0.06},
     {0.47, 0.55, 0.83},
     {-0.63, 0.08, -0.34},
     {1.80, 2.12, 2.19},
     {-1.68, -1.62, -1.50}},
    {{0.04, -0.11, -0.15},
     {-1.38, -1.13, -0.96},
     {0.88, 1.09, 0.67},
     {0.14, 0.20, 0.11},
     {-1.46, -1.07, -1.45},
     {-0.29, -0.67, -0.49},
     {0.02, 0.01, 0.21},
     {-0.46, -0.56, -0.49},
     {1.77, 1.45, 1.87},
     {-1.49, -1.77, -2.16}},
};

inline gauge::CrossedReadings textbookStudy() {
    gauge::CrossedReadings readings(TEXTBOOK_DESIGN);
    for (std::size_t op = 0; op < 3; ++op) {
        for (std::size_t part = 0; part < 10; ++part) {
            for (std::size_t trial = 0; trial < 3; ++trial) {
                readings.at(part, op, trial) = TEXTBOOK_READINGS[op][part][trial];
            }
        }
    }
    return readings;
}

} // namespace test
