// Several listeners of one run.
#pragma once

#include "run/RunListener.h"

#include <vector>

namespace tesk5 {

/// Hands each step of a run to every listener, in their order.
class RunListeners final : public RunListener {
public:
    explicit RunListeners(RunListener& first) : m_listeners{&first} {}

    void add(RunListener& listener) { m_listeners.push_back(&listener); }

    void onEvent(const RaisedEvent& event) override { tell(&RunListener::onEvent, event); }
    void onMeasurement(const Measurement& measurement) override {
        tell(&RunListener::onMeasurement, measurement);
    }
    void onSurvey(const Survey& survey) override { tell(&RunListener::onSurvey, survey); }
    void onSeries(const Series::Head& head) override { tell(&RunListener::onSeries, head); }
    void onPoint(const TeskString& series, const SeriesPoint& point) override {
        tell(&RunListener::onPoint, series, point);
    }
    void onProgress(const Progress& progress) override { tell(&RunListener::onProgress, progress); }
    void onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) override {
        tell(&RunListener::onRunStart, record, plan);
    }
    void onTestStart(const PlannedRun& run) override { tell(&RunListener::onTestStart, run); }
    void onTestEnd(const Outcome& outcome) override { tell(&RunListener::onTestEnd, outcome); }
    void onTestBroken(const PlannedRun& run, const std::string& reason) override {
        tell(&RunListener::onTestBroken, run, reason);
    }
    void onStopRequest() override { tell(&RunListener::onStopRequest); }
    void onRunEnd(const RunRecord& record) override { tell(&RunListener::onRunEnd, record); }

private:
    template <typename Operation, typename... Arguments>
    void tell(Operation operation, const Arguments&... arguments) {
        for (RunListener* listener : m_listeners) {
            (listener->*operation)(arguments...);
        }
    }

    std::vector<RunListener*> m_listeners;
};

} // namespace tesk5
