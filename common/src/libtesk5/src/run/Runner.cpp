#include "run/Runner.h"

#include <tesk5/RunContext.h>
#include <tesk5/TeskException.h>

#include "run/Doctor.h"
#include "run/RunListener.h"

#include <mrl/Exception.h>
#include <mrl/LoggerStream.h>
#include <mrl/Stopwatch.h>

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
                   {}};
}

Outcome execute(const PlannedRun& run, TestObserver& observer) {
    Outcome outcome = unstarted(run, TestResult::INTERNALERROR(), true);
    const TestRecorder recorder(&observer);
    const mrl::Stopwatch stopwatch;
    try {
        outcome.result = run.test->function()(*run.device);
    } catch (const TeskException& exception) {
        outcome.failure = exception.toString().getUTF8String().bytes();
        log(TROUBLE, described(run) + ": " + outcome.failure);
    }
    outcome.seconds = stopwatch.getElapsed();
    outcome.events = recorder.events();
    outcome.measurements = recorder.measurements();
    outcome.surveys = recorder.surveys();
    outcome.adviceRequested = recorder.adviceRequested();
    return outcome;
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

Outcome executeAndReport(const PlannedRun& run, RunListener& listener) {
    log(PROGRESS, described(run) + " starts");
    listener.onTestStart(run);
    try {
        Outcome outcome = execute(run, listener);
        log(PROGRESS, described(run) + " ends with " + outcome.result.name());
        return outcome;
    } catch (...) {
        const std::string reason = reasonInFlight();
        log(TROUBLE, described(run) + " is left by an exception " + reason);
        listener.onTestBroken(run, reason);
        throw LeftByException{std::current_exception()};
    }
}

} // namespace

std::vector<std::pair<TeskString, Value>> parametersInForce(const Test& test) {
    std::vector<std::pair<TeskString, Value>> values;
    for (const Parameter* parameter : test.parameters()) {
        values.emplace_back(parameter->name(), parameter->value());
    }
    return values;
}

std::vector<Outcome> runAll(const std::vector<PlannedRun>& runs, RunListener& listener,
                            std::size_t& leftOut, RunContext& context) {
    context.abortRequested = false;
    std::vector<Outcome> outcomes;
    for (const PlannedRun& run : runs) {
        if (context.stopRequest.raised()) {
            outcomes.push_back(unstarted(run, TestResult::USERABORTED(), false));
        } else if (context.abortRequested) {
            leftOut = static_cast<std::size_t>(&runs.back() - &run) + 1;
            break;
        } else {
            outcomes.push_back(executeAndReport(run, listener));
            outcomes.back().advice = adviceFor(outcomes.back());
        }
        listener.onTestEnd(outcomes.back());
    }
    return outcomes;
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
