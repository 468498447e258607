#include <tolerance/OneSided.h>

#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/non_central_t.hpp>
#include <boost/math/distributions/normal.hpp>

#include <cmath>

namespace tolerance {

namespace {

// The probability that at least `rank` of the units lie below the level that `share` of all units
// are above.
double confidenceOf(std::size_t units, std::size_t rank, double share) {
    const boost::math::binomial_distribution<double> below(static_cast<double>(units), 1 - share);
    return boost::math::cdf(boost::math::complement(below, static_cast<double>(rank) - 1));
}

} // namespace

double normalFactor(std::size_t units, const Promise& promise) {
    const double root = std::sqrt(static_cast<double>(units));
    const double distance =
        boost::math::quantile(boost::math::normal_distribution<double>(), promise.share);
    const boost::math::non_central_t_distribution<double> byChance(static_cast<double>(units - 1),
                                                                   distance * root);
    return boost::math::quantile(byChance, promise.confidence) / root;
}

std::size_t rankOfLimit(std::size_t units, const Promise& promise) {
    std::size_t rank = 0;
    while (rank < units && confidenceOf(units, rank + 1, promise.share) >= promise.confidence) {
        ++rank;
    }
    return rank;
}

std::size_t unitsNeeded(std::size_t rank, const Promise& promise) {
    std::size_t enough = rank;
    while (confidenceOf(enough, rank, promise.share) < promise.confidence) {
        enough *= 2;
    }
    std::size_t tooFew = enough == rank ? rank - 1 : enough / 2;
    while (enough - tooFew > 1) {
        const std::size_t middle = tooFew + (enough - tooFew) / 2;
        (confidenceOf(middle, rank, promise.share) < promise.confidence ? tooFew : enough) = middle;
    }
    return enough;
}

} // namespace tolerance
