#include <tesk5/Event.h>

#include <algorithm>

namespace tesk5 {

const char* severityName(Severity severity) {
    return severity == Severity::error ? "error" : "warning";
}

Event::Event(TeskString key) : m_key(std::move(key)) {}

Event* Event::setVariable(const TeskString& name, Value value) {
    const auto known =
        std::find_if(m_variables.begin(), m_variables.end(),
                     [&name](const auto& variable) { return variable.first == name; });
    if (known != m_variables.end()) {
        known->second = std::move(value);
    } else {
        m_variables.emplace_back(name, std::move(value));
    }
    return this;
}

} // namespace tesk5
