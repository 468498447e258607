// From a journal of 100,000 runs on disk to the text and the page of its history.
#include <support/TemporaryFolder.h>

#include <history/HistoryOutput.h>

#include <tesk5/ModuleInfo.h>

#include <mrl/Clock.h>

#include <benchmark/benchmark.h>

#include <fstream>
#include <stdexcept>

const tesk5::ModuleInfo& tesk5::moduleInfo() {
    static const ModuleInfo info{.name = "example", .builtInTexts = "{}"};
    return info;
}

namespace {

constexpr int RUNS = 100'000;
constexpr int STATIONS = 40;
constexpr std::size_t LEVELS = 100;

std::string number(int value) {
    return std::to_string(value);
}

// A line as a level test of one adapter with all its facts writes it, 1.6 kB.
std::string lineOf(int run) {
    constexpr int MOST_PER_UNIT = 10; // every tenth unit comes twice
    const int serial = run - (run % MOST_PER_UNIT == 0 && run > 0 ? 1 : 0);
    const bool fails = run % MOST_PER_UNIT == MOST_PER_UNIT - 1;
    const std::string result = fails ? "FAIL" : "PASS";
    const std::chrono::seconds gap(20);
    const std::string time =
        mrl::utcText(mrl::Clock::UtcTime(std::chrono::days(20777)) + run * gap);
    const std::string level =
        fails ? "-82.5" : "-" + number(50 + run % 15) + "." + number(run % 9 + 1);
    std::string identifier = "019aa1f2-7b3c-7d11-8a5e-" + std::string(12, '0');
    identifier.replace(identifier.size() - number(run).size(), number(run).size(), number(run));
    return R"({"journal":1,"runIdentifier":")" + identifier + R"(","started":")" + time +
           R"(","ended":")" + time + R"(","exit":0,"result":")" + result +
           R"(","module":{"name":"mrlrsignal","version":"6.5","build":"000000001"},)"
           R"("tags":{"serial":"A)" +
           number(serial) +
           R"(","part":"104711-002","revision":"C",)"
           R"("station":"L3-)" +
           number(run % STATIONS) +
           R"(","operator":"4711","batch":"2026-47"},)"
           R"("pc":{"name":"LINE3-PC07","maker":"Example Systems","model":"Station 9020","serial":)"
           R"("9XK2W63","system":"Windows 11 Pro","build":"10.0.26100"},)"
           R"("limits":[{"name":"Line 3","version":"4","sha256":)"
           R"("9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08","source":"file"}],)"
           R"("tests":[{"test":"SignalLevelTest","device":{"name":"Intel(R) Wi-Fi 6E AX211 160MHz",)"
           R"("properties":{"GUID":"{5B1A7F5C-0A6B-4E0D-9C2B-7D1E2F3A4B5C}","Driver":"23.60.1.2",)"
           R"("Vendor":"Intel","Address":"02:00:00:00:00:01","Bus":"PCI","Radio":"on"}},"result":")" +
           result + R"(","measurements":[{"name":"Level","value":)" + level +
           R"(,"decimals":1,"unit":"dBm","lowest":-100,"highest":0,"limits":[)"
           R"({"name":"WarningLevel","value":-70,"severity":"warning","kept":"atLeast"},)"
           R"({"name":"FailingLevel","value":-80,"severity":"error","kept":"atLeast"}],)"
           R"("brokenLimit":null,"figures":[{"name":"Spread","value":1.5,"unit":"dB"},)"
           R"({"name":"Readings","value":12,"unit":""},{"name":"IntervalLow","value":-58.1,"unit":)"
           R"("dBm"},{"name":"IntervalHigh","value":-56.9,"unit":"dBm"}],)"
           R"("attributes":{"Source":"scan","Channel":36,"BSSID":"02:00:00:00:01:00"}}]}]})";
}

void history(benchmark::State& state) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("line.jsonl");
    {
        std::ofstream file(path, std::ios::binary);
        for (int run = 0; run < RUNS; ++run) {
            file << lineOf(run) << '\n';
        }
    }
    for (auto _ : state) {
        tesk5::RunHistory runs({});
        const tesk5::JournalRemains remains = tesk5::readJournals(
            {path}, [&runs](const tesk5::JournalEntry& entry) { runs.add(entry); },
            [] { return false; });
        const tesk5::HistorySummary summary = runs.summary(LEVELS);
        if (remains.runs != RUNS || summary.all.runs != RUNS) {
            throw std::runtime_error("runs are missing");
        }
        benchmark::DoNotOptimize(tesk5::historyLines(summary, 0));
        benchmark::DoNotOptimize(tesk5::historyPage(summary, remains));
    }
}
BENCHMARK(history)->Name("history/figure")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
