// Everything that watches a run: the console, the live line, the stream of events.
#pragma once

#include "run/Runner.h"

#include <vector>

namespace tesk5 {

/// Is told how the run goes, on the thread of the run. Does nothing by itself.
class RunListener : public TestObserver {
public:
    /// Before anything runs; `record` has its start time and the tests without a device.
    /// \param planned number of runs to come
    virtual void onRunStart(const RunRecord& record, std::size_t planned);
    virtual void onTestStart(const PlannedRun& run);
    virtual void onTestEnd(const Outcome& outcome);
    /// An exception leaves the test function, and with it the whole run. `reason` is what it says
    /// of itself, or empty.
    virtual void onTestBroken(const PlannedRun& run, const std::string& reason);
    /// The first Ctrl+C has come. Any thread.
    virtual void onStopRequest();
    /// All is over and every report is written.
    virtual void onRunEnd(const RunRecord& record);
};

/// Tells several listeners, each in its turn. It does not own them.
class RunListeners final : public RunListener {
public:
    void add(RunListener& listener) { m_listeners.push_back(&listener); }

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
    std::vector<RunListener*> m_listeners;
};

} // namespace tesk5
