// The record of calls: kept for tests, and written out as it grows.
#pragma once

#include <radiosim/Engine.h>

#include <mrl/Json.h>

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace radiosim {

using mrl::Json;

/// Compact, in ASCII where the text allows; ill-formed UTF-8 is mended.
std::string compact(const Json& value);

/// Any thread.
class CallLog {
public:
    /// Keeps the call, writes its line, and runs the hook unless the call comes from the hook.
    void add(const Call& call);
    std::vector<Call> calls() const;
    void clear();
    void hook(std::function<void(const Call&)> hook);
    void lines(std::function<void(std::string_view)> line);

private:
    mutable std::mutex m_mutex;
    std::vector<Call> m_calls;
    std::function<void(const Call&)> m_hook;
    std::mutex m_lineMutex;
    std::function<void(std::string_view)> m_line;
};

} // namespace radiosim
