// Where everything goes that a test tells while it runs.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/Measurement.h>

#include <mrl/Clock.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// An event as it was when it was raised.
struct RaisedEvent {
    TeskString key;
    Severity severity;
    std::string text; ///< the event's text in the language in force, its variables filled in
    Event::Variables variables;
    std::string file; ///< path of the source file inside the repository, as it was given
    int line;
    mrl::Clock::UtcTime time;
};

/// What a test is doing now.
struct Progress {
    TeskString key;   ///< of the text that says it
    std::string text; ///< the same in the language in force
    /// The longest that the test can still take; nothing when a person decides that.
    std::optional<double> longestSeconds;
};

/// Is told what a test tells, as it happens, on the test's thread. Does nothing by itself.
class TestObserver {
public:
    TestObserver() = default;
    TestObserver(const TestObserver&) = delete;
    TestObserver& operator=(const TestObserver&) = delete;
    virtual ~TestObserver();

    virtual void onEvent(const RaisedEvent& event);
    virtual void onMeasurement(const Measurement& measurement);
    virtual void onSurvey(const Survey& survey);
    virtual void onProgress(const Progress& progress);
};

/// Collects what a test tells while the recorder lives; an outer recorder gets nothing meanwhile.
/// The framework has one around each test function. What is told outside any recorder is dropped.
/// Threads: that of the test.
class TestRecorder {
public:
    /// \param observer is told the same as it comes; null for nobody
    explicit TestRecorder(TestObserver* observer = nullptr);
    TestRecorder(const TestRecorder&) = delete;
    TestRecorder& operator=(const TestRecorder&) = delete;
    ~TestRecorder();

    const std::vector<RaisedEvent>& events() const { return m_events; }
    const std::vector<Measurement>& measurements() const { return m_measurements; }
    const std::vector<Survey>& surveys() const { return m_surveys; }

    /// Gives what happened to the innermost recorder. Progress is passed on and not kept.
    static void record(RaisedEvent event);
    static void record(Measurement measurement);
    static void record(Survey survey);
    static void record(const Progress& progress);

private:
    template <typename What>
    static void keep(std::vector<What> TestRecorder::*list, What what,
                     void (TestObserver::*tell)(const What&));

    TestRecorder* m_outer;
    TestObserver* m_observer;
    std::vector<RaisedEvent> m_events;
    std::vector<Measurement> m_measurements;
    std::vector<Survey> m_surveys;
};

} // namespace tesk5
