#include <statistics/LevelRating.h>

namespace statistics {

namespace {

bool isInside(double level, const std::optional<double>& limit, double guardBand) {
    return limit && level >= *limit - guardBand && level < *limit + guardBand;
}

} // namespace

Rating rate(double level, const LevelLimits& limits) {
    if (limits.failing && level < *limits.failing - limits.guardBand) {
        return Rating::FAIL;
    }
    if (isInside(level, limits.failing, limits.guardBand) ||
        isInside(level, limits.warning, limits.guardBand)) {
        return Rating::TOO_CLOSE;
    }
    if (limits.warning && level < *limits.warning) {
        return Rating::BELOW_WARNING;
    }
    return Rating::PASS;
}

bool isClear(const Interval& interval, const LevelLimits& limits) {
    for (const std::optional<double>& limit : {limits.failing, limits.warning}) {
        if (limit && interval.high >= *limit - limits.guardBand &&
            interval.low < *limit + limits.guardBand) {
            return false;
        }
    }
    return true;
}

bool decided(Readings readings, double offset, const LevelLimits& limits) {
    Interval interval = medianInterval(readings, EARLY_CONFIDENCE);
    interval.low += offset;
    interval.high += offset;
    return interval.confidence >= EARLY_CONFIDENCE && isClear(interval, limits);
}

} // namespace statistics
