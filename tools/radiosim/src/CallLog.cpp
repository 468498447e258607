#include "CallLog.h"

#include <ostream>
#include <utility>

namespace radiosim {

std::string compact(const Json& value) {
    return value.dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string Call::text() const {
    return function + ' ' + arguments + " = " + std::to_string(result) + ' ' + output;
}

std::string Call::jsonLine() const {
    // The parts are JSON already.
    return "{\"at\":" + std::to_string(at.count()) + ",\"function\":\"" + function +
           "\",\"arguments\":" + arguments + ",\"result\":" + std::to_string(result) +
           ",\"output\":" + output + '}';
}

std::ostream& operator<<(std::ostream& stream, const Call& call) {
    return stream << call.text();
}

void CallLog::add(const Call& call) {
    thread_local bool inHook = false;
    std::function<void(const Call&)> hook;
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(call);
        hook = m_hook;
    }
    {
        const std::lock_guard lock(m_lineMutex);
        if (m_line) {
            m_line(call.jsonLine());
        }
    }
    if (hook && !inHook) {
        inHook = true;
        hook(call);
        inHook = false;
    }
}

std::vector<Call> CallLog::calls() const {
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

void CallLog::clear() {
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
}

void CallLog::hook(std::function<void(const Call&)> hook) {
    const std::lock_guard lock(m_mutex);
    m_hook = std::move(hook);
}

void CallLog::lines(std::function<void(std::string_view)> line) {
    const std::lock_guard lock(m_lineMutex);
    m_line = std::move(line);
}

} // namespace radiosim
