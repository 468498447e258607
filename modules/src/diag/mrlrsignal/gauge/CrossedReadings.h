// The readings of a crossed study: each operator measures each part equally often.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace gauge {

/// How large a study is: at least 2 parts, 1 operator and 2 trials.
struct Design {
    std::size_t parts = 0;
    std::size_t operators = 0;
    std::size_t trials = 0;

    std::size_t cells() const { return parts * operators; }
    bool operator==(const Design&) const = default;
};

/// All readings of a study, in one unit; none is missing.
class CrossedReadings {
public:
    explicit CrossedReadings(const Design& design)
        : m_design(design), m_values(design.cells() * design.trials) {}

    const Design& design() const { return m_design; }

    /// Numbers from 0; the trials of a cell are in the order in which they were measured.
    double& at(std::size_t part, std::size_t op, std::size_t trial) {
        return m_values[(part * m_design.operators + op) * m_design.trials + trial];
    }

    /// The trials of one part by one operator.
    std::span<const double> cell(std::size_t part, std::size_t op) const {
        return std::span(m_values).subspan((part * m_design.operators + op) * m_design.trials,
                                           m_design.trials);
    }

    /// All cells of a part, one operator after the other.
    std::span<const double> part(std::size_t part) const {
        const std::size_t each = m_design.operators * m_design.trials;
        return std::span(m_values).subspan(part * each, each);
    }

    /// All readings by one operator, one part after the other.
    std::vector<double> byOperator(std::size_t op) const {
        std::vector<double> values;
        values.reserve(m_design.parts * m_design.trials);
        for (std::size_t part = 0; part < m_design.parts; ++part) {
            const auto readings = cell(part, op);
            values.insert(values.end(), readings.begin(), readings.end());
        }
        return values;
    }

    std::span<const double> all() const { return m_values; }

private:
    Design m_design;
    std::vector<double> m_values; // by part, then by operator, then by trial
};

} // namespace gauge
