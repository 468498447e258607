#include <tesk5/Measurement.h>

#include <algorithm>
#include <cmath>

namespace tesk5 {

bool Limit::brokenBy(const Number& measured) const {
    switch (kept) {
    case Kept::AT_LEAST:
        return measured < value;
    case Kept::AT_MOST:
        return measured > value;
    default:
        return measured <= value;
    }
}

const char* keptName(Limit::Kept kept) {
    switch (kept) {
    case Limit::Kept::AT_LEAST:
        return "atLeast";
    case Limit::Kept::AT_MOST:
        return "atMost";
    default:
        return "above";
    }
}

const Limit* Measurement::brokenLimit() const {
    const auto farther = [](const Limit& limit, const Limit& other) {
        return limit.kept == Limit::Kept::AT_MOST ? limit.value > other.value
                                                  : limit.value < other.value;
    };
    const Limit* broken = nullptr;
    for (const Limit& limit : limits) {
        if (!limit.brokenBy(value)) {
            continue;
        }
        const bool graver = broken == nullptr || (limit.severity == broken->severity
                                                      ? farther(limit, *broken)
                                                      : limit.severity == Severity::error);
        if (graver) {
            broken = &limit;
        }
    }
    return broken;
}

const Limit* Measurement::nearestLimit() const {
    const auto distance = [this](const Limit& limit) {
        return std::abs(limit.value.toDouble() - value.toDouble());
    };
    const auto nearest =
        std::min_element(limits.begin(), limits.end(), [&distance](const Limit& a, const Limit& b) {
            return distance(a) < distance(b);
        });
    return nearest == limits.end() ? nullptr : &*nearest;
}

double shareOfScale(const Number& value, const Number& lowest, const Number& highest) {
    if (highest <= lowest) {
        return 0;
    }
    const Number inside = std::clamp(value, lowest, highest);
    return (inside.toDouble() - lowest.toDouble()) / (highest.toDouble() - lowest.toDouble());
}

} // namespace tesk5
