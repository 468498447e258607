#include "run/RunListener.h"

namespace tesk5 {

void RunListener::runStarts(const RunRecord& /*record*/, std::size_t /*planned*/) {}
void RunListener::starts(const PlannedRun& /*run*/) {}
void RunListener::ended(const Outcome& /*outcome*/) {}
void RunListener::broken(const PlannedRun& /*run*/, const std::string& /*reason*/) {}
void RunListener::stopping() {}
void RunListener::runEnded(const RunRecord& /*record*/) {}

void RunListeners::runStarts(const RunRecord& record, std::size_t planned) {
    for (RunListener* listener : m_listeners) {
        listener->runStarts(record, planned);
    }
}

void RunListeners::starts(const PlannedRun& run) {
    for (RunListener* listener : m_listeners) {
        listener->starts(run);
    }
}

void RunListeners::raised(const RaisedEvent& event) {
    for (RunListener* listener : m_listeners) {
        listener->raised(event);
    }
}

void RunListeners::measured(const Measurement& measurement) {
    for (RunListener* listener : m_listeners) {
        listener->measured(measurement);
    }
}

void RunListeners::surveyed(const Survey& survey) {
    for (RunListener* listener : m_listeners) {
        listener->surveyed(survey);
    }
}

void RunListeners::progresses(const Progress& progress) {
    for (RunListener* listener : m_listeners) {
        listener->progresses(progress);
    }
}

void RunListeners::ended(const Outcome& outcome) {
    for (RunListener* listener : m_listeners) {
        listener->ended(outcome);
    }
}

void RunListeners::broken(const PlannedRun& run, const std::string& reason) {
    for (RunListener* listener : m_listeners) {
        listener->broken(run, reason);
    }
}

void RunListeners::stopping() {
    for (RunListener* listener : m_listeners) {
        listener->stopping();
    }
}

void RunListeners::runEnded(const RunRecord& record) {
    for (RunListener* listener : m_listeners) {
        listener->runEnded(record);
    }
}

} // namespace tesk5
