#include "Plan.h"

#include "BadInput.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <map>

namespace tesk5 {

namespace {

template <typename Named>
std::vector<std::string> namesOf(const std::vector<const Named*>& objects) {
    std::vector<std::string> names;
    names.reserve(objects.size());
    for (const Named* object : objects) {
        names.push_back(object->name().utf8());
    }
    return names;
}

// Every parameter of the tests once, in their order.
std::vector<const Parameter*> parametersOf(const std::vector<const Test*>& tests) {
    std::vector<const Parameter*> parameters;
    for (const Test* test : tests) {
        for (const Parameter* parameter : test->parameters()) {
            if (std::find(parameters.begin(), parameters.end(), parameter) == parameters.end()) {
                parameters.push_back(parameter);
            }
        }
    }
    return parameters;
}

std::string textOf(const Setting& setting) {
    return "--set " + setting.name.utf8() + "=" + setting.value.utf8();
}

void refuseUnknown(const Setting& setting, const std::vector<const Parameter*>& known) {
    const std::vector<std::string> names = namesOf(known);
    if (std::find(names.begin(), names.end(), setting.name.utf8()) != names.end()) {
        return;
    }
    if (names.empty()) {
        throw BadInput{textOf(setting) +
                       ": the tests that would run have no parameters; leave it out"};
    }
    throw BadInput{textOf(setting) + ": no test that would run has the parameter " +
                   inQuotes(setting.name.utf8()) + nearestHint(setting.name.utf8(), names) +
                   "; the parameters are " + listInQuotes(names, "none")};
}

void apply(Parameter& parameter, const Setting& setting, int timesBefore) {
    if (timesBefore > 0 && !parameter.multiValued()) {
        throw BadInput{textOf(setting) + ": the parameter " + inQuotes(setting.name.utf8()) +
                       " has a value already; give it once"};
    }
    if (const auto reason = parameter.refuses(setting.value)) {
        throw BadInput{textOf(setting) + ": " + inQuotes(setting.value.utf8()) + " is " + *reason +
                       "; give such a number"};
    }
    parameter.set(setting.value);
}

mrl::CharString folded(mrl::CharView text) {
    mrl::CharString result(text);
    std::transform(result.begin(), result.end(), result.begin(), mrl::foldCase);
    return result;
}

} // namespace

std::vector<const Test*> chooseTests(Registry& registry, const std::vector<TeskString>& names) {
    std::vector<const Test*> tests;
    for (const Test& test : registry.tests) {
        if (names.empty() && !test.interactive()) {
            tests.push_back(&test);
        }
    }
    if (names.empty() && tests.empty()) {
        throw BadInput{registry.tests.empty()
                           ? std::string("there is no test to run; use the command list")
                           : "every test is interactive; name one, as in run " +
                                 registry.tests.front().name().utf8()};
    }
    for (const TeskString& name : names) {
        const Test* test = registry.findTest(name);
        if (test == nullptr) {
            std::vector<std::string> known;
            for (const Test& candidate : registry.tests) {
                known.push_back(candidate.name().utf8());
            }
            throw BadInput{"there is no test " + inQuotes(name.utf8()) +
                           nearestHint(name.utf8(), known) + "; the tests are " +
                           listInQuotes(known, "none")};
        }
        if (std::find(tests.begin(), tests.end(), test) != tests.end()) {
            throw BadInput{"the test " + inQuotes(name.utf8()) +
                           " is named more than once; name it once"};
        }
        tests.push_back(test);
    }
    return tests;
}

void applySettings(Registry& registry, const std::vector<Setting>& settings,
                   const std::vector<const Test*>& tests) {
    for (Parameter& parameter : registry.parameters) {
        parameter.reset();
    }
    const std::vector<const Parameter*> wanted = parametersOf(tests);
    std::map<TeskString, int> times;
    for (const Setting& setting : settings) {
        refuseUnknown(setting, wanted);
        apply(*registry.findParameter(setting.name), setting, times[setting.name]++);
    }
    for (const Parameter* parameter : wanted) {
        if (!parameter->optional() && times.count(parameter->name()) == 0) {
            const std::string& name = parameter->name().utf8();
            throw BadInput{"the parameter " + inQuotes(name) +
                           " has no value; give it with --set " + name + "=VALUE"};
        }
    }
}

bool answersTo(const DiagDevice& device, const std::string& text) {
    const mrl::CharString wanted = folded(mrl::toUtf16(text));
    const DeviceProperty systemName = device.property(DEVICE_SYSTEM_NAME);
    for (const TeskString& candidate : {device.name(), systemName.value()}) {
        if (folded(candidate.mrlString().view()).find(wanted) != mrl::CharString::npos) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> reasonsAgainst(const Test& test, const DiagDevice& device,
                                        const std::optional<std::string>& filter) {
    std::vector<std::string> reasons = test.reasonsAgainst(device);
    if (filter && !answersTo(device, *filter)) {
        reasons.push_back("has no " + inQuotes(*filter) + " in its name or system name");
    }
    return reasons;
}

std::vector<PlannedRun> runsOf(const Test& test, const std::vector<DiagDevice>& devices,
                               const std::optional<std::string>& filter) {
    std::vector<PlannedRun> runs;
    for (const DiagDevice& device : devices) {
        if (reasonsAgainst(test, device, filter).empty()) {
            runs.push_back({&test, &device});
            if (test.enumeratesOnlyOnce()) {
                break;
            }
        }
    }
    return runs;
}

} // namespace tesk5
