#include "run/RunListener.h"

namespace tesk5 {

void RunListener::onRunStart(const RunRecord& /*record*/, std::size_t /*planned*/) {}
void RunListener::onTestStart(const PlannedRun& /*run*/) {}
void RunListener::onTestEnd(const Outcome& /*outcome*/) {}
void RunListener::onTestBroken(const PlannedRun& /*run*/, const std::string& /*reason*/) {}
void RunListener::onStopRequest() {}
void RunListener::onRunEnd(const RunRecord& /*record*/) {}

void RunListeners::onRunStart(const RunRecord& record, std::size_t planned) {
    for (RunListener* listener : m_listeners) {
        listener->onRunStart(record, planned);
    }
}

void RunListeners::onTestStart(const PlannedRun& run) {
    for (RunListener* listener : m_listeners) {
        listener->onTestStart(run);
    }
}

void RunListeners::onEvent(const RaisedEvent& event) {
    for (RunListener* listener : m_listeners) {
        listener->onEvent(event);
    }
}

void RunListeners::onMeasurement(const Measurement& measurement) {
    for (RunListener* listener : m_listeners) {
        listener->onMeasurement(measurement);
    }
}

void RunListeners::onSurvey(const Survey& survey) {
    for (RunListener* listener : m_listeners) {
        listener->onSurvey(survey);
    }
}

void RunListeners::onProgress(const Progress& progress) {
    for (RunListener* listener : m_listeners) {
        listener->onProgress(progress);
    }
}

void RunListeners::onTestEnd(const Outcome& outcome) {
    for (RunListener* listener : m_listeners) {
        listener->onTestEnd(outcome);
    }
}

void RunListeners::onTestBroken(const PlannedRun& run, const std::string& reason) {
    for (RunListener* listener : m_listeners) {
        listener->onTestBroken(run, reason);
    }
}

void RunListeners::onStopRequest() {
    for (RunListener* listener : m_listeners) {
        listener->onStopRequest();
    }
}

void RunListeners::onRunEnd(const RunRecord& record) {
    for (RunListener* listener : m_listeners) {
        listener->onRunEnd(record);
    }
}

} // namespace tesk5
