// Journals: every line is a run or is counted among the others, and what is shown of them is safe.
#include "Refusal.h"

#include <support/InputFile.h>

#include <history/HistoryOutput.h>

#include <tesk5/Language.h>

#include <mrl/Json.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t LAST = 7;
    constexpr std::size_t COLUMNS = 60;
    static fuzz::InputFile file("line.jsonl");
    file.write(fuzz::viewOf(data, size));
    tesk5::Language::current().set("en");
    tesk5::RunHistory history({});
    const tesk5::JournalRemains remains = tesk5::readJournals(
        {file.path()}, [&history](const tesk5::JournalEntry& entry) { history.add(entry); },
        [] { return false; });
    const tesk5::HistorySummary summary = history.summary(LAST);
    const tesk5::Yield& all = summary.all;
    fuzz::require(all.runs + summary.repeated == remains.runs, "no run is lost");
    fuzz::require(all.runs + remains.brokenLines + remains.laterLines <=
                      test::linesOf(fuzz::viewOf(data, size)).size(),
                  "a line is one thing");
    fuzz::require(all.units <= all.runs && all.firstPass <= all.units && all.finalPass <= all.units,
                  "units are runs, and those that pass are units");
    std::size_t byStation = 0;
    for (const tesk5::HistoryRow& row : summary.stations) {
        byStation += row.yield.runs;
    }
    fuzz::require(byStation == all.runs, "each run is at one station");
    if (all.runs > 0) {
        for (const std::string& line : tesk5::historyLines(summary, COLUMNS)) {
            fuzz::requireNone(test::findUnsafe(line), "the history");
        }
    }
    fuzz::requireNone(test::findUnsafeInMarkup(tesk5::historyPage(summary, remains)), "the page");
    mrl::parseJson(tesk5::historyJson(summary, remains, {file.path()}));
    return 0;
}
