// The run as lines of JSON while it happens; docs/hosts.md is their description for people.
#pragma once

#include "run/RunListener.h"

#include <mrl/Json.h>
#include <mrl/OutputStream.h>

#include <mutex>

namespace tesk5 {

/// Writes one line of JSON for each thing that happens, in one piece and flushed at once. The lines
/// are pure ASCII: whatever a name holds, it stands there in JSON's notation.
/// Failure: none is reported. When nobody reads any more, the lines are lost and the run goes on.
/// Threads: those of RunListener; lines keep the order of their sequence numbers.
class EventStream final : public RunListener {
public:
    explicit EventStream(mrl::OutputStream& stream) : m_stream(stream) {}

    void onRunStart(const RunRecord& record, std::size_t planned) override;
    void onTestStart(const PlannedRun& run) override;
    void onEvent(const RaisedEvent& event) override;
    void onMeasurement(const Measurement& measurement) override;
    void onSurvey(const Survey& survey) override;
    void onProgress(const Progress& progress) override;
    void onTestEnd(const Outcome& outcome) override;
    void onTestBroken(const PlannedRun& run, const std::string& reason) override;
    void onStopRequest() override;
    void onRunEnd(const RunRecord& record) override;

private:
    void write(const char* type, const mrl::Json& members);
    void writeOfRun(const char* type, const mrl::Json& members);

    mrl::OutputStream& m_stream;
    std::mutex m_mutex; ///< guards the stream and the sequence number
    mrl::Uint32 m_sequence = 0;
    std::size_t m_run = 0; ///< which of the planned runs is on, from 1; of the run's thread
};

} // namespace tesk5
