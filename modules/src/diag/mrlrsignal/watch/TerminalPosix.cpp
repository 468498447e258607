#include <watch/Terminal.h>

#include <watch/KeyReader.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace watch {

namespace {

// Set by signal handlers.
constinit std::atomic<bool> g_ended{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

// How long the bytes of one key may be apart.
constexpr std::chrono::milliseconds KEY_TIME{30};

extern "C" void onEnd(int /*number*/) {
    g_ended = true;
}

// The end of a wait is all that a new size needs.
extern "C" void onResize(int /*number*/) {}

// Handles a signal until the destructor.
class SignalHandler {
public:
    SignalHandler(int number, void (*handler)(int)) : m_number(number) {
        struct sigaction action = {};
        action.sa_handler = handler; // without SA_RESTART: a wait is to end
        sigemptyset(&action.sa_mask);
        sigaction(number, &action, &m_before); // EINVAL for a signal that cannot be caught
    }
    SignalHandler(const SignalHandler&) = delete;
    SignalHandler& operator=(const SignalHandler&) = delete;
    ~SignalHandler() { sigaction(m_number, &m_before, nullptr); }

private:
    int m_number;
    struct sigaction m_before = {};
};

class PosixTerminal final : public Terminal {
public:
    explicit PosixTerminal(const termios& before) : m_before(before) {
        g_ended = false;
        termios raw = before;
        raw.c_iflag &= ~static_cast<tcflag_t>(IXON | ICRNL | INLCR | IGNCR);
        raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
        raw.c_cc[VMIN] = 1;
        raw.c_cc[VTIME] = 0;
        tcsetattr(STDIN_FILENO, TCSADRAIN, &raw); // EIO: the terminal is gone; reads say so too
        PosixTerminal::write(ENTER_SCREEN);
    }
    ~PosixTerminal() override {
        PosixTerminal::write(LEAVE_SCREEN);
        // What was typed meanwhile was meant for the view.
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }

    Size size() const override {
        winsize size = {};
        if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
            return {};
        }
        return {.columns = size.ws_col, .rows = size.ws_row};
    }

    void write(std::string_view utf8) override {
        while (!utf8.empty()) {
            const ssize_t written = ::write(STDOUT_FILENO, utf8.data(), utf8.size());
            if (written < 0 && errno == EINTR) {
                continue;
            }
            if (written <= 0) {
                m_gone = true; // EIO
                return;
            }
            utf8.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    KeyPress wait(Moment longest) override {
        KeyPress press = m_keys.next();
        if (press.key == Key::NONE && read(m_keys.isUndecided() ? KEY_TIME : longest)) {
            press = m_keys.next();
            while (press.key == Key::NONE && m_keys.isUndecided()) {
                press = read(KEY_TIME) ? m_keys.next() : m_keys.giveUp();
            }
        }
        return press;
    }

    bool hasEnded() const override { return m_gone || g_ended; }

private:
    // Waits for bytes. \return whether there are any
    bool read(Moment longest) {
        pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
        if (poll(&input, 1, static_cast<int>(milliseconds)) != 1) {
            return false; // EINTR: a signal
        }
        std::array<char, 64> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        m_gone = m_gone || count == 0 || (count < 0 && errno != EINTR);
        if (count <= 0) {
            return false;
        }
        m_keys.add({bytes.data(), static_cast<std::size_t>(count)});
        return true;
    }

    termios m_before;
    SignalHandler m_interrupt{SIGINT, &onEnd};
    SignalHandler m_terminate{SIGTERM, &onEnd};
    SignalHandler m_hangUp{SIGHUP, &onEnd};
    SignalHandler m_resize{SIGWINCH, &onResize};
    KeyReader m_keys;
    bool m_gone = false;
};

bool followsEscapeSequences() {
    const char* const kind = std::getenv("TERM");
    return kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}

} // namespace

std::unique_ptr<Terminal> openTerminal() {
    termios before = {};
    if (isatty(STDOUT_FILENO) == 0 || tcgetattr(STDIN_FILENO, &before) != 0 ||
        !followsEscapeSequences()) {
        return nullptr;
    }
    return std::make_unique<PosixTerminal>(before);
}

} // namespace watch
