// Every input is checked before anything happens: the log and the reports are touched only when
// nothing is left to refuse.
#include "commandline/Program.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "commandline/ConfigFile.h"
#include "commandline/ConfigTemplate.h"
#include "commandline/HelpPage.h"
#include "console/Console.h"
#include "console/DoctorOutput.h"
#include "console/ListOutput.h"
#include "devices/DeviceFile.h"
#include "reports/EventStream.h"
#include "reports/ReportFile.h"
#include "reports/ReportKinds.h"
#include "run/Doctor.h"
#include "run/InterruptWatch.h"
#include "run/LogKeeper.h"
#include "run/Runner.h"
#include "texts/BadInput.h"
#include "texts/Lists.h"

#include <mrl/Exception.h>
#include <mrl/Logger.h>

#include <algorithm>
#include <memory>

namespace tesk5 {

namespace {

constexpr int LOG_LEVEL_WITH_FILE = 1;

void initializeModule(const RunContext& context) {
    if (context.initialize != nullptr) {
        context.initialize();
    }
}

void refuseSharedFiles(const CommandLine& line) {
    struct NamedFile {
        const char* option;
        std::string path;
    };
    std::vector<NamedFile> files;
    const auto add = [&files](const char* option, const std::optional<std::string>& path) {
        if (path) {
            files.push_back({option, *path});
        }
    };
    add("--config", line.configFile);
    add("--devices", line.devicesFile);
    for (const RequestedReport& report : line.reports) {
        files.push_back({report.kind->option, report.file});
    }
    add("--log", line.logFile);
    for (auto a = files.begin(); a != files.end(); ++a) {
        for (auto b = a + 1; b != files.end(); ++b) {
            if (nameSameFile(a->path, b->path)) {
                throw BadInput{message(
                    "INPUT_FILE_SHARED",
                    {{"Option", a->option}, {"OtherOption", b->option}, {"File", b->path}})};
            }
        }
    }
}

void openLog(const CommandLine& line) {
    if (line.logFile) {
        try {
            mrl::LogFactory::setSink(mrl::fileLogSink(*line.logFile));
        } catch (const mrl::Exception& failure) {
            const std::string reason =
                whyNotWritable(*line.logFile).value_or(failure.toString().getUTF8String().bytes());
            throw BadInput{
                message("INPUT_LOG_UNWRITABLE", {{"File", *line.logFile}, {"Reason", reason}})};
        }
    } else if (line.logLevel) {
        mrl::LogFactory::setSink(mrl::standardErrorLogSink());
    }
    // Also without a log: the lines that were kept until now are written or discarded.
    mrl::LogFactory::setPriority(
        line.logLevel.value_or(line.logFile ? LOG_LEVEL_WITH_FILE : mrl::LogFactory::OFF));
}

// The device file is read before the log is opened: it is input that may be refused. The devices of
// this PC are enumerated after, so that the log has the calls.
DeviceList devicesFor(const CommandLine& line) {
    std::optional<DeviceList> fromFile;
    if (line.devicesFile) {
        fromFile = devicesFromFile(*line.devicesFile);
    }
    openLog(line);
    if (fromFile) {
        return std::move(*fromFile);
    }
    return moduleInfo().devices != nullptr ? moduleInfo().devices() : DeviceList();
}

int list(const CommandLine& line, const RunContext& context) {
    refuseSharedFiles(line);
    showList(context.registry, devicesFor(line), line.device);
    return 0;
}

int doctor(const CommandLine& line, RunContext& context) {
    Registry& registry = context.registry;
    std::vector<const Test*> tests;
    for (const Test& test : registry.tests) {
        tests.push_back(&test);
    }
    applySettings(registry, line.settings, tests);
    refuseSharedFiles(line);
    return showDiagnosis(diagnosis(registry.tests, devicesFor(line), line.device));
}

// Why `test` has no device: a line for each device.
std::vector<std::string> whyWithoutDevice(const Test& test, const DeviceList& devices,
                                          const std::optional<std::string>& filter) {
    std::vector<std::string> reasons;
    for (const DiagDevice& device : devices.devices) {
        reasons.push_back(
            message("LIST_NAME_AND_VALUE",
                    {{"Name", device.name()},
                     {"Value", phrasesListed(reasonsAgainst(test, device, filter))}}));
    }
    return reasons;
}

RunRecord execute(const std::vector<const Test*>& tests, const DeviceList& devices,
                  const CommandLine& line, RunListener& listener, RunContext& context) {
    RunRecord record;
    record.version = context.version;
    std::vector<PlannedRun> plan;
    for (const Test* test : tests) {
        const std::vector<PlannedRun> runs = runsOf(*test, devices.devices, line.device);
        plan.insert(plan.end(), runs.begin(), runs.end());
        if (runs.empty()) {
            record.withoutDevice.push_back(
                {test, whyWithoutDevice(*test, devices, line.device), adviceFor(*test, devices)});
        }
    }
    record.started = mrl::Clock::current().utcNow();
    listener.onRunStart(record, plan.size());
    const InterruptWatch interrupts(context.stopRequest, [&listener] { listener.onStopRequest(); });
    record.outcomes = runAll(plan, listener, record.leftOut, context);
    record.ended = mrl::Clock::current().utcNow();
    record.exitValue = worstResult(record).value();
    return record;
}

// Writes every report, also those after one that fails; the exception names all that failed.
void writeReports(const std::vector<RequestedReport>& requested,
                  const std::vector<std::unique_ptr<ReportFile>>& files, const RunRecord& record) {
    std::vector<std::string> failures;
    for (std::size_t i = 0; i < files.size(); ++i) {
        try {
            files[i]->replace(requested[i].kind->text(record));
        } catch (const TeskException& exception) {
            failures.push_back(exception.toString().getUTF8String().bytes());
        }
    }
    if (!failures.empty()) {
        throw TeskException(TeskString(phrasesListed(failures)));
    }
}

// What the console shows of a run whose standard output is the stream of events: only what goes to
// standard error.
class FailureOutput final : public RunListener {
public:
    explicit FailureOutput(Console& console) : m_console(console) {}

