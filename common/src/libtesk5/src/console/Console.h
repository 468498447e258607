// What the person at the console reads of a run.
#pragma once

#include "console/LiveLine.h"
#include "run/RunListener.h"

#include <mrl/OutputStream.h>

#include <optional>

namespace tesk5 {

/// Writes one line in one piece. Whatever could move a cursor or break the line is made visible,
/// for names come from anywhere.
void writeLine(mrl::OutputStream& stream, const std::string& text);

/// What may be behind a missing verdict, a line a finding.
void writeAdvice(mrl::OutputStream& stream, const Findings& advice);

/// `texts` with `separator` between them.
std::string joined(const std::vector<std::string>& texts, const char* separator);

/// How much of a run the console shows.
struct ConsoleStyle {
    bool quiet = false; ///< only runs that did not go well
    bool live = false;  ///< a live line while a test runs; for terminals only
};

/// Tells a run on standard output, and what broke it on standard error.
class Console final : public RunListener {
public:
    explicit Console(ConsoleStyle style);

    void onRunStart(const RunRecord& record, std::size_t planned) override;
    void onTestStart(const PlannedRun& run) override;
    void onProgress(const Progress& progress) override;
    void onTestEnd(const Outcome& outcome) override;
    void onTestBroken(const PlannedRun& run, const std::string& reason) override;
    void onStopRequest() override;
    void onRunEnd(const RunRecord& record) override;

private:
    static void writeHead(const PlannedRun& run);
    void endLiveLine();

    bool m_quiet;
    LiveLine m_liveLine;
    bool m_live;
    std::optional<Ticker> m_ticker; ///< ends before the line does
};

/// The list of tests, devices, and what would run where.
void showList(const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter);

} // namespace tesk5
