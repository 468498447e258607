// Basekit's own output streams. They go past the runtime library's iostreams: a diagnostic must be
// able to say its last words when those are not up yet or no longer.
#pragma once

#include <mrl/String.h>

#include <atomic>

namespace mrl {

/// A stream of UTF-8 text. On Windows a console gets it as UTF-16, so that names in any script
/// appear right whatever the console's code page; files and pipes get the bytes.
/// What a file or a pipe does not take, for want of room say, is lost; what comes after that has a
/// line of its own, behind whatever the lost piece left.
/// Threads: pieces of several threads may interleave.
class OutputStream {
public:
    /// Receives what is written instead of the process's stream.
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
    /// For manipulators.
    OutputStream& operator<<(OutputStream& (*manipulator)(OutputStream&)) {
        return manipulator(*this);
    }
    void flush();

    /// Whether a person is reading: the stream is a terminal and has no receiver.
    bool isTerminal() const;

    /// Width of the terminal in columns; 0 when there is none or it does not tell.
    /// Platform: GetConsoleScreenBufferInfo, ioctl
    std::size_t columns() const;

    /// When to show colours: in a terminal that wants them, or whatever there is.
    enum class Colours { automatic, always, never };
    /// Decides for showsColours() from now on.
    void useColours(Colours when) { m_colours = when; }

    /// Whether useColours() wants colours; by itself, whether a terminal reads that follows escape
    /// sequences, colours among them. Tells a Windows console to follow them. False where the
    /// environment has NO_COLOR. Platform: GetConsoleMode, SetConsoleMode
    bool showsColours() const;

    /// Sends everything to `receiver` from now on; null for the process's stream again.
    /// \return the receiver before
    Receiver* redirect(Receiver* receiver);

private:
    Target m_target;
    Receiver* m_receiver = nullptr;
    Colours m_colours = Colours::automatic;
    std::atomic<bool> m_lost = false; ///< and no line end since
};

/// Ends the line with "\n" and flushes.
OutputStream& endl(OutputStream& stream);

extern OutputStream cout; ///< results
extern OutputStream cerr; ///< what went wrong

} // namespace mrl