    void onRunStart(const RunRecord& record, std::size_t planned) override {
        m_console.onRunStart(record, planned);
    }
    void onTestBroken(const PlannedRun& run, const std::string& reason) override {
        m_console.onTestBroken(run, reason);
    }
    void onStopRequest() override { m_console.onStopRequest(); }

private:
    Console& m_console;
};

void useColoursOf(const CommandLine& line) {
    mrl::cout.useColours(line.colours.value_or(mrl::OutputStream::Colours::automatic));
}

ConsoleStyle styleFor(const CommandLine& line) {
    // A log on standard error would be written into the middle of a live line.
    const bool logAmong = line.logLevel && !line.logFile;
    return {line.quiet, mrl::cout.isTerminal() && !line.quiet && !logAmong};
}

int run(const CommandLine& given, RunContext& context) {
    Registry& registry = context.registry;
    const CommandLine line = withConfiguration(given, registry);
    useColoursOf(line);
    const std::vector<const Test*> tests = chooseTests(registry, line.tests);
    applySettings(registry, line.settings, tests);
    demandValues(line.settings, tests);
    refuseSharedFiles(line);
    std::vector<std::unique_ptr<ReportFile>> reports;
    for (const RequestedReport& report : line.reports) {
        reports.push_back(std::make_unique<ReportFile>(report.file));
    }
    const DeviceList devices = devicesFor(line);
    Console console(styleFor(line));
    FailureOutput failures(console);
    EventStream events(mrl::cout);
    RunListeners listeners;
    if (line.events) {
        listeners.add(failures);
        listeners.add(events);
    } else {
        listeners.add(console);
    }
    std::optional<LogKeeper> log;
    if (std::any_of(line.reports.begin(), line.reports.end(),
                    [](const RequestedReport& report) { return report.kind->showsLog; })) {
        log.emplace();
    }
    RunRecord record = execute(tests, devices, line, listeners, context);
    if (log) {
        record.log = log->log();
    }
    writeReports(line.reports, reports, record);
    listeners.onRunEnd(record);
    return record.exitValue;
}

// Comes before every message, so that each is in the right language.
void useLanguageAskedFor(const RunContext& context) {
    const std::optional<std::string> tag = languageAskedFor(context.arguments);
    if (tag && !setLanguage(*tag)) {
        throw BadInput{message("INPUT_UNKNOWN_LANGUAGE",
                               {{"Language", *tag}, {"Languages", listed(availableLanguages())}})};
    }
}

std::string programName(const RunContext& context) {
    return context.program.empty() ? std::string(moduleInfo().name) : context.program;
}

int showConfigTemplate(const RunContext& context) {
    mrl::cout << std::string_view(configTemplate(context.registry, programName(context)));
    mrl::cout.flush();
    return 0;
}

int version(const RunContext& context) {
    writeLine(mrl::cout, message("HELP_VERSION_LINE", {{"Program", std::string(moduleInfo().name)},
                                                       {"Version", context.version.text()},
                                                       {"Build", context.version.build}}));
    return 0;
}

int help(const CommandLine& line, const RunContext& context) {
    mrl::cout << std::string_view(helpPage(programName(context), line.helpOn));
    mrl::cout.flush();
    return 0;
}

int follow(const CommandLine& line, RunContext& context) {
    useColoursOf(line);
    switch (line.command) {
    case Command::help:
        return help(line, context);
    case Command::version:
        return version(context);
    default:
        break;
    }
    initializeModule(context);
    switch (line.command) {
    case Command::run:
        return run(line, context);
    case Command::configTemplate:
        return showConfigTemplate(context);
    case Command::doctor:
        return doctor(line, context);
    case Command::ofModule:
        openLog(line);
        return line.moduleCommand->run(line.moduleArguments, context);
    default:
        return list(line, context);
    }
}

} // namespace

int runProgram(RunContext& context) {
    try {
        useLanguageAskedFor(context);
        return follow(parseCommandLine(context.arguments), context);
    } catch (const BadInput& input) {
        writeLine(mrl::cerr, std::string(moduleInfo().name) + ": " + input.line);
        return BadInput::VALUE;
    } catch (const LeftByException& left) {
        std::rethrow_exception(left.cause);
    } catch (const std::exception& failure) {
        // Thrown by the framework or by the module's callback. Unconverted it would be taken for an
        // exception that left a test.
        throw TeskException(TeskString(failure.what()));
    }
}

} // namespace tesk5
