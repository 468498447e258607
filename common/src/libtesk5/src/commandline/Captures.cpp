#include "commandline/Captures.h"

#include <tesk5/BadInput.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/ReportFile.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "texts/SystemReason.h"

#include <mrl/Files.h>
#include <mrl/System.h>

#include <algorithm>

namespace tesk5 {

namespace {

// The commands that can be captured, as typed.
constexpr std::pair<Command, const char*> capturedCommands[] = {
    {Command::list, "list"}, {Command::run, "run"}, {Command::doctor, "doctor"}};

const char* nameOf(Command command) {
    const auto* const known =
        std::find_if(std::begin(capturedCommands), std::end(capturedCommands),
                     [command](const auto& row) { return row.first == command; });
    return known->second;
}

[[noreturn]] void refuseFile(const char* key, const std::string& file, const std::string& reason) {
    throw BadInput{message(key, {{"File", file}, {"Reason", reason}})};
}

std::vector<Setting>::const_iterator settingNamed(const std::vector<Setting>& settings,
                                                  const TeskString& name) {
    return std::find_if(settings.begin(), settings.end(),
                        [&name](const Setting& setting) { return setting.name == name; });
}

CapturedCommand commandOf(const CommandLine& line,
                          const std::optional<std::vector<DiagDevice>>& devices,
                          const RunContext& context) {
    CapturedCommand command{.module = std::string(moduleInfo().name),
                            .version = context.version.text(),
                            .build = context.version.build.utf8(),
                            .command = nameOf(line.command),
                            .tests = {},
                            .settings = {},
                            .device = line.device,
                            .devices = devices,
                            .identity = context.identity};
    for (const TeskString& test : line.tests) {
        command.tests.push_back(test.utf8());
    }
    for (const Setting& setting : line.settings) {
        const Parameter* parameter = context.registry.findParameter(setting.name);
        command.settings.push_back(
            {setting.name.utf8(), setting.value.utf8(),
             parameter == nullptr || parameter->type() == DataType::STRING()});
    }
    return command;
}

} // namespace

CaptureRecording::~CaptureRecording() = default;
CaptureReplay::~CaptureReplay() = default;

ReplayOfFile replayOf(const CommandLine& line) {
    if (line.replayed.size() != 1) {
        throw BadInput{message("INPUT_REPLAY_FILE")};
    }
    const std::string& file = line.replayed.front();
    const CaptureSupport& support = *moduleInfo().captures;
    try {
        return {file,
                support.replay(mrl::readWholeFile(mrl::System::path(file), support.largestFile))};
    } catch (const mrl::FileFailure& failure) {
        refuseFile("INPUT_CAPTURE_UNUSABLE", file, fileReason(failure).text());
    } catch (const UnusableCapture& failure) {
        refuseFile("INPUT_CAPTURE_UNUSABLE", file,
                   message("INPUT_CAPTURE_LINE", {{"Line", std::to_string(failure.line)},
                                                  {"Problem", std::string(failure.what())}}));
    }
}

CommandCapture::CommandCapture(const CommandLine& line)
    : m_file(line.captureFile.value_or("")), m_records(line.captureFile.has_value()),
      m_hideNames(line.hideNames) {
    if (!m_records) {
        if (line.given.contains("--capture-names")) {
            throw BadInput{message("INPUT_CAPTURE_NAMES_ALONE")};
        }
        return;
    }
    if (const std::optional<std::string> reason = whyNotWritable(m_file)) {
        refuseFile("INPUT_CAPTURE_UNWRITABLE", m_file, *reason);
    }
}

CommandCapture::CommandCapture(ReplayOfFile&& replay)
    : m_file(std::move(replay.file)), m_replay(std::move(replay.replay)) {}

CommandLine CommandCapture::replayedLine(const CommandLine& line, const RunContext& context) const {
    const CapturedCommand& captured = m_replay->command();
    CommandLine replayed = line;
    const auto* const known =
        std::find_if(std::begin(capturedCommands), std::end(capturedCommands),
                     [&captured](const auto& row) { return captured.command == row.second; });
    if (known == std::end(capturedCommands) || captured.module != moduleInfo().name) {
        refuseFile("INPUT_CAPTURE_UNUSABLE", m_file,
                   message("INPUT_CAPTURE_COMMAND",
                           {{"Command", captured.command}, {"Module", captured.module}}));
    }
    replayed.command = known->first;
    for (const std::string& option : line.given) {
        if (!goesWith(*optionNamed(option), descriptionOf(replayed.command))) {
            throw BadInput{message("INPUT_COMMAND_TAKES_NO",
                                   {{"Command", captured.command}, {"Name", option}})};
        }
    }
    for (const std::string& name : captured.tests) {
        const Test* test = context.registry.findTest(TeskString(name));
        if (test != nullptr && test->interactive()) {
            throw BadInput{message("INPUT_REPLAY_INTERACTIVE", {{"File", m_file}, {"Test", name}})};
        }
        replayed.tests.emplace_back(name);
    }
    for (const CapturedSetting& setting : captured.settings) {
        const TeskString name(setting.name);
        if (settingNamed(line.settings, name) == line.settings.end()) {
            replayed.settings.push_back({name, TeskString(setting.value)});
        }
    }
    replayed.device = captured.device;
    return replayed;
}

std::optional<std::vector<DiagDevice>> CommandCapture::devices() const {
    return m_replay ? m_replay->command().devices : std::nullopt;
}

std::optional<RunIdentity> CommandCapture::identity() const {
    return m_replay && !m_replay->command().identity.identifier.empty()
               ? std::optional(m_replay->command().identity)
               : std::nullopt;
}

void CommandCapture::begin(const CommandLine& line,
                           const std::optional<std::vector<DiagDevice>>& devices,
                           const RunContext& context) {
    if (m_replay) {
        m_replay->begin();
    }
    if (!m_records) {
        return;
    }
    const std::filesystem::path path = mrl::System::path(m_file);
    std::error_code ignored; // the file then says why it cannot be made
    std::filesystem::create_directories(path.parent_path(), ignored);
    try {
        m_recording =
            moduleInfo().captures->record(path, commandOf(line, devices, context), m_hideNames);
    } catch (const mrl::FileFailure& failure) {
        refuseFile("INPUT_CAPTURE_UNWRITABLE", m_file, fileReason(failure).text());
    }
}

void CommandCapture::end(int exitValue, const RunContext& context) {
    refuseDifference();
    if (m_recording) {
        m_recording->end(exitValue);
        if (!m_recording->complete()) {
            writeLine(context.errors, std::string(moduleInfo().name) + ": " +
                                          message("CAPTURE_INCOMPLETE", {{"File", m_file}}));
        }
    }
}

int CommandCapture::unlessDifferent(const std::function<int()>& command) const {
    try {
        return command();
    } catch (const std::exception&) {
        refuseDifference();
        throw;
    }
}

void CommandCapture::refuseDifference() const {
    if (!m_replay) {
        return;
    }
    if (const std::optional<CaptureDifference> difference = m_replay->difference()) {
        throw ReplayEnded{message("REPLAY_DIFFERS", {{"File", m_file},
                                                     {"Line", std::to_string(difference->line)},
                                                     {"Expected", difference->expected},
                                                     {"Asked", difference->asked}})};
    }
}

} // namespace tesk5
