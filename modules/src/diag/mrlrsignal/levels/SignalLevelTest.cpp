#include <levels/SignalLevelTest.h>

#include <levels/AppliedCalibration.h>
#include <levels/LimitsId.h>
#include <levels/ModuleObjects.h>
#include <levels/TargetParameters.h>
#include <readings/Sampling.h>

#include <cmath>

namespace levels {

using tesk5::DiagModule;
using tesk5::Event;
using tesk5::Number;
using tesk5::TeskString;
using tesk5::TestResult;

namespace {

using readings::Sampled;
using readings::Sampling;
using statistics::Rating;

constexpr const char* SERIES = "Level";
constexpr const char* DBM = "dBm";
constexpr const char* DECIBEL = "dB";
constexpr int LOWEST = -110;
constexpr int HIGHEST = -10;
// Of differences of decimals: guard bands that touch do not overlap.
constexpr double ROUNDING_ERROR = 1e-9;
// A drift that readings without one would show in one run of twenty is none.
constexpr double DRIFT_SIGNIFICANCE = 0.05;

statistics::LevelLimits limitsOfParameters() {
    return {.warning = numberOf(parameters::warningLevel),
            .failing = numberOf(parameters::failingLevel),
            .guardBand = numberOr(parameters::guardBand, 0)};
}

readings::SamplingPlan levelPlan() {
    readings::SamplingPlan plan = planOfParameters();
    plan.limits = limitsOfParameters();
    plan.offset = numberOr(parameters::offset, 0);
    // Spread and drift over the time that Samples asks for.
    plan.mayEndEarly = !parameters::maxSpread->isSet() && !parameters::maxDrift->isSet();
    return plan;
}

void recordSample(const readings::Sample& sample) {
    DiagModule::sampled(SERIES, rounded(sample.level), attributesOf(sample.reading),
                        sample.seconds);
}

std::vector<tesk5::Limit> limitsOf(const statistics::LevelLimits& limits) {
    std::vector<tesk5::Limit> list;
    const auto add = [&list](const tesk5::Parameter* parameter, std::optional<double> value,
                             tesk5::Severity severity) {
        if (value) {
            list.push_back(
                {parameter->name(), *parameter->number(), severity, tesk5::Limit::Kept::AT_LEAST});
        }
    };
    add(parameters::warningLevel, limits.warning, tesk5::Severity::warning);
    add(parameters::failingLevel, limits.failing, tesk5::Severity::error);
    return list;
}

void recordLevel(const Sampling& sampling, const readings::SamplingPlan& plan,
                 const AppliedCalibration& calibration) {
    const Sampled& sampled = sampling.sampled;
    const readings::Reading& reading = sampled.samples.back().reading;
    const readings::Correction correction = correctionOf(plan, reading);
    const std::vector<tesk5::Limit> limits = limitsOf(plan.limits);
    DiagModule::follows({SERIES, DBM, limits, rounded(sampled.level)});
    std::vector<tesk5::Figure> figures = {
        {"IntervalLow", rounded(sampled.interval.low), DBM},
        {"IntervalHigh", rounded(sampled.interval.high), DBM},
        {"InterquartileRange", rounded(sampled.spread.interquartileRange), DECIBEL},
        {"MedianAbsoluteDeviation", rounded(sampled.spread.medianAbsoluteDeviation), DECIBEL},
        {"Drift", rounded(sampled.trend.change), DECIBEL},
        {"AppliedGuardBand", rounded(limitsFor(plan, reading).guardBand), DECIBEL},
        {"AppliedOffset", rounded(correction.offset), DECIBEL},
        {"Readings", sampled.samples.size(), ""},
        {"EffectiveReadings", rounded(sampled.effective), ""},
        {"NotHeardAgain", sampling.dropped.unchanged, ""},
        {"NoLevels", sampling.dropped.outOfRange, ""}};
    if (correction.uncertainty > 0) {
        figures.push_back({"OffsetUncertainty", rounded(correction.uncertainty), DECIBEL});
    }
    DiagModule::measured({SERIES, rounded(sampled.level), DBM, LOWEST, HIGHEST, limits, figures,
                          calibration.attributes(reading)});
}

Event* aboutLevel(Event* event, const Sampled& sampled, const statistics::LevelLimits& limits) {
    aboutTarget(event)
        ->setVariable("Level", levelIn(sampled.level))
        ->setVariable("GuardBand", decibelsIn(limits.guardBand));
    if (limits.warning) {
        event->setVariable("WarningLevel", quantityOf(parameters::warningLevel));
    }
    if (limits.failing) {
        event->setVariable("FailingLevel", quantityOf(parameters::failingLevel));
    }
    return event;
}

TestResult rated(const Sampled& sampled, const statistics::LevelLimits& limits) {
    switch (statistics::rate(sampled.level, limits)) {
    case Rating::FAIL:
        DiagModule::error(aboutLevel(events::levelBelowFailing, sampled, limits), __FILE__,
                          __LINE__);
        return TestResult::FAIL();
    case Rating::BELOW_WARNING:
        DiagModule::warning(aboutLevel(events::levelBelowWarning, sampled, limits), __FILE__,
                            __LINE__);
        return TestResult::WARN();
    case Rating::TOO_CLOSE:
        DiagModule::warning(aboutLevel(events::levelTooClose, sampled, limits), __FILE__, __LINE__);
        return TestResult::WARN();
    case Rating::PASS:
        break;
    }
    return TestResult::PASS();
}

// Raises a warning when `found` is above the parameter's value. \return whether it did
bool isTooLarge(Event* event, double found, const tesk5::Parameter* most) {
    const std::optional<double> limit = numberOf(most);
    if (!limit || found <= *limit) {
        return false;
    }
    aboutTarget(event)
        ->setVariable("Found", decibelsIn(found))
        ->setVariable("Most", quantityOf(most));
    DiagModule::warning(event, __FILE__, __LINE__);
    return true;
}

} // namespace

TestResult SignalLevelTest(const tesk5::DiagDevice& device) {
    using Use = AppliedCalibration::Use;
    AppliedCalibration calibration;
    const Use ofStation = calibration.checkStation();
    if (ofStation == Use::REFUSED) {
        return TestResult::CANNOTRUN();
    }
    readings::SamplingPlan plan = levelPlan();
    plan.calibration = [&calibration](const readings::Reading& reading) {
        return calibration.correctionOf(reading);
    };
    readings::LevelSource source(interfaceOf(device), targetOfParameters());
    DiagModule::progresses("MEASURING_LEVEL", std::chrono::duration<double>(plan.longest).count());
    DiagModule::follows({SERIES, DBM, limitsOf(plan.limits), std::nullopt});
    const Sampling sampling =
        readings::measure(source, plan, &recordSample, &DiagModule::checkForStop);
    if (sampling.none) {
        return withoutLevel(sampling);
    }
    const Sampled& sampled = sampling.sampled;
    const readings::Reading& reading = sampled.samples.back().reading;
    const Use ofRadio = calibration.checkRadio(reading);
    if (ofRadio == Use::REFUSED) {
        return TestResult::CANNOTRUN();
    }
    recordLevel(sampling, plan, calibration);
    TestResult result = rated(sampled, limitsFor(plan, reading));
    const bool spreads = isTooLarge(events::spreadTooLarge, sampled.spread.interquartileRange,
                                    parameters::maxSpread);
    const bool drifts =
        sampled.trend.pValue < DRIFT_SIGNIFICANCE &&
        isTooLarge(events::driftTooLarge, std::abs(sampled.trend.change), parameters::maxDrift);
    const bool doubtful = ofStation == Use::WARNED || ofRadio == Use::WARNED;
    if ((spreads || drifts || doubtful) && result == TestResult::PASS()) {
        result = TestResult::WARN();
    }
    return result;
}

tesk5::Findings checkLevelParameters(bool complete) {
    tesk5::Findings findings = targetFindings(complete);
    const auto refuse = [&findings](const char* key, Event::Variables variables = {}) {
        findings.push_back({key, false, std::move(variables)});
    };
    const std::optional<double> warning = numberOf(parameters::warningLevel);
    const std::optional<double> failing = numberOf(parameters::failingLevel);
    if (complete && !warning && !failing) {
        refuse("CHECK_NO_LIMIT");
    }
    if (warning && failing) {
        const Event::Variables levels = {{"WarningLevel", quantityOf(parameters::warningLevel)},
                                         {"FailingLevel", quantityOf(parameters::failingLevel)},
                                         {"GuardBand", quantityOf(parameters::guardBand)}};
        if (*failing > *warning) {
            refuse("CHECK_LEVELS_SWAPPED", levels);
        } else if (2 * numberOr(parameters::guardBand, 0) > *warning - *failing + ROUNDING_ERROR &&
                   *failing != *warning) {
            refuse("CHECK_GUARD_BAND_TOO_WIDE", levels);
        }
    }
    const tesk5::Findings ofCalibration = calibrationFindings();
    findings.insert(findings.end(), ofCalibration.begin(), ofCalibration.end());
    // A report is not to name limits that it was not made with.
    if (parameters::limits->isSet() &&
        !isIdOf(parameters::limits->value().valueString().utf8(), limitsOfParameters())) {
        refuse("CHECK_OTHER_LIMITS", {{"Limits", parameters::limits->value()}});
    }
    return findings;
}

} // namespace levels
