// What a person answers to a command that asks.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

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

/// Lines of bytes that arrive in pieces. A line ends with LF or CR LF, the last one with the input
/// too.
class ArrivingLines final : public LineInput {
public:
    /// Bytes; none if none has arrived for a moment; nothing at the end of the input.
    using Arrived = std::function<std::optional<std::string>()>;

    /// Of a longer line, this many bytes are a line, and the rest the next one: input without line
    /// ends does not fill the memory.
    static constexpr std::size_t LONGEST = 0x10000;

    explicit ArrivingLines(Arrived arrived) : m_arrived(std::move(arrived)) {}

    std::optional<std::string> line(const std::function<bool()>& stop) override;

private:
    Arrived m_arrived;
    std::string m_kept; ///< arrived, and not given yet
    bool m_ended = false;
};

} // namespace mrl
