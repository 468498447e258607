#include "console/Console.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "run/ReportWords.h"
#include "texts/Lists.h"
#include "texts/MeasurementText.h"
#include "texts/NumberText.h"

#include <mrl/DisplayWidth.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cmath>

namespace tesk5 {

namespace {

constexpr const char* COLOUR_END = "\x1b[0m";

const char* colourOf(const Outcome& outcome) {
    if (plainlyGood(outcome)) {
        return "\x1b[32m";
    }
    const TestResult& result = outcome.result;
    return result.good() || result == TestResult::WARN() || result == TestResult::USERABORTED()
               ? "\x1b[33m"
               : "\x1b[31m";
}

// "1 FAIL, 2 PASS": every result that occurs, the worst first.
std::string tally(const std::vector<Outcome>& outcomes) {
    std::vector<TestResult> kinds;
    for (const Outcome& outcome : outcomes) {
        if (std::find(kinds.begin(), kinds.end(), outcome.result) == kinds.end()) {
            kinds.push_back(outcome.result);
        }
    }
    std::stable_sort(kinds.begin(), kinds.end(), [](const TestResult& a, const TestResult& b) {
        return a.severity() > b.severity();
    });
    std::vector<std::string> parts;
    for (const TestResult& kind : kinds) {
        const auto count =
            std::count_if(outcomes.begin(), outcomes.end(),
                          [&kind](const Outcome& outcome) { return outcome.result == kind; });
        parts.push_back(std::to_string(count) + " " + kind.name());
    }
    return listed(parts);
}

std::string programPrefix() {
    return std::string(moduleInfo().name) + ": ";
}

std::string runText(const char* key, const PlannedRun& run) {
    return message(key, {{"Test", labelOf(*run.test)}, {"Device", run.device->name()}});
}

// The possible causes of a result, one line for each finding.
void writeAdvice(mrl::OutputStream& stream, const Findings& advice) {
    for (const Finding& finding : advice) {
        writeLine(stream, "  " + nameAndValue(message("DOCTOR_CAUSE"), message(finding)));
    }
}

} // namespace

int showDiagnosis(mrl::OutputStream& stream, const Findings& findings) {
    mrl::Uint32 problems = 0;
    for (const Finding& finding : findings) {
        writeLine(stream, nameAndValue(message(finding.good ? "DOCTOR_OK" : "DOCTOR_PROBLEM"),
                                       message(finding)));
        problems += finding.good ? 0 : 1;
    }
    const int exitValue = problems == 0 ? 0 : TestResult::CANNOTRUN().value();
    writeLine(stream,
              message(problems == 0 ? "DOCTOR_ALL_WELL" : "DOCTOR_PROBLEMS",
                      {{"Count", problems}, {"ExitValue", static_cast<mrl::Uint32>(exitValue)}}));
    return exitValue;
}

void showWithoutDevice(mrl::OutputStream& stream, const TeskString& name,
                       const TestWithoutDevice& without) {
    const char* const key =
        without.reasons.empty() ? "CONSOLE_NO_DEVICE_AT_ALL" : "CONSOLE_NO_DEVICE";
    writeLine(stream, programPrefix() + message(key, {{"Test", name}}));
    for (const std::string& reason : without.reasons) {
        writeLine(stream, "  " + reason);
    }
    writeAdvice(stream, without.advice);
}

Console::Console(RunContext& context, ConsoleStyle style)
    : m_context(context), m_output(context.output), m_style(style),
      m_liveLine(m_output, m_output.columns()) {}

void Console::writeEvent(const RaisedEvent& event) {
    const std::string head =
        "  " + message(event.severity == Severity::error ? "CONSOLE_ERROR" : "CONSOLE_WARNING") +
        " ";
    writeLine(m_output, head + eventText(event));
    for (const auto& [name, value] : unspokenVariables(event)) {
        writeLine(m_output, std::string(mrl::columnsOf(head), ' ') +
                                nameAndValue(name.utf8(), value.shownString().utf8()));
    }
}

void Console::writeVerdict(const Outcome& outcome) {
    const std::string result = outcome.result.name();
    std::string text =
        "  " + (outcome.started
                    ? message("CONSOLE_ENDED",
                              {{"Result", result}, {"Seconds", secondsText(outcome.seconds)}})
                    : message("CONSOLE_NOT_STARTED", {{"Result", result}}));
    if (!outcome.failure.empty()) {
        text = nameAndValue(text, outcome.failure);
    }
    text = linesFor(m_output, text);
    // The colours go in last: escape sequences in names are escaped by then.
    const std::size_t place = text.find(result);
    if (m_style.colours && place != std::string::npos) {
        text.replace(place, result.size(), colourOf(outcome) + result + COLOUR_END);
    }
    m_output << text;
    m_output.flush();
}

void Console::onRunStart(const RunRecord& record, const std::vector<PlannedRun>& /*plan*/) {
    writeWithoutDevice(record);
    const RunIdentity& identity = record.identity;
    if (m_style.quiet || identity.tags.empty()) {
        return;
    }
    writeLine(m_output, nameAndValue(message("REPORT_RUN"), identity.identifier));
    for (const FactInWords& fact : identityWords(identity)) {
        writeLine(m_output, "  " + nameAndValue(fact.name, fact.value));
    }
}

void Console::writeWithoutDevice(const RunRecord& record) {
    for (const TestWithoutDevice& without : record.withoutDevice) {
        showWithoutDevice(m_context.errors, without.test->name(), without);
    }
}

void Console::writeHead(const PlannedRun& run) {
    writeLine(m_output, runText("CONSOLE_RUN", run));
}

void Console::onTestStart(const PlannedRun& run) {
    expectEndWithin(std::nullopt);
    if (!m_style.quiet) {
        writeHead(run);
    }
    if (m_style.live) {
        constexpr std::chrono::milliseconds REDRAWN_EVERY(500);
        m_liveLine.begin();
        m_ticker.emplace(REDRAWN_EVERY, [this] {
            const RunContext::Scope scope(m_context);
            m_liveLine.draw();
        });
    }
}

void Console::onProgress(const Progress& progress) {
    expectEndWithin(progress.longestSeconds);
    m_liveLine.tell(progress.text, progress.longestSeconds);
}

void Console::endLiveLine() {
    expectEndWithin(std::nullopt);
    m_ticker.reset();
    m_liveLine.end();
}

void Console::onTestEnd(const Outcome& outcome) {
    endLiveLine();
    if (m_style.quiet && plainlyGood(outcome)) {
        return;
    }
    if (m_style.quiet || !outcome.started) {
        writeHead({outcome.test, outcome.device});
    }
    const bool explained = adviceExplains(outcome);
    if (explained) {
        writeAdvice(m_output, outcome.advice);
    }
    for (const RaisedEvent& event : outcome.events) {
        writeEvent(event);
    }
    for (const Measurement& measurement : outcome.measurements) {
        for (const std::string& line : measurementLines(measurement)) {
            writeLine(m_output, "  " + line);
        }
    }
    writeVerdict(outcome);
    if (!explained) {
        writeAdvice(m_output, outcome.advice);
    }
}

void Console::onTestBroken(const PlannedRun& run, const std::string& reason) {
    endLiveLine();
    const std::string text = runText("CONSOLE_BROKEN", run);
    writeLine(m_context.errors,
              programPrefix() + (reason.empty() ? text : nameAndValue(text, reason)));
}

void Console::onRunEnd(const RunRecord& record) {
    if (m_style.quiet) {
        return;
    }
    std::vector<std::string> parts;
    if (record.outcomes.empty()) {
        parts.push_back(message("CONSOLE_RUNS", {{"Count", Value("0")}}));
    } else {
        parts.push_back(
            message("CONSOLE_RUNS_TALLY", {{"Count", std::to_string(record.outcomes.size())},
                                           {"Tally", tally(record.outcomes)}}));
    }
    if (!record.withoutDevice.empty()) {
        parts.push_back(message("CONSOLE_WITHOUT_DEVICE",
                                {{"Count", std::to_string(record.withoutDevice.size())}}));
    }
    if (record.leftOut > 0) {
        parts.push_back(message("CONSOLE_LEFT_OUT", {{"Count", std::to_string(record.leftOut)}}));
    }
    parts.push_back(message("CONSOLE_EXIT", {{"Value", std::to_string(record.exitValue)}}));
    writeLine(m_output, phrasesListed(parts));
}

void Console::expectEndWithin(std::optional<double> seconds) {
    const std::lock_guard lock(m_endMutex);
    m_latestEnd.reset();
    if (seconds) {
        m_latestEnd = mrl::Clock::current().now() +
                      std::chrono::duration_cast<mrl::Clock::Duration>(Seconds(*seconds));
    }
}

std::string Console::stoppingText() {
    const std::lock_guard lock(m_endMutex);
    const double left =
        m_latestEnd ? std::ceil(Seconds(*m_latestEnd - mrl::Clock::current().now()).count()) : 0;
    return left > 0 ? message("CONSOLE_STOPPING_LIMITED", {{"Left", wholeSecondsText(left)}})
                    : message("CONSOLE_STOPPING");
}

void Console::onStopRequest() {
    const RunContext::Scope scope(m_context);
    m_liveLine.yieldTo([this] { writeLine(m_context.errors, programPrefix() + stoppingText()); });
}

LastWords Console::lastWords() const {
    LastWords words;
    if (m_style.live) {
        words.begun = m_liveLine.silence();
        words.output = LiveLine::erasure(m_output.columns());
    }
    words.errors = linesFor(m_context.errors, programPrefix() + message("CONSOLE_STOPPED_AT_ONCE"));
    return words;
}

} // namespace tesk5
