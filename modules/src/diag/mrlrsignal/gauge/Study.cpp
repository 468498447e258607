#include <gauge/Study.h>

#include <statistics/Robust.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace gauge {

namespace {

// As published, not the square root of 2.
constexpr double CATEGORY_FACTOR = 1.41;

// What a study variation is wide, in standard deviations: 99.73 % of normal readings.
constexpr double STUDY_WIDTH = 6;

using Values = std::array<double, SOURCES>;

Values deviations(const Components& components) {
    return {std::sqrt(components.gauge()),
            std::sqrt(components.repeatability),
            std::sqrt(components.reproducibility()),
            std::sqrt(components.operators),
            std::sqrt(components.interaction),
            std::sqrt(components.parts),
            std::sqrt(components.total())};
}

constexpr std::size_t GAUGE_INDEX = static_cast<std::size_t>(Source::GAUGE);
constexpr std::size_t PARTS_INDEX = static_cast<std::size_t>(Source::PARTS);
constexpr std::size_t TOTAL_INDEX = static_cast<std::size_t>(Source::TOTAL);

double share(double part, double whole) {
    return whole > 0 ? 100 * part / whole : 0;
}

double categoryRatio(const Values& values) {
    return values[GAUGE_INDEX] > 0 ? CATEGORY_FACTOR * values[PARTS_INDEX] / values[GAUGE_INDEX]
                                   : std::numeric_limits<double>::max();
}

// What the draws gave for one quantity.
class Drawn {
public:
    explicit Drawn(std::size_t size) { m_values.reserve(size); }

    void add(double value) { m_values.push_back(value); }

    Estimate around(double value, double confidence) {
        std::sort(m_values.begin(), m_values.end());
        return {.value = value,
                .low = statistics::quantile(m_values, (1 - confidence) / 2),
                .high = statistics::quantile(m_values, (1 + confidence) / 2)};
    }

private:
    std::vector<double> m_values;
};

Estimate scaled(const Estimate& estimate, double factor) {
    return {.value = estimate.value * factor,
            .low = estimate.low * factor,
            .high = estimate.high * factor};
}

Rating worse(Rating one, Rating other) {
    return std::max(one, other);
}

Rating ratingOf(double percent) {
    return percent <= GOOD_PERCENT          ? Rating::GOOD
           : percent <= CONDITIONAL_PERCENT ? Rating::CONDITIONAL
                                            : Rating::UNUSABLE;
}

} // namespace

std::optional<double> toleranceWidth(std::optional<double> lower, std::optional<double> upper,
                                     double mean) {
    if (lower && upper) {
        return *upper - *lower;
    }
    if (!lower && !upper) {
        return std::nullopt;
    }
    const double width = 2 * std::abs(mean - (lower ? *lower : *upper));
    return width > 0 ? std::optional(width) : std::nullopt;
}

Study evaluate(const Anova& anova, const Draws& draws, const StudyOptions& options) {
    Study study{.anova = anova,
                .estimated = components(anova.design, anova.used),
                .variations = {},
                .categories = {}};
    const Values values = deviations(withoutNegatives(study.estimated));
    std::vector<Drawn> drawnDeviations(SOURCES, Drawn(draws.size()));
    std::vector<Drawn> drawnShares(SOURCES, Drawn(draws.size()));
    Drawn drawnRatio(draws.size());
    for (std::size_t draw = 0; draw < draws.size(); ++draw) {
        const Values drawn = deviations(draws.components(anova.design, anova.used, draw));
        for (std::size_t source = 0; source < SOURCES; ++source) {
            drawnDeviations[source].add(drawn[source]);
            drawnShares[source].add(share(drawn[source], drawn[TOTAL_INDEX]));
        }
        drawnRatio.add(categoryRatio(drawn));
    }
    const double total = values[TOTAL_INDEX];
    for (std::size_t source = 0; source < SOURCES; ++source) {
        Variation& variation = study.variations[source];
        variation.deviation = drawnDeviations[source].around(values[source], options.confidence);
        variation.contribution = share(values[source] * values[source], total * total);
        variation.ofStudy =
            drawnShares[source].around(share(values[source], total), options.confidence);
        if (options.tolerance) {
            variation.ofTolerance =
                scaled(variation.deviation, 100 * STUDY_WIDTH / *options.tolerance);
        }
    }
    if (values[GAUGE_INDEX] > 0) {
        const double ratio = categoryRatio(values);
        study.categories.ratio = drawnRatio.around(ratio, options.confidence);
        // Far more categories than readings say nothing more.
        study.categories.count = static_cast<int>(std::clamp(ratio, 1.0, 1e6));
    }
    return study;
}

Study evaluate(const CrossedReadings& readings, const StudyOptions& options) {
    const Anova anova = analyse(readings);
    return evaluate(anova, Draws(anova.used), options);
}

Rating ratingInStudy(const Study& study) {
    return worse(ratingOf(study[Source::GAUGE].ofStudy.value),
                 study.categories.count >= FEWEST_CATEGORIES ? Rating::GOOD : Rating::UNUSABLE);
}

std::optional<Rating> ratingInTolerance(const Study& study) {
    const std::optional<Estimate>& percent = study[Source::GAUGE].ofTolerance;
    return percent ? std::optional(ratingOf(percent->value)) : std::nullopt;
}

} // namespace gauge
