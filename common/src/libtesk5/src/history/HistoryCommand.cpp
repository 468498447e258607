#include "history/HistoryCommand.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "history/HistoryOutput.h"
#include "history/JournalFiles.h"
#include "history/RunHistory.h"
#include "model/Decimal.h"

#include <algorithm>

namespace tesk5 {

namespace {

constexpr const char* SINCE = "--since";
constexpr const char* STATION = "--station";
constexpr const char* SERIAL = "--serial";
constexpr const char* TEST_OPTION = "--test";
constexpr const char* LAST = "--last";
constexpr const char* PAGE = "--page";
constexpr const char* FORMAT = "--format";
constexpr const char* EXAMPLE = "history line.jsonl";

constexpr std::size_t USUAL_LEVELS = 20;
constexpr int MOST_LEVELS = 1000;

std::optional<std::string> given(const CommandCall& call, const char* option) {
    const auto found = call.options.find(option);
    return found == call.options.end() ? std::nullopt : std::optional(found->second);
}

// The beginning of a day on this PC's clock.
mrl::Clock::UtcTime beginningOf(const std::string& day) {
    const std::optional<mrl::Clock::UtcTime> midnight = mrl::parseUtc(day + "T00:00:00.000Z");
    if (!midnight) {
        throw BadInput{message("HISTORY_NO_DATE", {{"Text", day}})};
    }
    mrl::Clock& clock = mrl::Clock::current();
    // The offset of that hour is the one in force then, not at midnight in Greenwich.
    return *midnight - clock.utcOffset(*midnight - clock.utcOffset(*midnight));
}

HistoryFilter filterOf(const CommandCall& call) {
    HistoryFilter filter{.since = {},
                         .station = given(call, STATION),
                         .serial = given(call, SERIAL),
                         .test = given(call, TEST_OPTION)};
    if (const std::optional<std::string> since = given(call, SINCE)) {
        filter.since = beginningOf(*since);
    }
    return filter;
}

std::size_t lastOf(const CommandCall& call) {
    const std::optional<std::string> count = given(call, LAST);
    return count ? parseUint32(*count).value_or(USUAL_LEVELS) : USUAL_LEVELS;
}

std::optional<ReportFile> pageFileOf(const CommandCall& call) {
    const std::optional<std::string> path = given(call, PAGE);
    if (!path) {
        return std::nullopt;
    }
    for (const std::string& journal : call.arguments) {
        if (nameSameFile(*path, journal)) {
            throw BadInput{message("HISTORY_PAGE_IS_JOURNAL", {{"File", *path}})};
        }
    }
    return ReportFile(*path);
}

void note(const RunContext& context, const std::string& text) {
    writeLine(context.errors, std::string(moduleInfo().name) + ": " + text);
}

int show(const CommandCall& call, RunContext& context) {
    if (call.arguments.empty()) {
        throw BadInput{message("HISTORY_NEEDS_FILE",
                               {{"Example", std::string(moduleInfo().name) + " " + EXAMPLE}})};
    }
    const std::optional<ReportFile> page = pageFileOf(call);
    RunHistory history(filterOf(call));
    const JournalRemains remains = readJournals(
        call.arguments, [&history](const JournalEntry& entry) { history.add(entry); },
        [&context] { return context.stopRequest.raised(); });
    if (context.stopRequest.raised()) {
        return TestResult::USERABORTED().value();
    }
    for (const std::string& problem : journalProblems(remains)) {
        note(context, problem);
    }
    if (remains.runs == 0) {
        throw BadInput{message("HISTORY_NO_RUNS")};
    }
    const HistorySummary summary = history.summary(lastOf(call));
    if (summary.all.runs == 0) {
        note(context, message("HISTORY_NO_MATCH"));
    }
    if (page) {
        page->replace(historyPage(summary, remains));
    }
    if (given(call, FORMAT)) {
        context.output << std::string_view(historyJson(summary, remains, call.arguments));
    } else if (summary.all.runs > 0) {
        for (const std::string& line : historyLines(summary, context.output.columns())) {
            writeLine(context.output, line);
        }
    }
    return 0;
}

} // namespace

ModuleCommand historyCommand() {
    return {.name = "history",
            .arguments = "FILE...",
            .help = "HELP_HISTORY",
            .examples = {EXAMPLE, "history line.jsonl --since 2026-11-20 --page history.html"},
            .run = &show,
            .options = {{.name = SINCE,
                         .argument = "DATE",
                         .help = "HELP_HISTORY_SINCE",
                         .example = "history line.jsonl --since 2026-11-20"},
                        {.name = STATION,
                         .argument = "NAME",
                         .help = "HELP_HISTORY_STATION",
                         .example = "history line.jsonl --station L3-07"},
                        {.name = SERIAL,
                         .argument = "TEXT",
                         .help = "HELP_HISTORY_SERIAL",
                         .example = "history line.jsonl --serial A123456"},
                        {.name = TEST_OPTION,
                         .argument = "NAME",
                         .help = "HELP_HISTORY_TEST",
                         .example = "history line.jsonl --test NAME"},
                        {.name = LAST,
                         .argument = "N",
                         .help = "HELP_HISTORY_LAST",
                         .example = "history line.jsonl --last 100",
                         .range = NumberRange{1, MOST_LEVELS, ""}},
                        {.name = PAGE,
                         .argument = "FILE",
                         .help = "HELP_HISTORY_PAGE",
                         .example = "history line.jsonl --page history.html"},
                        {.name = FORMAT,
                         .argument = "json",
                         .help = "HELP_HISTORY_FORMAT",
                         .example = "history line.jsonl --format json",
                         .choices = {"json"}}}};
}

} // namespace tesk5
