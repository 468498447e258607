// What a test reports while it runs: events, measurements, surveys, series and progress.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/Measurement.h>
#include <tesk5/Series.h>

#include <mrl/Clock.h>
#include <mrl/Stopwatch.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

class RunContext;

/// An event as it was when it was raised.
struct RaisedEvent {
    TeskString key;
    Severity severity;
    std::string text; ///< the event's text in the language in force, its variables filled in
    Event::Variables variables;
    std::string file; ///< path of the source file inside the repository, as it was given
    int line;
    mrl::Clock::UtcTime time;
    /// How often a test raised it, if it is part of an outcome; `time` is then the first.
    mrl::Uint32 count = 1;
};

/// What a test is doing now.
struct Progress {
    TeskString key;   ///< of the text that says it
    std::string text; ///< the same in the language in force
    /// The longest that the test can still take; nothing when a person ends it.
    std::optional<double> longestSeconds;
};

/// Receives what a test reports while it runs, on the test's thread. The operations here do
/// nothing.
class TestObserver {
public:
    TestObserver() = default;
    TestObserver(const TestObserver&) = delete;
    TestObserver& operator=(const TestObserver&) = delete;
    virtual ~TestObserver() = default;

    virtual void onEvent(const RaisedEvent& /*event*/) {}
    virtual void onMeasurement(const Measurement& /*measurement*/) {}
    virtual void onSurvey(const Survey& /*survey*/) {}
    /// The head of a series that begins, or a new head of one that is known.
    virtual void onSeries(const Series::Head& /*head*/) {}
    /// A point of a series whose head is known; points that are not kept too.
    virtual void onPoint(const TeskString& /*series*/, const SeriesPoint& /*point*/) {}
    virtual void onProgress(const Progress& /*progress*/) {}
};

/// Collects what a test reports in the current context while the recorder lives; an outer recorder
/// receives nothing meanwhile. The framework has one around each test function. What is reported
/// without a recorder is dropped.
/// Threads: that of the test.
class TestRecorder {
public:
    /// \param observer receives the same at once; may be null
    explicit TestRecorder(TestObserver* observer = nullptr);
    TestRecorder(const TestRecorder&) = delete;
    TestRecorder& operator=(const TestRecorder&) = delete;
    ~TestRecorder();

    const std::vector<RaisedEvent>& events() const { return m_events; }
    const std::vector<Measurement>& measurements() const { return m_measurements; }
    const std::vector<Survey>& surveys() const { return m_surveys; }
    const std::vector<Series>& series() const { return m_series; }

    /// Hands it to the innermost recorder. Progress goes to its observer and is not kept.
    static void record(RaisedEvent event);
    static void record(Measurement measurement);
    static void record(Survey survey);
    static void record(const Progress& progress);
    /// Begins a series, or replaces the head of the series of that name.
    static void record(Series::Head head);
    /// Adds a point to the series of that name, which begins with it if it is unknown.
    /// \param seconds since the recorder was made; nothing: now
    static void record(const TeskString& series, const Number& value, Event::Variables attributes,
                       std::optional<double> seconds);

    /// Notes in the innermost recorder that DiagModule::requestAdvice() was called.
    static void requestAdvice();
    bool adviceRequested() const { return m_adviceRequested; }

private:
    template <typename What>
    static void keep(std::vector<What> TestRecorder::*list, What what,
                     void (TestObserver::*notify)(const What&));
    Series* find(const TeskString& series);

    RunContext& m_context;
    TestRecorder* m_outer;
    TestObserver* m_observer;
    std::vector<RaisedEvent> m_events;
    std::vector<Measurement> m_measurements;
    std::vector<Survey> m_surveys;
    std::vector<Series> m_series;
    mrl::Stopwatch m_stopwatch;
    bool m_adviceRequested = false;
};

} // namespace tesk5
