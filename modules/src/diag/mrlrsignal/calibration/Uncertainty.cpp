#include <calibration/Uncertainty.h>

#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>

#include <cmath>

namespace calibration {

double Uncertainty::expanded(double confidence) const {
    // Student's distribution with this many degrees is the normal one.
    constexpr double MANY = 1e6;
    const double side = (1 + confidence) / 2;
    return standard *
           (degrees < MANY
                ? boost::math::quantile(boost::math::students_t_distribution<double>(degrees), side)
                : boost::math::quantile(boost::math::normal_distribution<double>(), side));
}

Uncertainty combine(std::span<const Uncertainty> sources) {
    double variance = 0;
    double weight = 0;
    for (const Uncertainty& source : sources) {
        const double square = source.standard * source.standard;
        variance += square;
        weight += square * square / source.degrees;
    }
    Uncertainty together;
    together.standard = std::sqrt(variance);
    if (weight > 0) {
        together.degrees = variance * variance / weight;
    }
    return together;
}

Uncertainty ofStep(double step) {
    Uncertainty uncertainty;
    uncertainty.standard = step / std::sqrt(12.0);
    return uncertainty;
}

} // namespace calibration
