// Which tests are to run on which devices, with which parameters.
#pragma once

#include <tesk5/DeviceList.h>
#include <tesk5/ModuleCommand.h>
#include <tesk5/Registry.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// One --set.
struct Setting {
    TeskString name;
    TeskString value;
    bool fromFile = false; ///< in the configuration rather than on the command line
};

/// One planned call of a test function.
struct PlannedRun {
    const Test* test;
    const DiagDevice* device;
};

/// The tests of these names in this order; without names every test that is not interactive, in
/// the order of registration.
/// Failure: throws BadInput for a name that is unknown or given twice
std::vector<const Test*> chooseTests(const Registry& registry,
                                     const std::vector<TeskString>& names);

/// Gives every parameter its value: that of `settings`, else its default.
/// Failure: throws BadInput for a setting that no parameter of `tests` takes
void applySettings(Registry& registry, const std::vector<Setting>& settings,
                   const std::vector<const Test*>& tests);

/// The parameters that `command` takes.
/// Failure: throws TeskException for one that is not registered
std::vector<const Parameter*> parametersOf(const ModuleCommand& command, const Registry& registry);

/// The same for a command of the module.
/// Failure: throws BadInput for a setting that the command does not take
void applySettings(Registry& registry, const std::vector<Setting>& settings,
                   const ModuleCommand& command);

/// Checks that `settings` have a value for each parameter of `tests` that needs one.
/// Failure: throws BadInput for a parameter without its value
void demandValues(const std::vector<Setting>& settings, const std::vector<const Test*>& tests);

/// Whether `device` has `text` in its name or its system name, in any letter case.
bool answersTo(const DiagDevice& device, const std::string& text);

/// Every reason why `test` does not run on `device` with --device `filter`; none when it does.
std::vector<std::string> reasonsAgainst(const Test& test, const DiagDevice& device,
                                        const std::optional<std::string>& filter);

/// The runs of `test` in the order of the devices; only the first for a test that enumerates once.
std::vector<PlannedRun> runsOf(const Test& test, const std::vector<DiagDevice>& devices,
                               const std::optional<std::string>& filter);

} // namespace tesk5
