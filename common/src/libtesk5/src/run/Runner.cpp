#include "run/Runner.h"

#include <tesk5/RunContext.h>
#include <tesk5/TeskException.h>
#include <tesk5/Texts.h>

#include "run/Doctor.h"
#include "run/RunListener.h"

#include <mrl/Exception.h>
#include <mrl/LoggerStream.h>
#include <mrl/Stopwatch.h>

#include <algorithm>

namespace tesk5 {

namespace {

constexpr int PROGRESS = 1;
constexpr int TROUBLE = 4;

mrl::Logger& logger() {
    static mrl::Logger& instance = mrl::LogFactory::createLogger("tesk5.run");
    return instance;
}

void log(int priority, const std::string& text) {
    mrl::LoggerStream(logger().admitting(priority), priority) << text;
}

std::string described(const PlannedRun& run) {
    return run.test->name().utf8() + " on " + run.device->name().utf8();
}

Outcome unstarted(const PlannedRun& run, TestResult result, bool started) {
    return Outcome{run.test,
                   run.device,
                   result,
                   started,
                   mrl::Clock::current().utcNow(),
                   0,
                   parametersInForce(*run.test),
                   {},
                   {},
                   {},
                   {},
                   {},
                   {}};
}

bool repeats(const RaisedEvent& event, const RaisedEvent& earlier) {
    return event.key == earlier.key && event.severity == earlier.severity &&
           event.text == earlier.text && event.file == earlier.file && event.line == earlier.line &&
           event.variables == earlier.variables;
}

// Each event once, with the number of its repetitions.
std::vector<RaisedEvent> counted(const std::vector<RaisedEvent>& events) {
    std::vector<RaisedEvent> all;
    for (const RaisedEvent& event : events) {
        const auto same =
            std::find_if(all.begin(), all.end(),
                         [&event](const RaisedEvent& earlier) { return repeats(event, earlier); });
        if (same == all.end()) {
            all.push_back(event);
        } else {
            ++same->count;
        }
    }
    return all;
}

// The text of the exception that is being handled; empty for a type without one.
std::string reasonInFlight() {
    try {
        throw;
    } catch (const mrl::Exception& exception) {
        return exception.toString().getUTF8String().bytes();
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (const mrl::StructuredException& exception) {
        // The log has the broken condition.
        return "structured exception with code " + std::to_string(exception.code);
    } catch (...) {
        return {};
    }
}

Outcome execute(const PlannedRun& run, TestObserver& observer, std::exception_ptr& leftBy) {
    Outcome outcome = unstarted(run, TestResult::INTERNALERROR(), true);
    const TestRecorder recorder(&observer);
    const Test::OwnDefaults defaults(*run.test);
    const mrl::Stopwatch stopwatch;
    try {
        outcome.result = run.test->function()(*run.device);
    } catch (const TeskException& exception) {
        outcome.failure = exception.toString().getUTF8String().bytes();
        log(TROUBLE, described(run) + ": " + outcome.failure);
    } catch (...) {
        leftBy = std::current_exception();
        outcome.result = TestResult::EXITEDABNORMALLY();
        outcome.failure = reasonInFlight();
    }
    outcome.seconds = stopwatch.getElapsed();
    outcome.events = counted(recorder.events());
    outcome.measurements = recorder.measurements();
    outcome.surveys = recorder.surveys();
    outcome.series = recorder.series();
    outcome.adviceRequested = recorder.adviceRequested();
    return outcome;
}

Outcome executeAndReport(const PlannedRun& run, RunListener& listener, std::exception_ptr& leftBy) {
    log(PROGRESS, described(run) + " starts");
    listener.onTestStart(run);
    Outcome outcome = execute(run, listener, leftBy);
    if (leftBy) {
        log(TROUBLE, described(run) + " is left by an exception " + outcome.failure);
        listener.onTestBroken(run, outcome.failure);
    } else {
        log(PROGRESS, described(run) + " ends with " + outcome.result.name());
        outcome.advice = adviceFor(outcome);
        listener.onTestEnd(outcome);
    }
    return outcome;
}

} // namespace

std::vector<ParameterInForce> parametersInForce(const Test& test) {
    const Test::OwnDefaults defaults(test);
    std::vector<ParameterInForce> values;
    for (const Parameter* parameter : test.parameters()) {
        const std::optional<Number> number = parameter->number();
        values.push_back({parameter->name(),
                          number ? quantity(*number, parameter->range().unit) : parameter->value(),
                          parameter->isSet()});
    }
    return values;
}

void runAll(const std::vector<PlannedRun>& runs, RunListener& listener, RunRecord& record,
            RunContext& context) {
    auto run = runs.begin();
    for (; run != runs.end() && !record.leftBy; ++run) {
        if (context.stopRequest.raised()) {
            record.outcomes.push_back(unstarted(*run, TestResult::USERABORTED(), false));
            listener.onTestEnd(record.outcomes.back());
        } else if (context.abortRequested) {
            break;
        } else {
            record.outcomes.push_back(executeAndReport(*run, listener, record.leftBy));
        }
    }
    record.leftOut = static_cast<std::size_t>(runs.end() - run);
}

TestResult worstResult(const RunRecord& run) {
    TestResult worst = run.withoutDevice.empty() ? TestResult::PASS() : TestResult::CANNOTRUN();
    for (const Outcome& outcome : run.outcomes) {
        if (outcome.result.severity() > worst.severity()) {
            worst = outcome.result;
        }
    }
    return worst;
}

} // namespace tesk5
