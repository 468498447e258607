#include <tesk5/Measurement.h>

#include <algorithm>

namespace tesk5 {

const Limit* Measurement::brokenLimit() const {
    const Limit* broken = nullptr;
    for (const Limit& limit : limits) {
        if (value > limit.value) {
            continue;
        }
        const bool graver = broken == nullptr || (limit.severity == broken->severity
                                                      ? limit.value < broken->value
                                                      : limit.severity == Severity::error);
        if (graver) {
            broken = &limit;
        }
    }
    return broken;
}

double shareOfScale(mrl::Uint32 value, mrl::Uint32 lowest, mrl::Uint32 highest) {
    if (highest <= lowest) {
        return 0;
    }
    const mrl::Uint32 inside = std::clamp(value, lowest, highest);
    return static_cast<double>(inside - lowest) / static_cast<double>(highest - lowest);
}

} // namespace tesk5
