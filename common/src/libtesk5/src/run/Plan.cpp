#include "run/Plan.h"

#include <tesk5/BadInput.h>
#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "texts/Lists.h"
#include "texts/ParameterText.h"
#include "texts/UnknownName.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <map>

namespace tesk5 {

namespace {

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

// Names of tests and parameters may be typed in any letter case, as long as that names only one.
template <typename Things>
auto spelled(Things& things, const TeskString& name) -> decltype(&*things.begin()) {
    const auto is = [&name](const auto& thing) { return thing.name() == name; };
    const auto isLike = [&name](const auto& thing) {
        return mrl::equalNoCase(thing.name().mrlString().view(), name.mrlString().view());
    };
    auto found = std::find_if(things.begin(), things.end(), is);
    if (found == things.end() && std::count_if(things.begin(), things.end(), isLike) == 1) {
        found = std::find_if(things.begin(), things.end(), isLike);
    }
    return found == things.end() ? nullptr : &*found;
}

std::string asTyped(const Setting& setting) {
    return "--set " + setting.name.utf8() + "=" + setting.value.utf8();
}

// Those that take settings: the tests that would run, or a command of the module.
struct Takers {
    std::vector<const Parameter*> parameters;
    const ModuleCommand* command = nullptr;
};

void refuseUnknown(const Setting& setting, const Takers& takers) {
    const std::vector<std::string> names = textsOf(
        takers.parameters, [](const Parameter* parameter) { return parameter->name().utf8(); });
    if (std::find(names.begin(), names.end(), setting.name.utf8()) != names.end()) {
        return;
    }
    if (takers.command != nullptr) {
        throw BadInput{aboutUnknown(
            {"INPUT_COMMAND_PARAMETER", "INPUT_COMMAND_PARAMETER_NEAREST"}, setting.name.utf8(),
            names, {{"Setting", asTyped(setting)}, {"Command", takers.command->name}})};
    }
    if (names.empty()) {
        throw BadInput{
            message("INPUT_SETTING_WITHOUT_PARAMETERS", {{"Setting", asTyped(setting)}})};
    }
    throw BadInput{aboutUnknown({"INPUT_UNKNOWN_PARAMETER", "INPUT_UNKNOWN_PARAMETER_NEAREST"},
                                setting.name.utf8(), names, {{"Setting", asTyped(setting)}})};
}

void apply(Parameter& parameter, const Setting& setting, int timesBefore) {
    if (timesBefore > 0 && !parameter.multiValued()) {
        throw BadInput{message("INPUT_PARAMETER_TWICE",
                               {{"Setting", asTyped(setting)}, {"Name", setting.name}})};
    }
    if (!parameter.accepts(setting.value)) {
        throw BadInput{
            message("INPUT_SETTING_REFUSED", {{"Setting", asTyped(setting)},
                                              {"Reason", refusalText(parameter, setting.value)}})};
    }
    parameter.set(setting.value);
}

void applyTo(const Takers& takers, Registry& registry, const std::vector<Setting>& settings) {
    for (Parameter& parameter : registry.parameters) {
        parameter.reset();
    }
    std::map<TeskString, int> times;
    for (Setting setting : settings) {
        if (const Parameter* parameter = spelled(registry.parameters, setting.name)) {
            setting.name = parameter->name();
        }
        refuseUnknown(setting, takers);
        apply(*registry.findParameter(setting.name), setting, times[setting.name]++);
    }
}

} // namespace

std::vector<const Test*> chooseTests(const Registry& registry,
                                     const std::vector<TeskString>& names) {
    std::vector<const Test*> tests;
    for (const Test& test : registry.tests) {
        if (names.empty() && !test.onlyWhenNamed()) {
            tests.push_back(&test);
        }
    }
    if (names.empty() && tests.empty()) {
        throw BadInput{registry.tests.empty() ? message("INPUT_NO_TEST")
                                              : message("INPUT_NO_AUTOMATIC_TEST",
                                                        {{"Test", registry.tests.front().name()}})};
    }
    for (const TeskString& name : names) {
        const Test* test = spelled(registry.tests, name);
        if (test == nullptr) {
            throw BadInput{aboutUnknown({"INPUT_UNKNOWN_TEST", "INPUT_UNKNOWN_TEST_NEAREST"},
                                        name.utf8(), registry.testNames())};
        }
        if (std::find(tests.begin(), tests.end(), test) != tests.end()) {
            throw BadInput{message("INPUT_TEST_TWICE", {{"Name", name}})};
        }
        tests.push_back(test);
    }
    return tests;
}

void applySettings(Registry& registry, const std::vector<Setting>& settings,
                   const std::vector<const Test*>& tests) {
    applyTo({.parameters = parametersOf(tests)}, registry, settings);
}

std::vector<const Parameter*> parametersOf(const ModuleCommand& command, const Registry& registry) {
    std::vector<const Parameter*> parameters;
    for (const char* const name : command.parameters) {
        const Parameter* const parameter = registry.findParameter(name);
        if (parameter == nullptr) {
            throw TeskException(TeskString(std::string("the command ") + command.name +
                                           " takes the unknown parameter " + name));
        }
        parameters.push_back(parameter);
    }
    return parameters;
}

void applySettings(Registry& registry, const std::vector<Setting>& settings,
                   const ModuleCommand& command) {
    applyTo({.parameters = parametersOf(command, registry), .command = &command}, registry,
            settings);
}

void demandValues(const std::vector<Setting>& settings, const std::vector<const Test*>& tests) {
    for (const Parameter* parameter : parametersOf(tests)) {
        const bool given =
            std::any_of(settings.begin(), settings.end(), [parameter](const Setting& setting) {
                return mrl::equalNoCase(setting.name.mrlString().view(),
                                        parameter->name().mrlString().view());
            });
        if (!parameter->optional() && !given) {
            throw BadInput{message("INPUT_PARAMETER_WITHOUT_VALUE", {{"Name", parameter->name()}})};
        }
    }
}

bool answersTo(const DiagDevice& device, const std::string& text) {
    const mrl::CharString wanted = mrl::foldedCase(mrl::toUtf16(text));
    const DeviceProperty systemName = device.property(DEVICE_SYSTEM_NAME);
    for (const TeskString& candidate : {device.name(), systemName.value()}) {
        if (mrl::foldedCase(candidate.mrlString().view()).find(wanted) != mrl::CharString::npos) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> reasonsAgainst(const Test& test, const DiagDevice& device,
                                        const std::optional<std::string>& filter) {
    std::vector<std::string> reasons;
    for (const Mismatch& reason : test.mismatches(device)) {
        reasons.push_back(message(reason));
    }
    if (filter && !answersTo(device, *filter)) {
        reasons.push_back(message("LIST_NAMED_OTHERWISE", {{"Text", *filter}}));
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
