#include <tesk5/TestRecorder.h>

#include <tesk5/RunContext.h>

#include <algorithm>
#include <cmath>

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

Series* TestRecorder::find(const TeskString& series) {
    const auto known = std::find_if(m_series.begin(), m_series.end(), [&series](const Series& one) {
        return one.head.name == series;
    });
    return known == m_series.end() ? nullptr : &*known;
}

void TestRecorder::record(Series::Head head) {
    TestRecorder* const recorder = RunContext::current().recorder;
    if (recorder == nullptr) {
        return;
    }
    Series* const known = recorder->find(head.name);
    Series& series = known != nullptr ? *known : recorder->m_series.emplace_back();
    series.head = std::move(head);
    if (recorder->m_observer != nullptr) {
        recorder->m_observer->onSeries(series.head);
    }
}

void TestRecorder::record(const TeskString& series, const Number& value,
                          Event::Variables attributes, std::optional<double> seconds) {
    TestRecorder* const recorder = RunContext::current().recorder;
    if (recorder == nullptr) {
        return;
    }
    if (recorder->find(series) == nullptr) {
        record(Series::Head{.name = series, .unit = {}, .limits = {}, .median = {}});
    }
    const double now = recorder->m_stopwatch.getElapsed();
    SeriesPoint point{.seconds = seconds && std::isfinite(*seconds) ? std::max(*seconds, 0.0) : now,
                      .value = value,
                      .attributes = std::move(attributes)};
    if (recorder->m_observer != nullptr) {
        recorder->m_observer->onPoint(series, point);
    }
    Series& target = *recorder->find(series);
    if (target.points.size() < Series::MOST_POINTS) {
        target.points.push_back(std::move(point));
    } else {
        ++target.leftOut;
    }
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
