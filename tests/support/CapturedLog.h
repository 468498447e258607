// Collects log lines instead of writing them.
#pragma once

#include <mrl/Logger.h>

#include <memory>
#include <string>
#include <vector>

namespace test {

/// While it lives, lines of priority `threshold` and above are kept here; afterwards logging is
/// off.
class CapturedLog {
public:
    explicit CapturedLog(int threshold = 1);
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;
    ~CapturedLog();

    struct Line {
        int priority;
        std::string logger;
        std::string text;
    };

    std::vector<Line> lines() const;
    /// The texts alone, of `logger` or, without one, of every logger.
    std::vector<std::string> texts(const std::string& logger = {}) const;
    /// Discards the lines so far.
    void clear();

private:
    class Sink;
    std::shared_ptr<Sink> m_sink;
};

} // namespace test
