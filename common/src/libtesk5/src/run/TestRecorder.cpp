#include <tesk5/TestRecorder.h>

#include <tesk5/RunContext.h>

namespace tesk5 {

template <typename What>
void TestRecorder::keep(std::vector<What> TestRecorder::*list, What what,
                        void (TestObserver::*notify)(const What&)) {
    TestRecorder* const recorder = RunContext::current().recorder;
    if (recorder == nullptr) {
        return;
    }
    const What& kept = (recorder->*list).emplace_back(std::move(what));
    if (recorder->m_observer != nullptr) {
        (recorder->m_observer->*notify)(kept);
    }
}

TestRecorder::TestRecorder(TestObserver* observer)
    : m_context(RunContext::current()), m_outer(std::exchange(m_context.recorder, this)),
      m_observer(observer) {}

TestRecorder::~TestRecorder() {
    m_context.recorder = m_outer;
}

void TestRecorder::record(RaisedEvent event) {
    keep(&TestRecorder::m_events, std::move(event), &TestObserver::onEvent);
}

void TestRecorder::record(Measurement measurement) {
    keep(&TestRecorder::m_measurements, std::move(measurement), &TestObserver::onMeasurement);
}

void TestRecorder::record(Survey survey) {
    keep(&TestRecorder::m_surveys, std::move(survey), &TestObserver::onSurvey);
}

void TestRecorder::requestAdvice() {
    if (TestRecorder* const recorder = RunContext::current().recorder) {
        recorder->m_adviceRequested = true;
    }
}

void TestRecorder::record(const Progress& progress) {
    const TestRecorder* const recorder = RunContext::current().recorder;
    if (recorder != nullptr && recorder->m_observer != nullptr) {
        recorder->m_observer->onProgress(progress);
    }
}

} // namespace tesk5
