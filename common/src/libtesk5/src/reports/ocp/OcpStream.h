// A run as messages of the Open Compute Project's test and validation output, version 2.0;
// docs/formats.md says what becomes what.
#pragma once

#include "run/RunListener.h"

#include "reports/ocp/Ocp.h"

#include <mrl/OutputStream.h>

#include <map>
#include <string>
#include <vector>

namespace tesk5 {

/// Writes one line for each message, at once, in ASCII. A step is a run of a test on a device, or a
/// test without a device.
/// Failure: that of the receiver
/// Threads: that of the run
class OcpStream final : public RunListener {
public:
    /// \param commandLine as it was typed
    OcpStream(mrl::OutputStream::Receiver& lines, std::string commandLine)
        : m_lines(lines), m_commandLine(std::move(commandLine)) {}

    void onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) override;
    void onTestStart(const PlannedRun& run) override;
    void onEvent(const RaisedEvent& event) override;
    void onMeasurement(const Measurement& measurement) override;
    void onSurvey(const Survey& survey) override;
    void onSeries(const Series::Head& head) override;
    void onPoint(const TeskString& series, const SeriesPoint& point) override;
    void onProgress(const Progress& progress) override;
    void onTestEnd(const Outcome& outcome) override;

    /// Ends the output. To be called once for every run that has started, however it ended, before
    /// the reports are written.
    void end(const RunRecord& record);

private:
    struct RunningSeries {
        std::string id;
        std::uint64_t points = 0;
    };

    template <typename Artifact>
    void write(Artifact artifact);
    template <typename Artifact>
    void writeOfStep(Artifact artifact);
    void beginStep(const Test& test);
    void endStep(const Outcome& outcome);
    std::string hardwareIdOf(const DiagDevice& device) const;

    mrl::OutputStream::Receiver& m_lines;
    std::string m_commandLine;
    std::uint64_t m_sequence = 0;
    std::size_t m_steps = 0;
    std::size_t m_allSeries = 0;
    bool m_stepRuns = false;
    std::vector<const DiagDevice*> m_devices; ///< hardware info i + 1; number 0 is the PC
    std::string m_hardwareId;                 ///< of the step that runs
    mrl::Clock::UtcTime m_stepStart;
    std::map<TeskString, RunningSeries> m_series; ///< of the step that runs
};

} // namespace tesk5
