#include <tesk5/TestRecorder.h>

namespace tesk5 {

namespace {
TestRecorder* g_innermost = nullptr;
} // namespace

TestObserver::~TestObserver() = default;
void TestObserver::raised(const RaisedEvent& /*event*/) {}
void TestObserver::measured(const Measurement& /*measurement*/) {}
void TestObserver::surveyed(const Survey& /*survey*/) {}
void TestObserver::progresses(const Progress& /*progress*/) {}

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
    keep(&TestRecorder::m_events, std::move(event), &TestObserver::raised);
}

void TestRecorder::record(Measurement measurement) {
    keep(&TestRecorder::m_measurements, std::move(measurement), &TestObserver::measured);
}

void TestRecorder::record(Survey survey) {
    keep(&TestRecorder::m_surveys, std::move(survey), &TestObserver::surveyed);
}

void TestRecorder::record(const Progress& progress) {
    if (g_innermost != nullptr && g_innermost->m_observer != nullptr) {
        g_innermost->m_observer->progresses(progress);
    }
}

} // namespace tesk5
