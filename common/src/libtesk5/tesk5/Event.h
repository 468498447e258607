// What a test reports to its host besides its result.
#pragma once

#include <tesk5/Value.h>

#include <utility>
#include <vector>

namespace tesk5 {

enum class Severity { warning, error };

/// "warning" or "error", as reports write it.
const char* severityName(Severity severity);

/// A kind of occurrence, with named variables. Made with DiagModule::createEvent, owned by the
/// framework, alive until the process ends. Set its variables, then raise it with
/// DiagModule::warning or DiagModule::error. Not synchronised: events belong to the test's thread.
class Event {
public:
    using Variables = std::vector<std::pair<TeskString, Value>>;

    explicit Event(TeskString key);
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    const TeskString& key() const { return m_key; }

    /// Sets a variable; one that is set already keeps its place. Variables stay on the event until
    /// they are overwritten, also from one run to the next.
    /// \return this event
    Event* setVariable(const TeskString& name, Value value);
    /// In the order in which they were first set.
    const Variables& variables() const { return m_variables; }

private:
    TeskString m_key;
    Variables m_variables;
};

} // namespace tesk5
