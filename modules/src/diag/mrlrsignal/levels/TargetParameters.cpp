#include <levels/TargetParameters.h>

#include <levels/ModuleObjects.h>

#include <tesk5/DeviceList.h>
#include <tesk5/Texts.h>

#include <nativewifi/Guid.h>

namespace levels {

using readings::NoLevel;
using readings::Sampling;
using tesk5::DiagModule;
using tesk5::Event;
using tesk5::Number;
using tesk5::TeskString;
using tesk5::TestResult;

namespace {

constexpr int DECIMALS = 1;

std::string textOf(const tesk5::Parameter* parameter) {
    return parameter->value().valueString().utf8();
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

// What explains the measurement, its event filled; null when nothing does.
const Explanation* explanationOf(const Sampling& sampling) {
    for (const Explanation& explanation : explanations) {
        if (explanation.reason == sampling.none) {
            explanation.fill(*aboutTarget(*explanation.event), sampling);
            return &explanation;
        }
    }
    return nullptr;
}

} // namespace

Number rounded(double value) {
    return Number::rounded(value, DECIMALS);
}

tesk5::Value levelIn(double dbm) {
    return tesk5::quantity(rounded(dbm), "dBm");
}

tesk5::Value decibelsIn(double decibels) {
    return tesk5::quantity(rounded(decibels), "dB");
}

tesk5::Value quantityOf(const tesk5::Parameter* parameter) {
    return tesk5::quantity(*parameter->number(), parameter->range().unit);
}

std::optional<double> numberOf(const tesk5::Parameter* parameter) {
    const std::optional<Number> number = parameter->number();
    return number ? std::optional(number->toDouble()) : std::nullopt;
}

double numberOr(const tesk5::Parameter* parameter, double otherwise) {
    return numberOf(parameter).value_or(otherwise);
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

tesk5::Findings targetFindings(bool complete) {
    tesk5::Findings findings;
    if (complete && !parameters::ssid->isSet() && !parameters::bssid->isSet()) {
        findings.push_back({"CHECK_NO_TARGET", false, {}});
    }
    if (parameters::bssid->isSet() && !readings::parseBssid(textOf(parameters::bssid))) {
        findings.push_back({"CHECK_NO_BSSID", false, {{"BSSID", parameters::bssid->value()}}});
    }
    return findings;
}

readings::SamplingPlan planOfParameters() {
    return {.samples = static_cast<std::size_t>(numberOr(parameters::samples, 0)),
            .longest = std::chrono::seconds(static_cast<int>(numberOr(parameters::maxSeconds, 0))),
            .limits = {}};
}

GUID interfaceOf(const tesk5::DiagDevice& device) {
    const mrl::String name = device.property(tesk5::DEVICE_SYSTEM_NAME).value().mrlString();
    return nativewifi::parseGuid(nativewifi::guidTextOf(name).view()).value_or(GUID{});
}

TeskString nameOfTarget() {
    return (parameters::ssid->isSet() ? parameters::ssid : parameters::bssid)
        ->value()
        .valueString();
}

Event* aboutTarget(Event* event) {
    return event->setVariable("Name", nameOfTarget());
}

Event::Variables attributesOf(const readings::Reading& reading) {
    Event::Variables attributes = {{"Source", readings::nameOf(reading.source)},
                                   {"BSSID", readings::bssidText(reading.bssid)}};
    if (reading.mhz != 0) {
        attributes.emplace_back("Channel", nativewifi::channelOf(reading.mhz));
        attributes.emplace_back("MHz", reading.mhz);
    }
    return attributes;
}

std::string whyNoLevel(const Sampling& sampling) {
    const Explanation* const explanation = explanationOf(sampling);
    return explanation == nullptr
               ? std::string()
               : tesk5::message((*explanation->event)->key(), (*explanation->event)->variables());
}

TestResult withoutLevel(const Sampling& sampling) {
    if (sampling.none == NoLevel::INTERRUPTED) {
        return TestResult::USERABORTED();
    }
    if (const Explanation* const explanation = explanationOf(sampling)) {
        DiagModule::error(*explanation->event, __FILE__, __LINE__);
        if (explanation->advice) {
            DiagModule::requestAdvice();
        }
    }
    return TestResult::CANNOTRUN();
}

} // namespace levels
