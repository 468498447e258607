#include <tesk5/EventRecorder.h>

namespace tesk5 {

namespace {
EventRecorder* g_innermost = nullptr;
} // namespace

const char* severityName(Severity severity) {
    return severity == Severity::error ? "error" : "warning";
}

EventRecorder::EventRecorder() : m_outer(std::exchange(g_innermost, this)) {}

EventRecorder::~EventRecorder() {
    g_innermost = m_outer;
}

void EventRecorder::record(RaisedEvent event) {
    if (g_innermost != nullptr) {
        g_innermost->m_events.push_back(std::move(event));
    }
}

} // namespace tesk5
