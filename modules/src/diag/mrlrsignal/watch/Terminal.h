// The terminal that a live view fills, and gives back as it was.
#pragma once

#include <watch/View.h>

#include <cstdint>
#include <memory>
#include <string_view>

namespace watch {

enum class Key : std::uint8_t {
    NONE,
    UP,
    DOWN,
    PAGE_UP,
    PAGE_DOWN,
    FIRST,
    LAST,
    ENTER,
    ESCAPE,
    INTERRUPT, ///< Ctrl+C
    CHARACTER, ///< a letter, digit or sign of ASCII
};

struct KeyPress {
    Key key = Key::NONE;
    char character = 0; ///< of Key::CHARACTER

    friend bool operator==(const KeyPress&, const KeyPress&) = default;
};

/// While it lives, the program has the whole screen, the cursor is hidden, and keys arrive as they
/// are pressed. The destructor gives the terminal back as it was. One thread.
class Terminal {
public:
    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    virtual ~Terminal() = default;

    /// As it is at this moment; 80 by 24 when the terminal does not say.
    virtual Size size() const = 0;
    /// Writes in one piece text with escape sequences.
    virtual void write(std::string_view utf8) = 0;
    /// Waits for a key. Returns Key::NONE when `longest` is over, and early when the size changes
    /// or the terminal ends.
    virtual KeyPress wait(Moment longest) = 0;
    /// Whether the terminal is gone, or the system asked the process to end.
    virtual bool hasEnded() const = 0;
};

/// The terminal of the process's standard input and output; null when one of them is none, or is
/// one that follows no escape sequences. One at a time.
/// Platform: tcsetattr, sigaction (SIGINT, SIGTERM, SIGHUP, SIGWINCH); on Windows SetConsoleMode
std::unique_ptr<Terminal> openTerminal();

/// What shows another screen without a cursor, and what gives the first one back.
inline constexpr std::string_view ENTER_SCREEN = "\x1b[?1049h\x1b[?25l\x1b[2J";
inline constexpr std::string_view LEAVE_SCREEN = "\x1b[0m\x1b[?25h\x1b[?1049l";

} // namespace watch
