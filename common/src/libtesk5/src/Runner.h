// Calls the test functions of a plan, one after another.
#pragma once

#include "Plan.h"

#include <tesk5/EventRecorder.h>

#include <mrl/Clock.h>

#include <exception>

namespace tesk5 {

/// How one run of a test on a device went.
struct Outcome {
    const Test* test;
    const DiagDevice* device;
    TestResult result;
    bool started; ///< false for a run that a stop request forestalled
    mrl::Clock::UtcTime time;
    double seconds;
    std::vector<std::pair<TeskString, Value>> parameters;
    std::vector<RaisedEvent> events;
    std::string failure; ///< the text of the exception behind an INTERNALERROR
};

/// A whole run.
struct RunRecord {
    mrl::Clock::UtcTime started;
    mrl::Clock::UtcTime ended;
    std::vector<Outcome> outcomes;
    std::vector<const Test*> withoutDevice; ///< chosen, but no device suits them
    std::size_t leftOut = 0;                ///< runs that requestAbort() forestalled
    int exitValue = 0;
};

/// Thrown for an exception, other than a TeskException, that left a test function: it is to go on
/// to whoever started the run, and no failure of the framework is to be taken for it.
struct LeftByException {
    std::exception_ptr cause;
};

/// Is told how the run goes, on the thread of the run.
class RunListener {
public:
    RunListener() = default;
    RunListener(const RunListener&) = delete;
    RunListener& operator=(const RunListener&) = delete;
    virtual ~RunListener();

    virtual void starts(const PlannedRun& run) = 0;
    virtual void ended(const Outcome& outcome) = 0;
    /// An exception leaves the test function, and with it the whole run. `reason` is what it says
    /// of itself, or empty.
    virtual void broken(const PlannedRun& run, const std::string& reason) = 0;
};

/// Runs `runs` in order. A TeskException makes the result INTERNALERROR. requestAbort() ends the
/// run after the function in which it was called. After a stop request no further function starts;
/// what is left counts as USERABORTED.
/// Failure: throws LeftByException
std::vector<Outcome> runAll(const std::vector<PlannedRun>& runs, RunListener& listener,
                            std::size_t& leftOut);

/// The value that stands for a run: that of the worst result, 0 when all are good.
int exitValueOf(const std::vector<TestResult>& results);

} // namespace tesk5
