// The interface of what follows a run: the console, the live line, the stream of events.
#pragma once

#include "run/Runner.h"

namespace tesk5 {

/// Receives the steps of a run, on the thread of the run. The operations here do nothing.
class RunListener : public TestObserver {
public:
    /// Before anything runs; `record` has its start time and the tests without a device.
    /// \param plan the runs to come
    virtual void onRunStart(const RunRecord& /*record*/, const std::vector<PlannedRun>& /*plan*/) {}
    virtual void onTestStart(const PlannedRun& /*run*/) {}
    virtual void onTestEnd(const Outcome& /*outcome*/) {}
    /// An exception has left the test function and ends the run. `reason` is its text, or empty.
    virtual void onTestBroken(const PlannedRun& /*run*/, const std::string& /*reason*/) {}
    /// The first Ctrl+C has arrived. Any thread.
    virtual void onStopRequest() {}
    /// The run has ended and every report is written.
    virtual void onRunEnd(const RunRecord& /*record*/) {}
};

} // namespace tesk5
