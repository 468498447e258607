#include "SignalLevelTest.h"

#include "ModuleObjects.h"

#include <tesk5/DeviceList.h>

#include <nativewifi/Guid.h>

#include <readings/Sampling.h>

#include <cmath>

using tesk5::DiagModule;
using tesk5::Event;
using tesk5::Number;
using tesk5::TeskString;
using tesk5::TestResult;

namespace {

using readings::NoLevel;
using readings::Sampled;
using readings::Sampling;
using statistics::Rating;

constexpr const char* SERIES = "Level";
constexpr const char* DBM = "dBm";
constexpr const char* DECIBEL = "dB";
constexpr int DECIMALS = 1;
constexpr int LOWEST = -110;
constexpr int HIGHEST = -10;
// A drift that readings without one would show in one run of twenty is none.
constexpr double DRIFT_SIGNIFICANCE = 0.05;

Number rounded(double value) {
    return Number::rounded(value, DECIMALS);
}

std::optional<double> numberOf(const tesk5::Parameter* parameter) {
    const std::optional<Number> number = parameter->number();
    return number ? std::optional(number->toDouble()) : std::nullopt;
}

double numberOr(const tesk5::Parameter* parameter, double otherwise) {
    return numberOf(parameter).value_or(otherwise);
}

std::string textOf(const tesk5::Parameter* parameter) {
    return parameter->value().valueString().utf8();
}

readings::Target targetOfParameters() {
    readings::Target target;
    if (parameters::ssid->isSet()) {
        target.ssid = parameters::ssid->bytes();
    }
    target.bssid = readings::parseBssid(textOf(parameters::bssid));
    const std::string band = textOf(parameters::band);
    if (!band.empty()) {
        target.band = band == "2.4" ? nativewifi::Band::GHZ_2_4
                      : band == "5" ? nativewifi::Band::GHZ_5
                                    : nativewifi::Band::GHZ_6;
    }
    return target;
}

readings::SamplingPlan planOfParameters() {
    return {.samples = static_cast<std::size_t>(numberOr(parameters::samples, 0)),
            .longest = std::chrono::seconds(static_cast<int>(numberOr(parameters::maxSeconds, 0))),
            .limits = {.warning = numberOf(parameters::warningLevel),
                       .failing = numberOf(parameters::failingLevel),
                       .guardBand = numberOr(parameters::guardBand, 0)},
            .offset = numberOr(parameters::offset, 0)};
}

// What people call the target: its name, or its address.
TeskString nameOfTarget() {
    return (parameters::ssid->isSet() ? parameters::ssid : parameters::bssid)
        ->value()
        .valueString();
}

GUID interfaceOf(const tesk5::DiagDevice& device) {
    const mrl::String name = device.property(tesk5::DEVICE_SYSTEM_NAME).value().mrlString();
    return nativewifi::parseGuid(nativewifi::guidTextOf(name).view()).value_or(GUID{});
}

TeskString wordOf(readings::Source source) {
    switch (source) {
    case readings::Source::LINK:
        return "link";
    case readings::Source::CONNECTION:
        return "connection";
    case readings::Source::SCAN:
        break;
    }
    return "scan";
}

void recordSample(const readings::Sample& sample) {
    Event::Variables attributes = {{"Source", wordOf(sample.reading.source)},
                                   {"BSSID", readings::bssidText(sample.reading.bssid)}};
    if (sample.reading.mhz != 0) {
        attributes.emplace_back("Channel", nativewifi::channelOf(sample.reading.mhz));
        attributes.emplace_back("MHz", sample.reading.mhz);
    }
    DiagModule::sampled(SERIES, rounded(sample.level), std::move(attributes), sample.seconds);
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

void recordLevel(const Sampled& sampled, const readings::SamplingPlan& plan) {
    const std::vector<tesk5::Limit> limits = limitsOf(plan.limits);
    DiagModule::follows({SERIES, DBM, limits, rounded(sampled.level)});
    const std::vector<tesk5::Figure> figures = {
        {"IntervalLow", rounded(sampled.interval.low), DBM},
        {"IntervalHigh", rounded(sampled.interval.high), DBM},
        {"InterquartileRange", rounded(sampled.spread.interquartileRange), DECIBEL},
        {"MedianAbsoluteDeviation", rounded(sampled.spread.medianAbsoluteDeviation), DECIBEL},
        {"Drift", rounded(sampled.trend.change), DECIBEL},
        {"AppliedGuardBand", rounded(plan.limits.guardBand), DECIBEL},
        {"AppliedOffset", rounded(plan.offset), DECIBEL},
        {"Readings", sampled.samples.size(), ""},
        {"EffectiveReadings", rounded(sampled.effective), ""}};
    DiagModule::measured({SERIES, rounded(sampled.level), DBM, LOWEST, HIGHEST, limits, figures});
}

Event* about(Event* event) {
    return event->setVariable("Name", nameOfTarget());
}

TeskString listOf(const std::vector<readings::Candidate>& candidates) {
    std::string text;
    for (const readings::Candidate& candidate : candidates) {
        text += text.empty() ? "" : "; ";
        text += readings::bssidText(candidate.bssid) + ", " + std::to_string(candidate.mhz) +
                " MHz, " + rounded(candidate.level).text() + " dBm";
    }
    return TeskString(text);
}

// What the event of a reason says besides the name.
using Fill = void (*)(Event& event, const Sampling& sampling);

void fillError(Event& event, const Sampling& sampling) {
    event.setVariable("Error", sampling.error);
}
void fillSeconds(Event& event, const Sampling& sampling) {
    event.setVariable("Seconds", Number::rounded(sampling.seconds, 0));
}
void fillOutOfRange(Event& event, const Sampling& sampling) {
    event.setVariable("OutOfRange", Number(sampling.dropped.outOfRange));
}
void fillReadings(Event& event, const Sampling& sampling) {
    event.setVariable("Readings", Number(sampling.sampled.samples.size()));
    fillSeconds(event, sampling);
}
void fillCandidates(Event& event, const Sampling& sampling) {
    event.setVariable("Candidates", listOf(sampling.candidates));
}

struct Explanation {
    NoLevel reason;
    Event* const* event;
    Fill fill;
    bool advice; ///< the doctor can find the cause
};
constexpr Explanation explanations[] = {
    {NoLevel::NO_SERVICE, &events::noService, &fillError, true},
    {NoLevel::RADIO_OFF, &events::radioOff, &fillError, true},
    {NoLevel::DENIED, &events::denied, &fillError, true},
    {NoLevel::NOT_SEEN, &events::notSeen, &fillSeconds, true},
    {NoLevel::ONLY_OLD, &events::onlyOld, &fillSeconds, false},
    {NoLevel::NO_LEVELS, &events::noLevels, &fillOutOfRange, false},
    {NoLevel::TOO_FEW, &events::tooFew, &fillReadings, false},
    {NoLevel::AMBIGUOUS, &events::ambiguous, &fillCandidates, false},
    {NoLevel::FAILED, &events::listFailed, &fillError, true},
};

TestResult withoutLevel(const Sampling& sampling) {
    if (sampling.none == NoLevel::INTERRUPTED) {
        return TestResult::USERABORTED();
    }
    for (const Explanation& explanation : explanations) {
        if (explanation.reason != sampling.none) {
            continue;
        }
        explanation.fill(*about(*explanation.event), sampling);
        DiagModule::error(*explanation.event, __FILE__, __LINE__);
        if (explanation.advice) {
            DiagModule::requestAdvice();
        }
    }
    return TestResult::CANNOTRUN();
}

Event* aboutLevel(Event* event, const Sampled& sampled, const statistics::LevelLimits& limits) {
    about(event)
        ->setVariable("Level", rounded(sampled.level))
        ->setVariable("GuardBand", rounded(limits.guardBand));
    if (limits.warning) {
        event->setVariable("WarningLevel", *parameters::warningLevel->number());
    }
    if (limits.failing) {
        event->setVariable("FailingLevel", *parameters::failingLevel->number());
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
    about(event)->setVariable("Found", rounded(found))->setVariable("Most", *most->number());
    DiagModule::warning(event, __FILE__, __LINE__);
    return true;
}

} // namespace

TestResult SignalLevelTest(const tesk5::DiagDevice& device) {
    const readings::SamplingPlan plan = planOfParameters();
    readings::LevelSource source(interfaceOf(device), targetOfParameters());
    DiagModule::progresses("MEASURING_LEVEL", std::chrono::duration<double>(plan.longest).count());
    DiagModule::follows({SERIES, DBM, limitsOf(plan.limits), std::nullopt});
    const Sampling sampling =
        readings::measure(source, plan, &recordSample, &DiagModule::checkForStop);
    if (sampling.none) {
        return withoutLevel(sampling);
    }
    const Sampled& sampled = sampling.sampled;
    recordLevel(sampled, plan);
    TestResult result = rated(sampled, plan.limits);
    const bool spreads = isTooLarge(events::spreadTooLarge, sampled.spread.interquartileRange,
                                    parameters::maxSpread);
    const bool drifts =
        sampled.trend.pValue < DRIFT_SIGNIFICANCE &&
        isTooLarge(events::driftTooLarge, std::abs(sampled.trend.change), parameters::maxDrift);
    if ((spreads || drifts) && result == TestResult::PASS()) {
        result = TestResult::WARN();
    }
    return result;
}

tesk5::Findings checkLevelParameters(bool complete) {
    tesk5::Findings findings;
    const auto refuse = [&findings](const char* key, Event::Variables variables = {}) {
        findings.push_back({key, false, std::move(variables)});
    };
    if (complete && !parameters::ssid->isSet() && !parameters::bssid->isSet()) {
        refuse("CHECK_NO_TARGET");
    }
    if (parameters::bssid->isSet() && !readings::parseBssid(textOf(parameters::bssid))) {
        refuse("CHECK_NO_BSSID", {{"BSSID", parameters::bssid->value()}});
    }
    const std::optional<double> warning = numberOf(parameters::warningLevel);
    const std::optional<double> failing = numberOf(parameters::failingLevel);
    if (complete && !warning && !failing) {
        refuse("CHECK_NO_LIMIT");
    }
    if (warning && failing) {
        const Event::Variables levels = {{"WarningLevel", parameters::warningLevel->value()},
                                         {"FailingLevel", parameters::failingLevel->value()},
                                         {"GuardBand", parameters::guardBand->value()}};
        if (*failing > *warning) {
            refuse("CHECK_LEVELS_SWAPPED", levels);
        } else if (2 * numberOr(parameters::guardBand, 0) > *warning - *failing &&
                   *failing != *warning) {
            refuse("CHECK_GUARD_BAND_TOO_WIDE", levels);
        }
    }
    return findings;
}
