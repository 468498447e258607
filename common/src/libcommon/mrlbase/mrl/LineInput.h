// What a person answers to a command that asks.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace mrl {

/// Lines of text, one after another. One thread.
class LineInput {
public:
    LineInput() = default;
    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;
    virtual ~LineInput() = default;

    /// Waits for the next line. \param stop asked several times a second, where the system allows
    /// it; ends the waiting
    /// \return the line in UTF-8 without its end; nothing at the end of the input and once `stop`
    /// is true
    virtual std::optional<std::string> line(const std::function<bool()>& stop) = 0;

    /// The process's standard input. A Windows console gives every character of a line, whatever
    /// its code page; there, Ctrl+C ends the waiting by itself.
    /// Platform: ReadConsoleW, ReadFile; poll, read
    static LineInput& ofProcess();
};

} // namespace mrl
