// Where raised events go.
#pragma once

#include <tesk5/Event.h>

#include <mrl/Clock.h>

#include <string>
#include <vector>

namespace tesk5 {

enum class Severity { warning, error };

/// "warning" or "error", as reports write it.
const char* severityName(Severity severity);

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

/// Collects the events raised while it lives; an outer recorder gets none meanwhile. The framework
/// has one around each test function. Events raised outside any recorder are dropped.
class EventRecorder {
public:
    EventRecorder();
    EventRecorder(const EventRecorder&) = delete;
    EventRecorder& operator=(const EventRecorder&) = delete;
    ~EventRecorder();

    const std::vector<RaisedEvent>& events() const { return m_events; }

    /// Gives `event` to the innermost recorder.
    static void record(RaisedEvent event);

private:
    EventRecorder* m_outer;
    std::vector<RaisedEvent> m_events;
};

} // namespace tesk5
