// Calls the test functions of a plan, one after another.
#pragma once

#include "run/LogKeeper.h"
#include "run/Plan.h"

#include <tesk5/Finding.h>
#include <tesk5/RunContext.h>
#include <tesk5/RunIdentity.h>
#include <tesk5/TestRecorder.h>

#include <mrl/Clock.h>

#include <exception>

namespace tesk5 {

class RunListener;

/// A parameter of a run.
struct ParameterInForce {
    TeskString name;
    Value value;
    bool isSet = true; ///< false when `value` only stands for a missing one

    /// Whether there is no number: reports then have none. An unsigned number counts as 0 instead.
    bool lacksNumber() const { return value.isNumber() && !isSet; }
};

/// How one run of a test on a device went.
struct Outcome {
    const Test* test;
    const DiagDevice* device;
    TestResult result;
    bool started; ///< false for a run that a stop request prevented
    mrl::Clock::UtcTime time;
    double seconds;
    std::vector<ParameterInForce> parameters;
    std::vector<RaisedEvent> events;
    std::vector<Measurement> measurements;
    std::vector<Survey> surveys;
    std::vector<Series> series = {};
    Findings advice; ///< why the verdict may be missing
    /// The text of the exception behind an INTERNALERROR or EXITEDABNORMALLY; empty if it has none.
    std::string failure;
    bool adviceRequested = false; ///< by the test
};

/// A chosen test for which no device was found.
struct TestWithoutDevice {
    const Test* test;
    std::vector<std::string> reasons; ///< a line for each device
    Findings advice;
};

/// A whole run.
struct RunRecord {
    ModuleVersion version;
    RunIdentity identity;
    mrl::Clock::UtcTime started;
    mrl::Clock::UtcTime ended;
    std::vector<Outcome> outcomes;
    std::vector<TestWithoutDevice> withoutDevice;
    std::size_t leftOut = 0;   ///< runs that requestAbort() or an exception prevented
    std::exception_ptr leftBy; ///< the exception that left a test and ended the run; usually null
    int exitValue = 0;
    KeptLog log;          ///< empty unless a report shows it
    bool fullLog = false; ///< whether a report shows every line of it
};

/// Carries an exception, other than a TeskException, that left a test function to the caller of the
/// run. A type of its own keeps it apart from failures of the framework.
struct LeftByException {
    std::exception_ptr cause;
};

/// Every parameter of `test` with the value in force.
std::vector<ParameterInForce> parametersInForce(const Test& test);

/// Runs `runs` in order, and fills in the outcomes of `record`, what was left out, and what ended
/// the run. A TeskException makes the result INTERNALERROR. Any other exception makes it
/// EXITEDABNORMALLY and ends the run. requestAbort() ends the run after the function in which it
/// was called. After a stop request no further function starts; the remaining runs count as
/// USERABORTED.
void runAll(const std::vector<PlannedRun>& runs, RunListener& listener, RunRecord& record,
            RunContext& context);

/// The worst result of a run, by severity; a test without a device counts as CANNOTRUN, a run
/// without anything as PASS.
TestResult worstResult(const RunRecord& run);

} // namespace tesk5
