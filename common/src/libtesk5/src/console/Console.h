// A run as the console shows it.
#pragma once

#include "console/LiveLine.h"
#include "run/InterruptWatch.h"
#include "run/RunListener.h"

#include <tesk5/RunContext.h>

#include <optional>

namespace tesk5 {

/// Writes a line for each finding, and how many are bad.
/// \return the process's exit value: 0, or that of CANNOTRUN when a finding is bad
int showDiagnosis(mrl::OutputStream& stream, const Findings& findings);

/// Writes that there is no device for `name`, a test or a command, and why.
void showWithoutDevice(mrl::OutputStream& stream, const TeskString& name,
                       const TestWithoutDevice& without);

/// How much of a run the console shows.
struct ConsoleStyle {
    bool quiet = false;   ///< only runs with a bad result
    bool live = false;    ///< a live line while a test runs; for terminals
    bool colours = false; ///< of results
};

/// Writes a run to the context's output, and what ended it early to its errors.
class Console final : public RunListener {
public:
    Console(RunContext& context, ConsoleStyle style);

    void onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) override;
    void onTestStart(const PlannedRun& run) override;
    void onProgress(const Progress& progress) override;
    void onTestEnd(const Outcome& outcome) override;
    void onTestBroken(const PlannedRun& run, const std::string& reason) override;
    void onStopRequest() override;
    void onRunEnd(const RunRecord& record) override;

    /// Writes for which tests there is no device, and why; to the context's errors.
    void writeWithoutDevice(const RunRecord& record);
    /// Notes the longest time in seconds that the current test still takes, for onStopRequest();
    /// none when it is unknown or no test runs. Any thread.
    void expectEndWithin(std::optional<double> seconds);
    /// What the program writes when a second Ctrl+C ends it.
    LastWords lastWords() const;

private:
    void writeHead(const PlannedRun& run);
    void writeEvent(const RaisedEvent& event);
    void writeVerdict(const Outcome& outcome);
    void endLiveLine();
    std::string stoppingText();

    RunContext& m_context;
    mrl::OutputStream& m_output;
    ConsoleStyle m_style;
    LiveLine m_liveLine;
    std::mutex m_endMutex;
    std::optional<mrl::Clock::Duration> m_latestEnd; ///< of the current test
    std::optional<Ticker> m_ticker;                  ///< ends before the line does
};

} // namespace tesk5
