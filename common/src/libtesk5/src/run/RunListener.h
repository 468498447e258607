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
    virtual void runStarts(const RunRecord& record, std::size_t planned);
    virtual void starts(const PlannedRun& run);
    virtual void ended(const Outcome& outcome);
    /// An exception leaves the test function, and with it the whole run. `reason` is what it says
    /// of itself, or empty.
    virtual void broken(const PlannedRun& run, const std::string& reason);
    /// The first Ctrl+C has come. Any thread.
    virtual void stopping();
    /// All is over and every report is written.
    virtual void runEnded(const RunRecord& record);
};

/// Tells several listeners, each in its turn. It does not own them.
class RunListeners final : public RunListener {
public:
    void add(RunListener& listener) { m_listeners.push_back(&listener); }

    void runStarts(const RunRecord& record, std::size_t planned) override;
    void starts(const PlannedRun& run) override;
    void raised(const RaisedEvent& event) override;
    void measured(const Measurement& measurement) override;
    void surveyed(const Survey& survey) override;
    void progresses(const Progress& progress) override;
    void ended(const Outcome& outcome) override;
    void broken(const PlannedRun& run, const std::string& reason) override;
    void stopping() override;
    void runEnded(const RunRecord& record) override;

private:
    std::vector<RunListener*> m_listeners;
};

} // namespace tesk5
