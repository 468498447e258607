// One measurement of a level: looks until enough fresh readings are there, or the time is over.
#pragma once

#include <readings/LevelSource.h>

#include <statistics/LevelRating.h>
#include <statistics/Trend.h>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace readings {

/// Fewer tell nothing about a level.
inline constexpr std::size_t FEWEST_READINGS = 5;
/// Two radios of one name whose levels differ by more are not one level, in dB.
inline constexpr double SAME_LEVEL = 3;

/// What the calibration of a station says about one radio.
struct Correction {
    double offset = 0;      ///< dB, added to each reading
    double uncertainty = 0; ///< dB, 0 or more: widens the guard band
};

struct SamplingPlan {
    std::size_t samples = 15; ///< of one BSS: no more are taken
    std::chrono::seconds longest{60};
    statistics::LevelLimits limits = {};
    double offset = 0; ///< dB, added to each reading
    /// The correction of a reading, besides the offset; null: none.
    std::function<Correction(const Reading&)> calibration = {};
    bool mayEndEarly = true; ///< once more samples would hardly change the rating
};

/// What `plan` adds to a reading.
Correction correctionOf(const SamplingPlan& plan, const Reading& reading);
/// The limits of `plan` for the radio of a reading.
statistics::LevelLimits limitsFor(const SamplingPlan& plan, const Reading& reading);

/// Why a measurement has no level.
enum class NoLevel : std::uint8_t {
    NO_SERVICE,  ///< the system's wireless service does not answer
    RADIO_OFF,   ///< the radio is off
    DENIED,      ///< the system denies the list, or scans while nothing fresh is listed
    NOT_SEEN,    ///< the target was neither connected nor listed
    ONLY_OLD,    ///< it was listed, and never heard
    NO_LEVELS,   ///< the driver gave only numbers that are no level
    TOO_FEW,     ///< fewer than five fresh readings in the time
    AMBIGUOUS,   ///< the name stands for radios with different levels
    FAILED,      ///< the system gave no list for another reason
    INTERRUPTED, ///< ended by the caller
};

/// One radio that the target stands for.
struct Candidate {
    Bssid bssid{};
    std::uint32_t mhz = 0;
    double level = 0; ///< dBm: the median, without the offset
    std::size_t readings = 0;
};

struct Sample {
    double seconds = 0; ///< since the measurement's start
    double level = 0;   ///< dBm, with the offset
    Reading reading;
};

/// What was measured. Levels have the offset.
struct Sampled {
    std::vector<Sample> samples;   ///< of the radio that is rated
    double level = 0;              ///< dBm: the median
    statistics::Interval interval; ///< of the level, at 95 %
    statistics::Spread spread;     ///< dB
    statistics::Trend trend;       ///< dB
    double effective = 0;          ///< how many independent readings the samples are worth
    bool early = false;            ///< ended because more would hardly have changed the rating
};

struct Sampling {
    std::optional<NoLevel> none;
    DWORD error = ERROR_SUCCESS; ///< the system's, for NO_SERVICE, RADIO_OFF, DENIED and FAILED
    Sampled sampled;             ///< without a level: the samples so far
    std::vector<Candidate> candidates; ///< by falling level
    Dropped dropped;
    std::size_t scans = 0;
    double seconds = 0; ///< how long it took
};

/// Measures. \param onSample called with each sample that is taken, of any candidate; may be null
/// \param stop asked before each look; a measurement that it ends is INTERRUPTED
/// Blocks for `plan.longest` and one pause of the source at most.
/// Threads: the caller's
Sampling measure(LevelSource& source, const SamplingPlan& plan,
                 const std::function<void(const Sample&)>& onSample,
                 const std::function<bool()>& stop);

} // namespace readings
