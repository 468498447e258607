// What the framework must know of the module before the module has registered anything: its name,
// its texts, and the operations that only the module can do.
#pragma once

#include <tesk5/DeviceList.h>
#include <tesk5/Finding.h>
#include <tesk5/ModuleCommand.h>
#include <tesk5/RunIdentity.h>

#include <span>
#include <string>
#include <string_view>

namespace tesk5 {

struct CaptureSupport;

/// How far an examination goes.
enum class ExaminationDepth {
    QUICK,    ///< without waiting
    THOROUGH, ///< may wait for some seconds, for a scan for instance
};

/// Adds to `findings` what keeps `device`, which suits a test, from being tested, and what is in
/// order; parameters have the values that were given. The framework calls it thoroughly for
/// the command doctor, and quickly after each run without a clear view (CANNOTRUN, a FAIL that
/// measured nothing, DiagModule::requestAdvice()): the findings that are not good are then shown.
/// Failure: a call that fails becomes a finding; an exception ends the program
/// Threads: the tests' thread, outside any test; events that it raises are dropped
using Examination = void (*)(const DiagDevice& device, ExaminationDepth depth, Findings& findings);

/// The texts of one part of the program.
struct TextPart {
    /// The part's folder: texts are looked up in resources/<name>/texts/.
    std::string_view name;
    /// The English texts in JSON, for when their file is missing.
    std::string_view builtInTexts;
};

/// A table of a configuration file that the module reads itself.
struct ConfigTable {
    std::string_view name;
    /// Name of a registered parameter that names files: a configuration file with the table sets it
    /// to its own path.
    std::string_view parameter;
};

/// Every pointer may be null: the framework works without what the module does not provide.
struct ModuleInfo {
    /// Name of the module, as reports and its folder of texts carry it.
    std::string_view name;
    /// The module's English texts in JSON, for when their file is missing.
    std::string_view builtInTexts;
    /// Command lines of "run" behind the program's name, for the help pages: "run --set SSID=Lab".
    /// At least one; the first measures something, with what every run needs.
    std::span<const char* const> examplesOfRun = {};
    /// An example of --set: "--set SSID=Lab".
    const char* exampleOfSet = "";
    /// The module's examination of a device.
    Examination examine = nullptr;
    /// Texts of libraries that the module brings; those of the module win over them.
    std::span<const TextPart> sharedTexts = {};
    /// The devices of this PC, for runs without a device file.
    DeviceList (*devices)() = nullptr;
    /// Whether the service that all tests need answers: a good finding, or the reason with its
    /// remedy. Any thread of the framework; must not wait.
    Finding (*checkService)() = nullptr;
    /// What else of this PC keeps devices from being found or tested: problems with their remedies,
    /// and, as good findings, what is worth knowing. Asked by the command doctor and for advice;
    /// must not wait. Threads: that of the run
    Findings (*checkMachine)() = nullptr;
    /// Key of the finding that there is no device for {Tests}.
    const char* noDevice = nullptr;
    /// Key of the advice after a measurement that reached a limit; its variable is {Device}.
    const char* limitReached = nullptr;
    /// What captures and replays; null: there is no --capture.
    const CaptureSupport* captures = nullptr;
    /// The module's own commands, in the order of the help page.
    std::span<const ModuleCommand> commands = {};
    std::span<const ConfigTable> configTables = {};
    /// The adapters of this PC, as reports name them.
    std::vector<AdapterIdentity> (*adapters)() = nullptr;
    /// Names of the parameters that are limits of a test: reports name what is in force.
    std::span<const char* const> limitParameters = {};
    /// Name of the parameter that says which limits the others are: "NAME VERSION SHA256", checked
    /// by the module. Null: limits have the name of their test.
    const char* limitsName = nullptr;
    /// Name of the parameter that names the file of a calibration; null: there is none.
    const char* calibrationFile = nullptr;
    /// Name, version and SHA-256 of the calibration in a file (UTF-8 path).
    /// Failure: throws BadInput
    InForce (*calibration)(const std::string& file) = nullptr;
};

/// Defined once in each program that links the framework. Any thread.
const ModuleInfo& moduleInfo();

} // namespace tesk5
