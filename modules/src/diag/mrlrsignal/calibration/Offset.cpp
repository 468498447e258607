#include <calibration/Offset.h>

#include <calibration/Uncertainty.h>
#include <statistics/Moments.h>

#include <array>
#include <cmath>

namespace calibration {

namespace {

Uncertainty ofPlacements(const Offset& offset) {
    const auto count = static_cast<double>(offset.placements);
    return {.standard = offset.placementDeviation / std::sqrt(count), .degrees = count - 1};
}

Drift driftOf(const statistics::Interval& interval, double allowed) {
    if (interval.low >= -allowed && interval.high <= allowed) {
        return Drift::HOLDS;
    }
    return interval.low > allowed || interval.high < -allowed ? Drift::DRIFTED : Drift::CANNOT_TELL;
}

} // namespace

Offset offset(statistics::Readings placements, const Reference& reference, double step,
              double confidence) {
    Offset found;
    found.value = reference.level - statistics::mean(placements);
    found.placements = placements.size();
    found.placementDeviation = statistics::standardDeviation(placements);
    found.step = step;
    found.confidence = confidence;
    Uncertainty known;
    known.standard = reference.uncertainty;
    const Uncertainty combined =
        combine(std::array{ofPlacements(found), ofStep(found.step), known});
    found.uncertainty = combined.standard;
    found.degrees = combined.degrees;
    found.expanded = combined.expanded(confidence);
    return found;
}

DriftCheck checkDrift(const Offset& before, const Offset& now, double allowed, double confidence) {
    DriftCheck check;
    check.change = now.value - before.value;
    check.allowed = allowed;
    const double half = combine(std::array{ofPlacements(before), ofPlacements(now),
                                           ofStep(before.step), ofStep(now.step)})
                            .expanded(confidence);
    check.interval = {
        .low = check.change - half, .high = check.change + half, .confidence = confidence};
    check.drift = driftOf(check.interval, allowed);
    return check;
}

} // namespace calibration
