#include "Console.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "BadInput.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>

namespace tesk5 {

namespace {

// Colours of a terminal, by how bad a result is; none where nobody looks.
const char* colourOf(const TestResult& result) {
    if (!mrl::cout.showsColours()) {
        return "";
    }
    if (result.good()) {
        return "\x1b[32m";
    }
    return result == TestResult::WARN() || result == TestResult::USERABORTED() ? "\x1b[33m"
                                                                               : "\x1b[31m";
}

const char* colourEnd() {
    return mrl::cout.showsColours() ? "\x1b[0m" : "";
}

std::string secondsText(double seconds) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.1f s", seconds);
    return buffer;
}

void writeEvent(const RaisedEvent& event) {
    const std::string head = std::string("  ") + severityName(event.severity) + ": ";
    writeLine(mrl::cout, head + event.text);
    const std::string& pattern = textOf(event.key).utf8();
    for (const auto& [name, value] : event.variables) {
        if (pattern.find("{" + name.utf8() + "}") == std::string::npos) {
            writeLine(mrl::cout, std::string(head.size(), ' ') + name.utf8() + ": " +
                                     value.valueString().utf8());
        }
    }
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
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
    return joined(parts, ", ");
}

std::string programPrefix() {
    return std::string(moduleInfo().name) + ": ";
}

} // namespace

void writeLine(mrl::OutputStream& stream, const std::string& text) {
    stream << std::string_view(mrl::escapeControls(text) + "\n");
    stream.flush();
}

std::string joined(const std::vector<std::string>& texts, const char* separator) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : separator) + text;
    }
    return all;
}

void Console::runStarts(const RunRecord& record, std::size_t /*planned*/) {
    for (const TestWithoutDevice& without : record.withoutDevice) {
        writeLine(mrl::cerr, programPrefix() + "no device for " + without.test->name().utf8() +
                                 (without.reasons.empty() ? ": there is none at all" : ""));
        for (const std::string& reason : without.reasons) {
            writeLine(mrl::cerr, "  " + reason);
        }
    }
}

void Console::starts(const PlannedRun& run) {
    writeLine(mrl::cout, run.test->name().utf8() + " on " + run.device->name().utf8());
}

void Console::ended(const Outcome& outcome) {
    if (!outcome.started) {
        starts({outcome.test, outcome.device});
    }
    for (const RaisedEvent& event : outcome.events) {
        writeEvent(event);
    }
    std::string after =
        outcome.started ? " after " + secondsText(outcome.seconds) : ": not started";
    if (!outcome.failure.empty()) {
        after += ": " + mrl::escapeControls(outcome.failure);
    }
    mrl::cout << "  " << colourOf(outcome.result) << outcome.result.name() << colourEnd()
              << std::string_view(after) << mrl::endl;
}

void Console::broken(const PlannedRun& run, const std::string& reason) {
    writeLine(mrl::cerr, programPrefix() + run.test->name().utf8() + " on " +
                             run.device->name().utf8() +
                             " was left by an exception; the run ends here" +
                             (reason.empty() ? std::string() : ": " + reason));
}

void Console::runEnded(const RunRecord& run) {
    std::string line = counted(run.outcomes.size(), "run", "runs");
    if (!run.outcomes.empty()) {
        line += ": " + tally(run.outcomes);
    }
    if (!run.withoutDevice.empty()) {
        line += "; " + counted(run.withoutDevice.size(), "test", "tests") + " without a device";
    }
    if (run.leftOut > 0) {
        line += "; ended by the test, " + std::to_string(run.leftOut) + " left out";
    }
    writeLine(mrl::cout, line + "; exit value " + std::to_string(run.exitValue));
}

void Console::stopping() {
    writeLine(mrl::cerr, programPrefix() + "stopping: the run ends after the current test; "
                                           "Ctrl+C once more ends the program at once");
}

} // namespace tesk5
