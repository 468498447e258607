// Basekit's output streams. They do not use the runtime library's iostreams, so that they work
// during static initialisation and destruction too.
#pragma once

#include <mrl/String.h>

#include <atomic>

namespace mrl {

/// A stream of UTF-8 text. A Windows console gets it as UTF-16, so that names in any script appear
/// whatever the console's code page; files and pipes get the bytes.
/// A piece that cannot be written, on a full disk for instance, is lost; the next piece that can be
/// written begins a new line.
/// Threads: pieces of several threads may interleave.
class OutputStream {
public:
    /// Receives the text instead of the process's stream.
    class Receiver {
    public:
        Receiver() = default;
        Receiver(const Receiver&) = delete;
        Receiver& operator=(const Receiver&) = delete;
        virtual ~Receiver();
        virtual void write(std::string_view utf8) = 0;
    };

    enum class Target { standardOutput, standardError };

    explicit constexpr OutputStream(Target target) : m_target(target) {}

    OutputStream& operator<<(std::string_view utf8);
    OutputStream& operator<<(const char* utf8) { return *this << std::string_view(utf8); }
    OutputStream& operator<<(const String& text);
    /// Applies a manipulator, such as endl.
    OutputStream& operator<<(OutputStream& (*manipulator)(OutputStream&)) {
        return manipulator(*this);
    }
    void flush();

    /// Whether a piece was ever lost, as far as it is known: what is buffered counts after flush().
    /// What a receiver or a Windows console gets is never lost, nor what a process writes that
    /// Windows started without the stream.
    bool hasLost() const { return m_hasLost; }

    /// Whether the stream is a terminal and has no receiver.
    bool isTerminal() const;

    /// Width of the terminal in columns; 0 when there is none or its width is unknown.
    /// Platform: GetConsoleScreenBufferInfo, ioctl
    std::size_t columns() const;

    /// When to show colours; automatic: in a terminal that supports them.
    enum class Colours { automatic, always, never };

    /// Whether to write colours: as `when` says; automatic: whether the stream is a terminal that
    /// supports escape sequences and the environment has no NO_COLOR. Switches escape sequences on
    /// in a Windows console. Platform: GetConsoleMode, SetConsoleMode
    bool showsColours(Colours when) const;

    /// Sends all further text to `receiver`; null restores the process's stream.
    /// \return the previous receiver
    Receiver* redirect(Receiver* receiver);

private:
    void lose();

    Target m_target;
    Receiver* m_receiver = nullptr;
    std::atomic<bool> m_lost = false; ///< a piece was lost, and nothing has been written since
    std::atomic<bool> m_hasLost = false;
};

/// Ends the line with "\n" and flushes.
OutputStream& endl(OutputStream& stream);

extern OutputStream cout; ///< results
extern OutputStream cerr; ///< errors

} // namespace mrl
