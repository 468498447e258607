// What a crossed study says about a gauge: the figures of its report.
#pragma once

#include <gauge/Anova.h>
#include <gauge/Draws.h>

#include <array>
#include <optional>

namespace gauge {

/// Where variation comes from, as reports list it.
enum class Source {
    GAUGE, ///< repeatability and reproducibility
    REPEATABILITY,
    REPRODUCIBILITY, ///< operators and interaction
    OPERATORS,
    INTERACTION,
    PARTS,
    TOTAL,
};
inline constexpr std::size_t SOURCES = 7;

/// An estimate and the interval that covers the true value with the study's confidence.
struct Estimate {
    double value = 0;
    double low = 0;
    double high = 0;
};

struct Variation {
    Estimate deviation; ///< standard deviation, in the readings' unit
    /// The variance in percent of the total variance; these add up.
    double contribution = 0;
    /// The standard deviation in percent of the total one; these do not add up.
    Estimate ofStudy;
    /// Six standard deviations in percent of the tolerance.
    std::optional<Estimate> ofTolerance;
};

/// How many groups of parts a gauge can tell apart.
struct Categories {
    /// 1.41 times the parts' standard deviation by the gauge's. None where the gauge has no
    /// variation at all.
    std::optional<Estimate> ratio;
    /// `ratio` without its decimals, at least 1; 0 where there is no ratio.
    int count = 0;
};

struct Study {
    Anova anova;
    /// Before negative estimates were set to 0.
    Components estimated;
    std::array<Variation, SOURCES> variations;
    Categories categories;

    const Variation& operator[](Source source) const {
        return variations[static_cast<std::size_t>(source)];
    }
};

struct StudyOptions {
    /// Width of the tolerance in the readings' unit, above 0.
    std::optional<double> tolerance;
    double confidence = 0.95; ///< of each interval, above 0 and below 1
};

/// The width of a tolerance with both limits, or twice the distance between the mean of all
/// readings and its only limit.
/// \return none without limits, or where the mean lies on the only one
std::optional<double> toleranceWidth(std::optional<double> lower, std::optional<double> upper,
                                     double mean);

/// The study of complete readings. Its intervals assume normal effects.
/// Source of the intervals (generalized confidence intervals): Hamada and Weerahandi, Journal of
/// Quality Technology 32 (2000)
Study evaluate(const CrossedReadings& readings, const StudyOptions& options);

/// The same with draws for the table that the analysis uses.
Study evaluate(const Anova& anova, const Draws& draws, const StudyOptions& options);

enum class Rating {
    GOOD,
    CONDITIONAL, ///< may do for an application that is not critical
    UNUSABLE,    ///< cannot tell parts apart
};

/// A gauge is good up to 10 and conditional up to 30 percent of the variation or tolerance, with at
/// least 5 categories.
inline constexpr double GOOD_PERCENT = 10;
inline constexpr double CONDITIONAL_PERCENT = 30;
inline constexpr int FEWEST_CATEGORIES = 5;

/// Against the variation of the study's parts.
Rating ratingInStudy(const Study& study);

/// Against the tolerance, which categories do not matter for; none without one.
std::optional<Rating> ratingInTolerance(const Study& study);

} // namespace gauge
