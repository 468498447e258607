#include "run/Doctor.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "texts/Enumeration.h"

#include <algorithm>

namespace tesk5 {

namespace {

// Whether `device` has the capabilities of `test`, whatever its properties.
bool isOfKind(const Test& test, const DiagDevice& device) {
    return device.capability().includes(test.capability());
}

bool anyOfKind(const Test& test, const DeviceList& devices) {
    return std::any_of(devices.devices.begin(), devices.devices.end(),
                       [&test](const DiagDevice& device) { return isOfKind(test, device); });
}

// The module's finding for tests without a device; none when it has no text for that.
Findings noDeviceFor(const std::vector<std::string>& tests) {
    if (tests.empty() || moduleInfo().noDevice == nullptr) {
        return {};
    }
    return {{moduleInfo().noDevice, false, {{"Tests", listed(tests)}}}};
}

// The tests that one device suits, or does not suit for the same reasons.
struct Opinion {
    std::vector<std::string> reasons; // against the device; none when it suits
    bool good = true;
    std::vector<std::string> tests;
};

std::vector<Opinion> opinionsOn(const DiagDevice& device, const std::deque<Test>& tests,
                                const DeviceList& devices,
                                const std::optional<std::string>& filter) {
    std::vector<Opinion> opinions;
    for (const Test& test : tests) {
        const std::vector<std::string> reasons = reasonsAgainst(test, device, filter);
        // A device of another kind is no problem, nor is one too many.
        const bool good = reasons.empty() || !isOfKind(test, device) ||
                          !runsOf(test, devices.devices, filter).empty();
        auto same = std::find_if(opinions.begin(), opinions.end(), [&](const Opinion& opinion) {
            return opinion.reasons == reasons && opinion.good == good;
        });
        if (same == opinions.end()) {
            same = opinions.insert(same, {reasons, good, {}});
        }
        same->tests.push_back(test.name().utf8());
    }
    return opinions;
}

Finding findingOf(const Opinion& opinion, const DiagDevice& device) {
    Finding finding{"DOCTOR_DEVICE_SUITS",
                    opinion.good,
                    {{"Device", device.name()}, {"Tests", listed(opinion.tests)}}};
    if (!opinion.reasons.empty()) {
        finding.key = "DOCTOR_DEVICE_LEFT_OUT";
        finding.variables.emplace_back("Reasons", phrasesListed(opinion.reasons));
    }
    return finding;
}

void addDevices(const std::deque<Test>& tests, const DeviceList& devices,
                const std::optional<std::string>& filter, Findings& findings) {
    std::vector<std::string> withoutAny;
    for (const Test& test : tests) {
        if (!anyOfKind(test, devices)) {
            withoutAny.push_back(test.name().utf8());
        }
    }
    for (const Finding& finding : noDeviceFor(withoutAny)) {
        findings.push_back(finding);
    }
    for (const DiagDevice& device : devices.devices) {
        bool suits = false;
        for (const Opinion& opinion : opinionsOn(device, tests, devices, filter)) {
            findings.push_back(findingOf(opinion, device));
            suits = suits || opinion.reasons.empty();
        }
        if (suits && moduleInfo().examine != nullptr) {
            moduleInfo().examine(device, ExaminationDepth::THOROUGH, findings);
        }
    }
}

bool isGood(const Finding& finding) {
    return finding.good;
}

Findings serviceFindings() {
    return moduleInfo().checkService == nullptr ? Findings()
                                                : Findings{moduleInfo().checkService()};
}

bool lacksVerdict(const Outcome& outcome) {
    const TestResult& result = outcome.result;
    const bool endedByPerson =
        result == TestResult::COMPLETED() || result == TestResult::USERABORTED();
    return result == TestResult::CANNOTRUN() ||
           (result == TestResult::FAIL() && outcome.measurements.empty()) ||
           (endedByPerson && outcome.adviceRequested);
}

} // namespace

Findings diagnosis(const std::deque<Test>& tests, const DeviceList& devices,
                   const std::optional<std::string>& filter) {
    if (devices.failure) {
        return {*devices.failure};
    }
    // Devices out of a file need the service as much as those that it lists.
    Findings findings = serviceFindings();
    if (std::all_of(findings.begin(), findings.end(), isGood)) {
        addDevices(tests, devices, filter, findings);
    }
    return findings;
}

Findings adviceFor(const Test& test, const DeviceList& devices) {
    if (devices.failure) {
        return {*devices.failure};
    }
    return anyOfKind(test, devices) ? Findings() : noDeviceFor({test.name().utf8()});
}

Findings adviceFor(const Outcome& outcome) {
    if (!lacksVerdict(outcome)) {
        return {};
    }
    Findings findings = serviceFindings();
    if (std::all_of(findings.begin(), findings.end(), isGood) && moduleInfo().examine != nullptr) {
        moduleInfo().examine(*outcome.device, ExaminationDepth::QUICK, findings);
    }
    std::erase_if(findings, isGood);
    return findings;
}

} // namespace tesk5
