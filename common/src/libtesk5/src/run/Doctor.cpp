#include "run/Doctor.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "texts/Lists.h"

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
struct Suitability {
    std::vector<std::string> reasons; // against the device; none when it suits
    bool good = true;
    bool ofKind = true; // has the capabilities of the tests
    std::vector<std::string> tests;
};

std::vector<Suitability> suitabilitiesOf(const DiagDevice& device, const std::deque<Test>& tests,
                                         const DeviceList& devices,
                                         const std::optional<std::string>& filter) {
    std::vector<Suitability> all;
    for (const Test& test : tests) {
        if (test.obstacle() != nullptr) {
            continue;
        }
        const std::vector<std::string> reasons = reasonsAgainst(test, device, filter);
        // Good as well: a device of another kind, and one of several when another is tested.
        const bool ofKind = isOfKind(test, device);
        const bool good =
            reasons.empty() || !ofKind || !runsOf(test, devices.devices, filter).empty();
        auto same = std::find_if(all.begin(), all.end(), [&](const Suitability& suitability) {
            return suitability.reasons == reasons && suitability.good == good &&
                   suitability.ofKind == ofKind;
        });
        if (same == all.end()) {
            same = all.insert(same, {reasons, good, ofKind, {}});
        }
        same->tests.push_back(test.name().utf8());
    }
    return all;
}

Finding findingOf(const Suitability& suitability, const DiagDevice& device) {
    Finding finding{"DOCTOR_DEVICE_SUITS",
                    suitability.good,
                    {{"Device", device.name()}, {"Tests", listed(suitability.tests)}}};
    if (!suitability.reasons.empty()) {
        finding.key = "DOCTOR_DEVICE_LEFT_OUT";
        finding.variables.emplace_back("Reasons", phrasesListed(suitability.reasons));
    }
    return finding;
}

// Adds what keeps a device of another kind from being tested. Devices with the same reasons, of
// which a PC has many, are one finding together.
void addOtherKind(const Finding& finding, Findings& findings) {
    constexpr std::size_t DEVICE = 0; // the place of its variable, before all others
    const auto same =
        std::find_if(findings.begin(), findings.end(), [&finding](const Finding& other) {
            return (other.key == "DOCTOR_DEVICE_LEFT_OUT" ||
                    other.key == "DOCTOR_DEVICES_LEFT_OUT") &&
                   std::equal(other.variables.begin() + 1, other.variables.end(),
                              finding.variables.begin() + 1, finding.variables.end());
        });
    if (same == findings.end()) {
        findings.push_back(finding);
        return;
    }
    Value& devices = same->variables[DEVICE].second;
    devices = Value(
        message("LIST_COMMA", {{"List", devices}, {"Item", finding.variables[DEVICE].second}}));
    same->key = "DOCTOR_DEVICES_LEFT_OUT";
}

void addDevices(const std::deque<Test>& tests, const DeviceList& devices,
                const std::optional<std::string>& filter, Findings& findings) {
    std::vector<std::string> withoutAny;
    for (const Test& test : tests) {
        if (test.obstacle() == nullptr && !anyOfKind(test, devices)) {
            withoutAny.push_back(test.name().utf8());
        }
    }
    for (const Finding& finding : noDeviceFor(withoutAny)) {
        findings.push_back(finding);
    }
    for (const DiagDevice& device : devices.devices) {
        bool suits = false;
        for (const Suitability& suitability : suitabilitiesOf(device, tests, devices, filter)) {
            const Finding finding = findingOf(suitability, device);
            if (suitability.reasons.empty() || suitability.ofKind) {
                findings.push_back(finding);
            } else {
                addOtherKind(finding, findings);
            }
            suits = suits || suitability.reasons.empty();
        }
        if (suits && moduleInfo().examine != nullptr) {
            moduleInfo().examine(device, ExaminationDepth::THOROUGH, findings);
        }
    }
}

bool isGood(const Finding& finding) {
    return finding.good;
}

void append(const Findings& more, Findings& findings) {
    findings.insert(findings.end(), more.begin(), more.end());
}

Findings serviceFindings() {
    return moduleInfo().checkService == nullptr ? Findings()
                                                : Findings{moduleInfo().checkService()};
}

Findings machineFindings() {
    return moduleInfo().checkMachine == nullptr ? Findings() : moduleInfo().checkMachine();
}

// `findings`, then those of the machine; of all of them the problems.
Findings withMachineProblems(Findings findings) {
    append(machineFindings(), findings);
    std::erase_if(findings, isGood);
    return findings;
}

bool lacksClearView(const Outcome& outcome) {
    const TestResult& result = outcome.result;
    return result == TestResult::CANNOTRUN() ||
           (result == TestResult::FAIL() && outcome.measurements.empty()) ||
           (result != TestResult::PASS() && outcome.adviceRequested);
}

bool reachedLimit(const Outcome& outcome) {
    return std::any_of(
        outcome.measurements.begin(), outcome.measurements.end(),
        [](const Measurement& measurement) { return measurement.brokenLimit() != nullptr; });
}

} // namespace

Findings parameterFindings(const std::vector<const Test*>& tests, bool complete) {
    Findings findings;
    for (const Test* test : tests) {
        for (Finding& finding : test->parameterFindings(complete)) {
            addOnce(std::move(finding), findings);
        }
    }
    return findings;
}

Findings diagnosis(const std::deque<Test>& tests, const DeviceList& devices,
                   const std::optional<std::string>& filter, bool settings) {
    if (devices.failure) {
        return withMachineProblems({*devices.failure});
    }
    Findings findings;
    if (settings) {
        std::vector<const Test*> all;
        all.reserve(tests.size());
        for (const Test& test : tests) {
            all.push_back(&test);
        }
        findings = parameterFindings(all, false);
    }
    // Devices from a device file need the service too.
    const Findings service = serviceFindings();
    append(service, findings);
    append(machineFindings(), findings);
    if (std::all_of(service.begin(), service.end(), isGood)) {
        addDevices(tests, devices, filter, findings);
    }
    return findings;
}

Findings adviceFor(const Test& test, const DeviceList& devices,
                   const std::optional<std::string>& filter) {
    if (test.obstacle() != nullptr) {
        return {{test.obstacle(), false, {}}};
    }
    if (devices.failure) {
        return withMachineProblems({*devices.failure});
    }
    if (!anyOfKind(test, devices)) {
        return withMachineProblems(noDeviceFor({test.name().utf8()}));
    }
    if (filter && std::none_of(devices.devices.begin(), devices.devices.end(),
                               [&](const auto& device) { return answersTo(device, *filter); })) {
        return {{"DOCTOR_FILTER_MATCHES_NONE", false, {{"Text", *filter}}}};
    }
    return {};
}

Findings adviceFor(const Outcome& outcome) {
    Findings findings;
    if (lacksClearView(outcome)) {
        findings = serviceFindings();
        const bool answers = std::all_of(findings.begin(), findings.end(), isGood);
        findings = withMachineProblems(std::move(findings));
        if (answers && moduleInfo().examine != nullptr) {
            moduleInfo().examine(*outcome.device, ExaminationDepth::QUICK, findings);
        }
        std::erase_if(findings, isGood);
    }
    if (reachedLimit(outcome) && moduleInfo().limitReached != nullptr) {
        findings.push_back(
            {moduleInfo().limitReached, false, {{"Device", outcome.device->name()}}});
    }
    return findings;
}

} // namespace tesk5
