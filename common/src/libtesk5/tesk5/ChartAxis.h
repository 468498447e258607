// The axis of a drawing.
#pragma once

#include <tesk5/Number.h>

#include <vector>

namespace tesk5 {

/// An axis from one tick to another, with ticks at round numbers: 1, 2 or 5 times a power of ten.
class ChartAxis {
public:
    /// \param lowest,highest finite numbers that lie on it
    ChartAxis(double lowest, double highest);

    /// 0 to 1 from the axis' beginning to its end.
    double share(double value) const { return (value / m_step - m_first) / (m_last - m_first); }

    std::vector<Number> ticks() const;

private:
    double m_step = 1;
    int m_decimals = 0;
    double m_first = 0; ///< in steps
    double m_last = 1;
};

} // namespace tesk5
