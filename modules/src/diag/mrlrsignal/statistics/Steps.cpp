#include <statistics/Steps.h>

#include <statistics/Moments.h>

#include <algorithm>
#include <cmath>

namespace statistics {

double Steps::variance() const {
    constexpr double OF_COARSE = 4;
    return fine * fine / 12 * (shareOfFine + OF_COARSE * (1 - shareOfFine));
}

double Steps::rounded(double level, std::size_t index, std::size_t count) const {
    const bool isFine = static_cast<double>(index) < shareOfFine * static_cast<double>(count);
    const double step = isFine ? fine : 2 * fine;
    return origin + std::round((level - origin) / step) * step;
}

Steps stepsOf(Readings readings) {
    Steps steps;
    steps.fine = step(readings);
    steps.origin = readings.front();
    if (steps.fine == 0 || 2 * steps.fine > COARSEST_STEP) {
        return steps;
    }
    std::ptrdiff_t odd = std::count_if(readings.begin(), readings.end(), [&](double reading) {
        return std::llround((reading - steps.origin) / steps.fine) % 2 != 0;
    });
    const auto count = static_cast<std::ptrdiff_t>(readings.size());
    if (2 * odd > count) {
        steps.origin += steps.fine;
        odd = count - odd;
    }
    // Of those that are rounded to the fine step, one half lies on the coarse grid too.
    steps.shareOfFine = 2 * static_cast<double>(odd) / static_cast<double>(count);
    return steps;
}

} // namespace statistics
