#include <tesk5/TestRecorder.h>

namespace tesk5 {

namespace {
TestRecorder* g_innermost = nullptr;
} // namespace

TestObserver::~TestObserver() = default;
void TestObserver::onEvent(const RaisedEvent& /*event*/) {}
void TestObserver::onMeasurement(const Measurement& /*measurement*/) {}
void TestObserver::onSurvey(const Survey& /*survey*/) {}
void TestObserver::onProgress(const Progress& /*progress*/) {}

template <typename What>
void TestRecorder::keep(std::vector<What> TestRecorder::*list, What what,
                        void (TestObserver::*tell)(const What&)) {
    if (g_innermost == nullptr) {
        return;
    }
    const What& kept = (g_innermost->*list).emplace_back(std::move(what));
    if (g_innermost->m_observer != nullptr) {
        (g_innermost->m_observer->*tell)(kept);
    }
}

TestRecorder::TestRecorder(TestObserver* observer)
    : m_outer(std::exchange(g_innermost, this)), m_observer(observer) {}

TestRecorder::~TestRecorder() {
    g_innermost = m_outer;
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

void TestRecorder::record(const Progress& progress) {
    if (g_innermost != nullptr && g_innermost->m_observer != nullptr) {
        g_innermost->m_observer->onProgress(progress);
    }
}

} // namespace tesk5
