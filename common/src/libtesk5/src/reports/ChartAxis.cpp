#include <tesk5/ChartAxis.h>

#include <algorithm>
#include <cmath>

namespace tesk5 {

ChartAxis::ChartAxis(double lowest, double highest) {
    constexpr double MOST_STEPS = 6;
    constexpr double BASE = 10;
    if (highest <= lowest) {
        highest = lowest + 1;
    }
    // So that a tick differs from the next one as a double, however great both are.
    constexpr double FINEST = 1e-9;
    const double greatest = std::max(std::abs(lowest), std::abs(highest));
    const double least = std::max((highest - lowest) / MOST_STEPS, greatest * FINEST);
    const double power = std::pow(BASE, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0, BASE}) {
        m_step = factor * power;
        if (m_step >= least) {
            break;
        }
    }
    m_decimals = std::max(0, static_cast<int>(-std::floor(std::log10(m_step))));
    m_first = std::floor(lowest / m_step);
    m_last = std::ceil(highest / m_step);
}

std::vector<Number> ChartAxis::ticks() const {
    std::vector<Number> numbers;
    const auto steps = static_cast<int>(m_last - m_first);
    for (int i = 0; i <= steps; ++i) {
        numbers.push_back(Number::rounded((m_first + i) * m_step, m_decimals));
    }
    return numbers;
}

} // namespace tesk5
