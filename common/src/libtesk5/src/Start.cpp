// The one call that does what the command line asks for.
//
// Everything that could be refused is looked at before anything happens: the log and the report
// are touched only when there is nothing left to refuse.
#include <tesk5/DiagModule.h>

#include <tesk5/ModuleInfo.h>
#include <tesk5/StopRequest.h>

#include "BadInput.h"
#include "Console.h"
#include "ModuleState.h"
#include "Report.h"
#include "ReportFile.h"

#include <mrl/Exception.h>
#include <mrl/Logger.h>

namespace tesk5 {

namespace {

constexpr int LOG_LEVEL_WITH_FILE = 1;

void initializeModule() {
    if (ModuleState::instance().initialize != nullptr) {
        ModuleState::instance().initialize();
    }
}

void refuseSharedFiles(const CommandLine& line) {
    const std::pair<const char*, const std::optional<std::string>*> files[] = {
        {"--devices", &line.devicesFile}, {"--json", &line.reportFile}, {"--log", &line.logFile}};
    for (const auto* a = std::begin(files); a != std::end(files); ++a) {
        for (const auto* b = a + 1; b != std::end(files); ++b) {
            if (*a->second && *b->second && nameSameFile(**a->second, **b->second)) {
                throw BadInput{std::string(a->first) + " and " + b->first + " both name " +
                               inQuotes(**b->second) + "; give each a file of its own"};
            }
        }
    }
}

void openLog(const CommandLine& line) {
    if (line.logFile) {
        try {
            mrl::LogFactory::setSink(mrl::fileLogSink(*line.logFile));
        } catch (const mrl::Exception& failure) {
            throw BadInput{"the log " + inQuotes(*line.logFile) +
                           " cannot be written: " + failure.toString().getUTF8String().bytes() +
                           "; name a file that you may write to"};
        }
    } else if (line.logLevel) {
        mrl::LogFactory::setSink(mrl::standardErrorLogSink());
    }
    if (line.logFile || line.logLevel) {
        mrl::LogFactory::setPriority(line.logLevel.value_or(LOG_LEVEL_WITH_FILE));
    }
}

// What the devices come from, asked before the log is open and read after: a file is input that
// may be refused, this PC is not.
DeviceList devicesFor(const CommandLine& line) {
    std::optional<DeviceList> fromFile;
    if (line.devicesFile) {
        fromFile = devicesFromFile(*line.devicesFile);
    }
    openLog(line);
    return fromFile ? std::move(*fromFile) : machineDevices(nativewifi::networkAdapters());
}

int list(const CommandLine& line) {
    refuseSharedFiles(line);
    showList(Registry::instance(), devicesFor(line), line.device);
    return 0;
}

RunRecord execute(const std::vector<const Test*>& tests, const DeviceList& devices,
                  const CommandLine& line) {
    Console console;
    RunRecord record;
    std::vector<PlannedRun> plan;
    for (const Test* test : tests) {
        const std::vector<PlannedRun> runs = runsOf(*test, devices.devices, line.device);
        plan.insert(plan.end(), runs.begin(), runs.end());
        if (runs.empty()) {
            record.withoutDevice.push_back(test);
            Console::noDevice(*test, devices, line.device);
        }
    }
    const InterruptWatch interrupts(&Console::stopping);
    record.started = mrl::Clock::current().utcNow();
    record.outcomes = runAll(plan, console, record.leftOut);
    record.ended = mrl::Clock::current().utcNow();
    std::vector<TestResult> results(record.withoutDevice.size(), TestResult::CANNOTRUN());
    for (const Outcome& outcome : record.outcomes) {
        results.push_back(outcome.result);
    }
    record.exitValue = exitValueOf(results);
    return record;
}

int run(const CommandLine& line) {
    Registry& registry = Registry::instance();
    const std::vector<const Test*> tests = chooseTests(registry, line.tests);
    applySettings(registry, line.settings, tests);
    refuseSharedFiles(line);
    std::optional<ReportFile> report;
    if (line.reportFile) {
        report.emplace(*line.reportFile);
    }
    const DeviceList devices = devicesFor(line);
    const RunRecord record = execute(tests, devices, line);
    if (report) {
        report->replace(reportOf(record));
    }
    Console::summary(record);
    return record.exitValue;
}

int version() {
    const ModuleState& module = ModuleState::instance();
    writeLine(mrl::cout, std::string(moduleInfo().name) + " " + module.version() + " (build " +
                             module.build.utf8() + ")");
    return 0;
}

int help() {
    const std::string& program = ModuleState::instance().program;
    mrl::cout << std::string_view(
        helpPage(program.empty() ? std::string(moduleInfo().name) : program));
    mrl::cout.flush();
    return 0;
}

int follow(const CommandLine& line) {
    switch (line.command) {
    case Command::help:
        return help();
    case Command::version:
        return version();
    case Command::run:
        initializeModule();
        return run(line);
    case Command::list:
        break;
    }
    initializeModule();
    return list(line);
}

} // namespace

int DiagModule::start() {
    try {
        return follow(parseCommandLine(ModuleState::instance().arguments));
    } catch (const BadInput& input) {
        writeLine(mrl::cerr, std::string(moduleInfo().name) + ": " + input.line);
        return BadInput::VALUE;
    } catch (const LeftByException& left) {
        std::rethrow_exception(left.cause);
    } catch (const std::exception& failure) {
        // Of the framework itself or of the module's callback: without words it would be taken for
        // the unknown exception of a test.
        throw TeskException(TeskString(failure.what()));
    }
}

} // namespace tesk5
