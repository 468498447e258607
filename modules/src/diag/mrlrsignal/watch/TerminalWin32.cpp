#include <watch/Terminal.h>

#include <mrl/Unicode.h>

#include <windows.h>

#include <algorithm>
#include <deque>

namespace watch {

namespace {

struct VirtualKey {
    WORD code;
    Key key;
};
constexpr VirtualKey virtualKeys[] = {
    {VK_UP, Key::UP},          {VK_DOWN, Key::DOWN},     {VK_PRIOR, Key::PAGE_UP},
    {VK_NEXT, Key::PAGE_DOWN}, {VK_HOME, Key::FIRST},    {VK_END, Key::LAST},
    {VK_RETURN, Key::ENTER},   {VK_ESCAPE, Key::ESCAPE},
};

KeyPress keyOf(const KEY_EVENT_RECORD& event) {
    if (event.bKeyDown == 0) {
        return {};
    }
    for (const VirtualKey& known : virtualKeys) {
        if (known.code == event.wVirtualKeyCode) {
            return {known.key};
        }
    }
    constexpr wchar_t CTRL_C = 3;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access): the system's structure
    const wchar_t unit = event.uChar.UnicodeChar;
    if (unit == CTRL_C) {
        return {Key::INTERRUPT};
    }
    return unit > L' ' && unit <= L'~' ? KeyPress{Key::CHARACTER, static_cast<char>(unit)}
                                       : KeyPress{};
}

// The two handles of a console and the modes that they had.
struct Console {
    HANDLE input = nullptr;
    HANDLE output = nullptr;
    DWORD inputMode = 0;
    DWORD outputMode = 0;
};

class ConsoleTerminal final : public Terminal {
public:
    explicit ConsoleTerminal(const Console& console) : m_console(console) {
        ConsoleTerminal::write(ENTER_SCREEN);
    }
    ~ConsoleTerminal() override {
        ConsoleTerminal::write(LEAVE_SCREEN);
        // What was typed meanwhile was meant for the view.
        FlushConsoleInputBuffer(m_console.input);
        SetConsoleMode(m_console.input, m_console.inputMode);
        SetConsoleMode(m_console.output, m_console.outputMode);
    }

    Size size() const override {
        CONSOLE_SCREEN_BUFFER_INFO info = {};
        if (GetConsoleScreenBufferInfo(m_console.output, &info) == 0) {
            return {};
        }
        const SMALL_RECT& window = info.srWindow;
        return {.columns = static_cast<std::size_t>(std::max(window.Right - window.Left + 1, 1)),
                .rows = static_cast<std::size_t>(std::max(window.Bottom - window.Top + 1, 1))};
    }

    void write(std::string_view utf8) override {
        const mrl::CharString text = mrl::toUtf16(utf8);
        DWORD written = 0;
        m_gone = WriteConsoleW(m_console.output, text.data(), static_cast<DWORD>(text.size()),
                               &written, nullptr) == 0 ||
                 m_gone;
    }

    KeyPress wait(Moment longest) override {
        if (m_presses.empty()) {
            const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
            if (WaitForSingleObject(m_console.input, static_cast<DWORD>(std::max<Moment::rep>(
                                                         milliseconds, 0))) != WAIT_OBJECT_0) {
                return {};
            }
            read();
        }
        if (m_presses.empty()) {
            return {};
        }
        const KeyPress press = m_presses.front();
        m_presses.pop_front();
        return press;
    }

    bool hasEnded() const override { return m_gone; }

private:
    void read() {
        INPUT_RECORD records[16] = {};
        DWORD count = 0;
        if (ReadConsoleInputW(m_console.input, records, std::size(records), &count) == 0) {
            m_gone = true;
            return;
        }
        for (DWORD i = 0; i < count; ++i) {
            if (records[i].EventType != KEY_EVENT) {
                continue; // a new size: the end of the wait is all that it needs
            }
            // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access): the system's structure
            const KeyPress press = keyOf(records[i].Event.KeyEvent);
            if (press.key != Key::NONE) {
                m_presses.push_back(press);
            }
        }
    }

    Console m_console;
    std::deque<KeyPress> m_presses;
    bool m_gone = false;
};

} // namespace

std::unique_ptr<Terminal> openTerminal() {
    Console console{.input = GetStdHandle(STD_INPUT_HANDLE),
                    .output = GetStdHandle(STD_OUTPUT_HANDLE)};
    // Ctrl+C is to arrive as a key, and the size as an event; a selection would stop the view.
    if (GetConsoleMode(console.input, &console.inputMode) == 0 ||
        GetConsoleMode(console.output, &console.outputMode) == 0 ||
        SetConsoleMode(console.output, ENABLE_PROCESSED_OUTPUT | ENABLE_WRAP_AT_EOL_OUTPUT |
                                           ENABLE_VIRTUAL_TERMINAL_PROCESSING) == 0) {
        return nullptr;
    }
    if (SetConsoleMode(console.input, ENABLE_WINDOW_INPUT | ENABLE_EXTENDED_FLAGS) == 0) {
        SetConsoleMode(console.output, console.outputMode);
        return nullptr;
    }
    return std::make_unique<ConsoleTerminal>(console);
}

} // namespace watch
