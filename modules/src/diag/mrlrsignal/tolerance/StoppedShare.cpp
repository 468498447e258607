#include <tolerance/StoppedShare.h>

#include <statistics/Moments.h>

#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/non_central_t.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/tools/roots.hpp>

#include <cmath>

namespace tolerance {

namespace {

double normalShare(double x) {
    return boost::math::cdf(boost::math::normal_distribution<double>(), x);
}

// The noncentrality for which `statistic` is the quantile `probability` of Student's distribution.
double noncentrality(double statistic, double degrees, double probability) {
    // The quantile moves by about one for one, so the root is never further away than this.
    const double reach = 12 + std::abs(statistic);
    const auto excess = [&](double shift) {
        return boost::math::cdf(boost::math::non_central_t_distribution<double>(degrees, shift),
                                statistic) -
               probability;
    };
    std::uintmax_t steps = 100;
    const auto [low, high] =
        boost::math::tools::toms748_solve(excess, statistic - reach, statistic + reach,
                                          boost::math::tools::eps_tolerance<double>(30), steps);
    return (low + high) / 2;
}

} // namespace

Share stoppedShare(std::size_t stopped, std::size_t units, double confidence) {
    using Binomial = boost::math::binomial_distribution<double>;
    const auto count = static_cast<double>(units);
    const auto below = static_cast<double>(stopped);
    const double outside = (1 - confidence) / 2;
    return {.value = below / count,
            .low = Binomial::find_lower_bound_on_p(count, below, outside),
            .high = Binomial::find_upper_bound_on_p(count, below, outside)};
}

Share normalShareBelow(double limit, statistics::Readings levels, double confidence) {
    const auto count = static_cast<double>(levels.size());
    const double distance =
        (limit - statistics::mean(levels)) / statistics::standardDeviation(levels);
    const double statistic = distance * std::sqrt(count);
    const double outside = (1 - confidence) / 2;
    return {.value = normalShare(distance),
            .low = normalShare(noncentrality(statistic, count - 1, 1 - outside) / std::sqrt(count)),
            .high = normalShare(noncentrality(statistic, count - 1, outside) / std::sqrt(count))};
}

} // namespace tolerance
