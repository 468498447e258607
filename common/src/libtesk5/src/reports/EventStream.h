// The run as lines of JSON while it happens; docs/hosts.md describes them.
#pragma once

#include "run/RunListener.h"

#include <mrl/Json.h>
#include <mrl/OutputStream.h>

#include <mutex>

namespace tesk5 {

/// Writes one line of JSON for each event of the run, in one piece and flushed at once. The lines
/// are ASCII: every other character is escaped.
/// Failure: none is reported. Without a reader the lines are lost and the run goes on.
/// Threads: those of RunListener; lines keep the order of their sequence numbers.
class EventStream : public RunListener {
public:
    explicit EventStream(mrl::OutputStream& stream) : m_stream(stream) {}

    void onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) override;
    void onTestStart(const PlannedRun& run) override;
    void onEvent(const RaisedEvent& event) override;
    void onMeasurement(const Measurement& measurement) override;
    void onSurvey(const Survey& survey) override;
    void onSeries(const Series::Head& head) override;
    void onPoint(const TeskString& series, const SeriesPoint& point) override;
    void onProgress(const Progress& progress) override;
    void onTestEnd(const Outcome& outcome) override;
    void onTestBroken(const PlannedRun& run, const std::string& reason) override;
    void onStopRequest() override;
    void onRunEnd(const RunRecord& record) override;

private:
    void write(const char* type, const mrl::Json& members);
    void writeOfRun(const char* type, const mrl::Json& members);

    mrl::OutputStream& m_stream;
    std::string m_identifier; ///< of the run; set before any other thread writes
    std::mutex m_mutex;       ///< guards the stream and the sequence number
    mrl::Uint32 m_sequence = 0;
    std::size_t m_run = 0; ///< number of the planned run, from 1; belongs to the run's thread
};

} // namespace tesk5
