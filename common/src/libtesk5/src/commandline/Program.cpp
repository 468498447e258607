// Every input is checked before anything happens: the log and the reports are touched only when
// nothing is left to refuse.
#include "commandline/Program.h"

#include <tesk5/BadInput.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/ReportFile.h>
#include <tesk5/TeskException.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "commandline/Captures.h"
#include "commandline/ConfigFile.h"
#include "commandline/ConfigTemplate.h"
#include "commandline/HelpPage.h"
#include "commandline/OcpFile.h"
#include "commandline/ReportTargets.h"
#include "console/Console.h"
#include "console/ListOutput.h"
#include "devices/DeviceFile.h"
#include "reports/EventStream.h"
#include "reports/ReportKinds.h"
#include "reports/ReportName.h"
#include "run/Doctor.h"
#include "run/InterruptWatch.h"
#include "run/LimitsInForce.h"
#include "run/LogKeeper.h"
#include "run/PcIdentity.h"
#include "run/RunListeners.h"
#include "run/Runner.h"
#include "texts/Lists.h"

#include <mrl/Exception.h>
#include <mrl/Logger.h>
#include <mrl/System.h>

#include <algorithm>

namespace tesk5 {

namespace {

constexpr int LOG_LEVEL_WITH_FILE = 1;
constexpr const char* CONFIG = "--config";

// The files that the command line and the configuration name, each with its option.
std::vector<std::pair<const char*, std::string>> filesOf(const CommandLine& line) {
    std::vector<std::pair<const char*, std::string>> files;
    const auto add = [&files](const char* option, const std::optional<std::string>& path) {
        if (path) {
            files.emplace_back(option, *path);
        }
    };
    add(CONFIG, line.configFile);
    add("--devices", line.devicesFile);
    for (const RequestedReport& report : line.reports) {
        add(report.kind->option, report.file);
    }
    add("--ocp", line.ocpFile);
    add("--journal", line.journalFile);
    add("--log", line.logFile);
    add("--capture", line.captureFile);
    return files;
}

void refuseSharedFiles(const CommandLine& line, const Registry& registry) {
    const auto files = filesOf(line);
    for (auto a = files.begin(); a != files.end(); ++a) {
        for (auto b = a + 1; b != files.end(); ++b) {
            refuseSharedFile(a->first, a->second, b->first, b->second);
        }
        // A configuration file may be the file that one of its parameters names.
        if (std::string_view(a->first) == CONFIG) {
            continue;
        }
        for (const Parameter& parameter : registry.parameters) {
            if (parameter.namesFile() && parameter.isSet()) {
                refuseSharedFile("--set " + parameter.name().utf8(),
                                 parameter.value().valueString().utf8(), a->first, a->second);
            }
        }
    }
}

void openLog(const CommandLine& line) {
    if (line.logFile) {
        std::error_code ignored; // the log then says why it cannot be opened
        std::filesystem::create_directories(mrl::System::path(*line.logFile).parent_path(),
                                            ignored);
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
// this PC are enumerated after, so that the log and the capture have the calls.
DeviceList devicesFor(const CommandLine& line, CommandCapture& capture, const RunContext& context) {
    std::optional<std::vector<DiagDevice>> fromFile = capture.devices();
    if (line.devicesFile) {
        fromFile = devicesFromFile(*line.devicesFile).devices;
    }
    openLog(line);
    capture.begin(line, fromFile, context);
    if (fromFile) {
        return {.devices = std::move(*fromFile), .failure = {}};
    }
    return moduleInfo().devices != nullptr ? moduleInfo().devices() : DeviceList();
}

int list(const CommandLine& line, CommandCapture& capture, const RunContext& context) {
    refuseSharedFiles(line, context.registry);
    const DeviceList devices = devicesFor(line, capture, context);
    capture.end(0, context);
    showList(context.output, context.registry, devices, line.device);
    return 0;
}

int doctor(const CommandLine& line, CommandCapture& capture, RunContext& context) {
    Registry& registry = context.registry;
    std::vector<const Test*> tests;
    for (const Test& test : registry.tests) {
        tests.push_back(&test);
    }
    applySettings(registry, line.settings, tests);
    refuseSharedFiles(line, registry);
    const DeviceList devices = devicesFor(line, capture, context);
    const Findings findings =
        diagnosis(registry.tests, devices, line.device, !line.settings.empty());
    const int value = showDiagnosis(context.output, findings);
    capture.end(value, context);
    return value;
}

TestWithoutDevice withoutDevice(const Test& test, const DeviceList& devices,
                                const std::optional<std::string>& filter) {
    const auto why = [&](const DiagDevice& device) {
        return nameAndValue(device.name().utf8(),
                            phrasesListed(reasonsAgainst(test, device, filter)));
    };
    return {&test, textsOf(devices.devices, why), adviceFor(test, devices, filter)};
}

RunRecord execute(const std::vector<const Test*>& tests, const DeviceList& devices,
                  const CommandLine& line, RunListener& listener, LastWords lastWords,
                  RunContext& context) {
    RunRecord record;
    record.version = context.version;
    record.identity = context.identity;
    std::vector<PlannedRun> plan;
    for (const Test* test : tests) {
        const std::vector<PlannedRun> runs = runsOf(*test, devices.devices, line.device);
        plan.insert(plan.end(), runs.begin(), runs.end());
        if (runs.empty()) {
            record.withoutDevice.push_back(withoutDevice(*test, devices, line.device));
        }
    }
    record.started = mrl::Clock::current().utcNow();
    listener.onRunStart(record, plan);
    const InterruptWatch interrupts(
        context.stopRequest, [&listener] { listener.onStopRequest(); }, std::move(lastWords));
    runAll(plan, listener, record, context);
    record.ended = mrl::Clock::current().utcNow();
    record.exitValue = worstResult(record).value();
    return record;
}

// Writes the reports of a run that an exception ended, then lets that exception go on. It decides
// how the process ends, also when a report cannot be written.
[[noreturn]] void endBroken(const ReportTargets& reports, const RunRecord& record,
                            const RunContext& context) {
    try {
        reports.write(record);
    } catch (const TeskException& failure) {
        writeLine(context.errors, std::string(moduleInfo().name) + ": " +
                                      failure.toString().getUTF8String().bytes());
    }
    throw LeftByException{record.leftBy};
}

// A run whose standard output is the stream of events. Of the console there is what goes to
// standard error.
class EventsAndFailures final : public EventStream {
public:
    EventsAndFailures(mrl::OutputStream& stream, Console& console)
        : EventStream(stream), m_console(console) {}

    void onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) override {
        m_console.writeWithoutDevice(record);
        EventStream::onRunStart(record, plan);
    }
    void onTestStart(const PlannedRun& run) override {
        m_console.expectEndWithin(std::nullopt);
        EventStream::onTestStart(run);
    }
    void onProgress(const Progress& progress) override {
        m_console.expectEndWithin(progress.longestSeconds);
        EventStream::onProgress(progress);
    }
    void onTestEnd(const Outcome& outcome) override {
        m_console.expectEndWithin(std::nullopt);
        EventStream::onTestEnd(outcome);
    }
    void onTestBroken(const PlannedRun& run, const std::string& reason) override {
        m_console.onTestBroken(run, reason);
        EventStream::onTestBroken(run, reason);
    }
    void onStopRequest() override {
        m_console.onStopRequest();
        EventStream::onStopRequest();
    }

private:
    Console& m_console;
};

// `value`, unless a part of standard output is lost.
int unlessLost(int value, const RunContext& context) {
    context.output.flush();
    return context.output.hasLost() ? OUTPUT_LOST : value;
}

ConsoleStyle styleFor(const CommandLine& line, const mrl::OutputStream& stream) {
    // A log on standard error would be written into the middle of a live line.
    const bool logAmong = line.logLevel && !line.logFile;
    return {.quiet = line.quiet,
            .live = stream.isTerminal() && !line.quiet && !line.events && !logAmong,
            .colours =
                stream.showsColours(line.colours.value_or(mrl::OutputStream::Colours::automatic))};
}

// What a test finds wrong with its parameters, where nothing is to run then.
// \param complete as in ParameterCheck
void refuseWrongParameters(const std::vector<const Test*>& tests, bool complete) {
    for (const Test* test : tests) {
        if (!test->refusesWrongParameters()) {
            continue;
        }
        for (const Finding& finding : test->parameterFindings(complete)) {
            if (!finding.good) {
                throw BadInput{message(finding)};
            }
        }
    }
}

// The command line with the configuration. A tag that the command line gives is not asked for.
CommandLine wholeLine(const CommandLine& given, const Registry& registry) {
    CommandLine line = withConfiguration(given, registry);
    std::erase_if(line.tags.prompted,
                  [&given](const std::string& name) { return given.tags.find(name) != nullptr; });
    return line;
}

// Some reports need to know more of a run than others.
void refuseWithoutName(const CommandLine& line, const RunIdentity& identity) {
    for (const RequestedReport& report : line.reports) {
        if (report.kind->refuse != nullptr) {
            report.kind->refuse(identity);
        }
    }
}

// Names of reports that can never be filled in, and reports that miss a tag that is not asked
// for, are refused before a person is asked anything.
void refuseWrongNames(const CommandLine& line, const RunIdentity& identity) {
    RunIdentity expected = identity;
    for (const std::vector<std::string>& names = line.tags.prompted;
         const std::string& name : names) {
        expected.tags.push_back({.name = name, .value = {}});
    }
    for (const RequestedReport& report : line.reports) {
        isNamedAnew(report.file, namePartsOf(expected, {}));
    }
    if (line.ocpFile) {
        isNamedAnew(*line.ocpFile, namePartsOf(expected));
    }
    refuseWithoutName(line, expected);
}

// The command line with the names that its reports will have, but for the result.
CommandLine withFilledNames(const CommandLine& line, const RunIdentity& identity) {
    CommandLine filled = line;
    for (RequestedReport& report : filled.reports) {
        report.file = filledName(report.file, namePartsOf(identity, TestResult::PASS().name()));
    }
    if (filled.ocpFile) {
        filled.ocpFile = filledName(*filled.ocpFile, namePartsOf(identity));
    }
    return filled;
}

// What is known of the run before a person is asked anything.
RunIdentity identityFor(const std::vector<const Test*>& tests, const CommandLine& line,
                        const RunContext& context) {
    RunIdentity identity;
    identity.tags = line.tags.given;
    if (!line.noIdentity) {
        if (moduleInfo().adapters != nullptr) {
            identity.adapters = moduleInfo().adapters();
        }
        identity.pc = context.readPc != nullptr ? context.readPc() : pcIdentity();
    }
    identity.limits = limitsInForce(tests, line.settings);
    identity.calibration = calibrationInForce(tests, line.settings);
    return identity;
}

int run(const CommandLine& given, CommandCapture& capture, RunContext& context) {
    Registry& registry = context.registry;
    const CommandLine line = wholeLine(given, registry);
    const std::vector<const Test*> tests = chooseTests(registry, line.tests);
    applySettings(registry, line.settings, tests);
    demandValues(line.settings, tests);
    refuseSharedFiles(line, registry);
    checkTags(line.tags);
    const std::optional<RunIdentity> captured = capture.identity();
    RunIdentity identity = captured ? *captured : identityFor(tests, line, context);
    if (captured && given.given.contains("--set")) { // other limits than the captured ones
        identity.limits = limitsInForce(tests, line.settings);
        identity.calibration = calibrationInForce(tests, line.settings);
    }
    refuseWrongNames(line, identity);
    if (line.check) {
        return showDiagnosis(context.output, parameterFindings(tests, true));
    }
    refuseWrongParameters(tests, true);
    if (!captured) {
        identity.tags = askForTags(line.tags, context);
        identity.identifier = newRunIdentifier(mrl::Clock::current().utcNow());
    }
    context.identity = identity;
    refuseWithoutName(line, identity);
    refuseSharedFiles(withFilledNames(line, identity), registry);
    const ReportTargets reports(
        line.reports, line.journalFile, identity,
        textsOf(filesOf(line), [](const auto& file) { return file.second; }));
    std::optional<OcpFile> ocp;
    if (line.ocpFile) {
        const NameParts parts = namePartsOf(identity);
        ocp.emplace(filledName(*line.ocpFile, parts), isNamedAnew(*line.ocpFile, parts), context);
    }
    const DeviceList devices = devicesFor(line, capture, context);
    Console console(context, styleFor(line, context.output));
    EventsAndFailures events(context.output, console);
    RunListeners listeners(line.events ? static_cast<RunListener&>(events) : console);
    if (ocp) {
        listeners.add(ocp->listener());
    }
    std::optional<LogKeeper> log;
    if (std::any_of(line.reports.begin(), line.reports.end(),
                    [](const RequestedReport& report) { return report.kind->showsLog; })) {
        log.emplace();
    }
    RunRecord record = execute(tests, devices, line, listeners, console.lastWords(), context);
    if (log) {
        record.log = log->log();
    }
    record.fullLog = line.fullLog;
    capture.end(record.exitValue, context);
    const bool followed = ocp && ocp->end(record, context);
    if (record.leftBy) {
        endBroken(reports, record, context);
    }
    reports.write(record);
    listeners.onRunEnd(record);
    if (followed || line.journalFile || !line.reports.empty()) {
        return record.exitValue;
    }
    return ocp ? OUTPUT_LOST : unlessLost(record.exitValue, context);
}

// The test on whose devices the command works; null when it works on none.
const Test* testOf(const ModuleCommand& command, const RunContext& context) {
    const Test* const test =
        command.test == nullptr ? nullptr : context.registry.findTest(command.test);
    if (test == nullptr && command.test != nullptr) {
        throw TeskException(TeskString(std::string("the command ") + command.name +
                                       " works on devices of the unknown test " + command.test));
    }
    return test;
}

// The devices that suit the command's test and --device; nothing when there are none, after the
// reasons were shown.
std::optional<std::vector<DiagDevice>> devicesOf(const ModuleCommand& command, const Test& test,
                                                 const CommandLine& line,
                                                 const RunContext& context) {
    CommandCapture none(line);
    const DeviceList all = devicesFor(line, none, context);
    std::vector<DiagDevice> suitable;
    for (const DiagDevice& device : all.devices) {
        if (reasonsAgainst(test, device, line.device).empty()) {
            suitable.push_back(device);
        }
    }
    if (suitable.empty()) {
        showWithoutDevice(context.errors, command.name, withoutDevice(test, all, line.device));
        return std::nullopt;
    }
    return suitable;
}

int moduleCommand(const CommandLine& given, RunContext& context) {
    const ModuleCommand& command = *given.moduleCommand;
    const CommandLine line = withConfiguration(given, context.registry);
    applySettings(context.registry, line.settings, command);
    refuseSharedFiles(line, context.registry);
    const Test* const test = testOf(command, context);
    CommandCall call{.arguments = line.moduleArguments,
                     .options = line.moduleOptions,
                     .devices = {},
                     .colours = context.output.showsColours(
                         line.colours.value_or(mrl::OutputStream::Colours::automatic))};
    if (test == nullptr) {
        openLog(line);
    } else {
        refuseWrongParameters({test}, false);
        if (command.needsDevices != nullptr && !command.needsDevices(call)) {
            openLog(line);
        } else {
            std::optional<std::vector<DiagDevice>> devices =
                devicesOf(command, *test, line, context);
            if (!devices) {
                return TestResult::CANNOTRUN().value();
            }
            call.devices = std::move(*devices);
        }
    }
    const InterruptWatch interrupts(context.stopRequest);
    return unlessLost(command.run(call, context), context);
}

// Comes before every message, so that each is in the right language.
void useLanguageAskedFor(const RunContext& context) {
    const std::optional<std::string> tag = languageAskedFor(context.arguments);
    if (tag && !context.language.set(*tag)) {
        throw BadInput{refusalOf(optionNamed("--language")->refusal, *tag)};
    }
}

std::string programName(const RunContext& context) {
    return context.program.empty() ? std::string(moduleInfo().name) : context.program;
}

int show(std::string_view page, const RunContext& context) {
    context.output << page;
    context.output.flush();
    return 0;
}

int version(const RunContext& context) {
    writeLine(context.output,
              message("HELP_VERSION_LINE", {{"Program", std::string(moduleInfo().name)},
                                            {"Version", context.version.text()},
                                            {"Build", context.version.build}}));
    return 0;
}

// Those commands that can be captured, or are replayed.
int carryOut(const CommandLine& line, CommandCapture& capture, RunContext& context) {
    switch (line.command) {
    case Command::run:
        return run(line, capture, context);
    case Command::doctor:
        return unlessLost(doctor(line, capture, context), context);
    default:
        return unlessLost(list(line, capture, context), context);
    }
}

// A person who double-clicks the program sees its window only until it ends.
int showStart(const RunContext& context) {
    const std::string program = programName(context);
    context.output << helpPage(program, nullptr);
    for (const std::string& text :
         {std::string(), message("START_FROM_PROMPT"), "  " + program + " doctor", std::string(),
          message("START_PRESS_ENTER")}) {
        writeLine(context.output, text);
    }
    return 0;
}

int follow(const CommandLine& line, RunContext& context) {
    if (context.windowCloses) {
        return showStart(context);
    }
    if (line.command == Command::help) {
        return unlessLost(show(helpPage(programName(context), line.helpOn), context), context);
    }
    if (line.command == Command::version) {
        return unlessLost(version(context), context);
    }
    if (context.initialize != nullptr) {
        context.initialize();
    }
    switch (line.command) {
    case Command::configTemplate:
        return unlessLost(show(configTemplate(context.registry, programName(context)), context),
                          context);
    case Command::ofModule:
        return moduleCommand(line, context);
    case Command::replay: {
        CommandCapture capture(replayOf(line));
        return capture.unlessDifferent(
            [&] { return carryOut(capture.replayedLine(line, context), capture, context); });
    }
    default: {
        CommandCapture capture(line);
        return carryOut(line, capture, context);
    }
    }
}

} // namespace

int runProgram(RunContext& context) {
    try {
        useLanguageAskedFor(context);
        return follow(parseCommandLine(context.arguments), context);
    } catch (const BadInput& input) {
        writeLine(context.errors, std::string(moduleInfo().name) + ": " + input.line);
        return BadInput::VALUE;
    } catch (const ReplayEnded& ended) {
        writeLine(context.errors, std::string(moduleInfo().name) + ": " + ended.line);
        return REPLAY_DIFFERS;
    } catch (const LeftByException& left) {
        std::rethrow_exception(left.cause);
    } catch (const std::exception& failure) {
        // Thrown by the framework or by the module's callback. Unconverted it would be taken for an
        // exception that left a test.
        throw TeskException(TeskString(failure.what()));
    }
}

} // namespace tesk5
