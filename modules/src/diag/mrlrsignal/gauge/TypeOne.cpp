#include <gauge/TypeOne.h>

#include <statistics/Moments.h>

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>

#include <cmath>

namespace gauge {

TypeOne typeOne(statistics::Readings readings, const TypeOneOptions& options) {
    const auto count = static_cast<double>(readings.size());
    TypeOne found;
    found.mean = statistics::mean(readings);
    found.deviation = statistics::standardDeviation(readings);
    found.bias = found.mean - options.reference;
    const double error = found.deviation / std::sqrt(count);
    const boost::math::students_t_distribution<double> byChance(count - 1);
    const double half = error * boost::math::quantile(byChance, (1 + options.confidence) / 2);
    found.biasInterval = {
        .low = found.bias - half, .high = found.bias + half, .confidence = options.confidence};
    if (found.deviation <= 0) {
        return found;
    }
    found.biasPValue =
        2 * boost::math::cdf(boost::math::complement(byChance, std::abs(found.bias) / error));
    if (!options.tolerance) {
        return found;
    }
    const double cg = 0.2 * *options.tolerance / (6 * found.deviation);
    const double cgk = (0.1 * *options.tolerance - std::abs(found.bias)) / (3 * found.deviation);
    const boost::math::chi_squared_distribution<double> variance(count - 1);
    const double normal =
        boost::math::quantile(boost::math::normal_distribution<double>(), options.confidence);
    found.cg = Capability{
        .value = cg,
        .atLeast =
            cg * std::sqrt(boost::math::quantile(variance, 1 - options.confidence) / (count - 1))};
    found.cgk = Capability{
        .value = cgk,
        .atLeast = cgk - normal * std::sqrt(1 / (9 * count) + cgk * cgk / (2 * (count - 1)))};
    return found;
}

} // namespace gauge
