// The limits that levels of good units suggest for a configuration.
#pragma once

#include <tolerance/Normality.h>
#include <tolerance/OneSided.h>
#include <tolerance/StoppedShare.h>

#include <optional>

namespace tolerance {

/// The fewest good units that limits are proposed for.
inline constexpr std::size_t FEWEST_UNITS = 10;

enum class Method {
    NORMAL,           ///< mean less normalFactor() standard deviations
    ORDER_STATISTICS, ///< one of the lowest levels
    NONE,             ///< not normal, and too few units for an order statistic
};

/// A level above which the promised share of good units lies.
struct LowerLimit {
    Promise promise;
    Method method = Method::NONE;
    double level = 0;            ///< dBm; without meaning for NONE
    double factor = 0;           ///< standard deviations below the mean, for NORMAL
    std::size_t rank = 0;        ///< from 1, for ORDER_STATISTICS
    std::size_t unitsNeeded = 0; ///< for ORDER_STATISTICS with the lowest level
};

/// The limit of at least FEWEST_UNITS levels; `isNormal` allows the normal method, which is then
/// used. Levels that are all the same are not normal.
LowerLimit lowerLimit(statistics::Readings levels, const Promise& promise, bool isNormal);

struct ProposalOptions {
    Promise warning{.share = 0.95, .confidence = 0.95};
    Promise failing{.share = 0.99, .confidence = 0.95};
    double guardBand = 0;     ///< dB, 0 or more
    double confidence = 0.95; ///< of the shares' intervals
};

/// One limit for the configuration, and what it stops.
struct ProposedLimit {
    LowerLimit tolerance;
    double level = 0; ///< dBm, what to write into the configuration
    /// Levels below this are stopped: the limit moved by the guard band.
    double stopsBelow = 0;
    std::size_t goodStopped = 0;       ///< of the good units at hand
    Share ofGood;                      ///< by counting
    std::optional<Share> ofNormalGood; ///< by the normal distribution, where that is used
    std::optional<Share> ofBad;        ///< of bad units, where some were measured
};

struct Proposal {
    NormalFit fit;
    bool isNormal = false;
    double mean = 0;
    double deviation = 0; ///< standard deviation, dB; 0 where all levels are the same
    /// None where there is no tolerance limit; `warning` comes with `failing` or alone.
    std::optional<ProposedLimit> warning;
    std::optional<ProposedLimit> failing;
    /// How many more good units a distribution-free limit of either kind needs; 0 where the limit
    /// exists.
    std::size_t missingForWarning = 0;
    std::size_t missingForFailing = 0;
};

/// The proposal from the levels of at least FEWEST_UNITS good units and of any number of bad ones,
/// in dBm.
///
/// A unit is stopped with a warning below the warning level plus the guard band, and fails below
/// the failing level less the guard band. So the warning level is the tolerance limit less the
/// guard band, and the failing level the tolerance limit plus it, but low enough that the two
/// guard bands do not overlap. Both are rounded down to tenths of a dB.
Proposal propose(statistics::Readings good, statistics::Readings bad,
                 const ProposalOptions& options);

} // namespace tolerance
