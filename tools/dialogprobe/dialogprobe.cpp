// Reads and drives a dialog of another process, for tests that see it as a person does.
#include "Control.h"
#include "GuiObjects.h"
#include "TextRoom.h"

#include <mrl/Unicode.h>

#include <mrl/Json.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using dialogprobe::Control;
using mrl::Json;

namespace {

constexpr int NOT_DONE = 1;
constexpr int WRONG_USAGE = 64;
constexpr DWORD LOOK_EVERY_MS = 50;
constexpr DWORD LONGEST_WAIT_MS = 600000;

constexpr const char* USAGE =
    "usage: dialogprobe [--title TEXT] [--wait MS] [COMMAND [ARGUMENT...]]\n"
    "\n"
    "Finds the visible top-level window with the title TEXT, waiting up to MS milliseconds for "
    "it,\n"
    "and executes COMMAND. Without a command, executes one command a line from standard input. "
    "Answers\n"
    "are lines of JSON in UTF-8; from standard input, an empty line ends each answer.\n"
    "\n"
    "  windows           every top-level window of the desktop\n"
    "  show [ID]         text, class, state and place of the control ID, or of all of them:\n"
    "                    a combo box with entries and selection, a progress bar with position\n"
    "  window            the same of the dialog itself\n"
    "  fit               for each visible text: the room that it has and the room that it needs "
    "in\n"
    "                    the dialog font, \"MS Shell Dlg\" of 8 points\n"
    "  click ID          pushes a button; presses and releases the mouse on any other control\n"
    "  select ID INDEX   selects an entry of a combo box, as a person does who opens its list\n"
    "  focus [ID]        the control that has the keyboard; with ID, gives it the keyboard\n"
    "  key NAME          presses and releases a key: escape, enter, tab, space, up, down\n"
    "  close             what the close box sends\n"
    "  objects           how many drawing objects, and windows and their like, the dialog's "
    "process\n"
    "                    holds\n"
    "\n"
    "Exit code: 0 when it is done, 1 when there is no such window or control, 64 for wrong "
    "usage.\n";

struct WrongUsage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

int number(const std::string& text) {
    std::size_t used = 0;
    int value = -1;
    try {
        value = std::stoi(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || value < 0) {
        throw WrongUsage("\"" + text + "\" is no number from 0 on");
    }
    return value;
}

WPARAM virtualKey(const std::string& name) {
    static const std::map<std::string, WPARAM> keys = {{"escape", VK_ESCAPE}, {"enter", VK_RETURN},
                                                       {"tab", VK_TAB},       {"space", VK_SPACE},
                                                       {"up", VK_UP},         {"down", VK_DOWN}};
    const auto found = keys.find(name);
    if (found == keys.end()) {
        throw WrongUsage("no key is called \"" + name + "\"");
    }
    return found->second;
}

std::vector<HWND> topLevelWindows() {
    std::vector<HWND> windows;
    const auto add = [](HWND window, LPARAM list) -> BOOL {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
    };
    EnumWindows(add, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

// One run of the probe: its window and the answers so far.
class Probe {
public:
    Probe(std::wstring title, DWORD waitMs) : m_title(std::move(title)), m_waitMs(waitMs) {}

    void execute(const std::vector<std::string>& words);

private:
    using Arguments = std::vector<std::string>;
    struct Command {
        std::size_t fewest;
        std::size_t most;
        void (Probe::*run)(const Arguments&);
    };
    static const std::map<std::string, Command>& commands();

    static void answer(const Json& line) {
        std::cout << line.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
    }

    HWND dialog();
    Control control(const std::string& id);

    void windows(const Arguments& arguments);
    void show(const Arguments& arguments);
    void window(const Arguments& arguments);
    void fit(const Arguments& arguments);
    void click(const Arguments& arguments);
    void select(const Arguments& arguments);
    void focus(const Arguments& arguments);
    void key(const Arguments& arguments);
    void close(const Arguments& arguments);
    void objects(const Arguments& arguments);

    std::wstring m_title;
    DWORD m_waitMs;
};

const std::map<std::string, Probe::Command>& Probe::commands() {
    static const std::map<std::string, Command> all = {
        {"windows", {0, 0, &Probe::windows}}, {"show", {0, 1, &Probe::show}},
        {"window", {0, 0, &Probe::window}},   {"fit", {0, 0, &Probe::fit}},
        {"click", {1, 1, &Probe::click}},     {"select", {2, 2, &Probe::select}},
        {"focus", {0, 1, &Probe::focus}},     {"key", {1, 1, &Probe::key}},
        {"close", {0, 0, &Probe::close}},     {"objects", {0, 0, &Probe::objects}}};
    return all;
}

void Probe::execute(const std::vector<std::string>& words) {
    const auto found = commands().find(words.front());
    if (found == commands().end()) {
        throw WrongUsage("no command is called \"" + words.front() + "\"");
    }
    const Arguments arguments(words.begin() + 1, words.end());
    const Command& command = found->second;
    if (arguments.size() < command.fewest || arguments.size() > command.most) {
        throw WrongUsage("wrong number of arguments to " + words.front());
    }
    (this->*command.run)(arguments);
}

// Looked up again for each command, because another dialog may have replaced it. Waits only until
// it has appeared once.
HWND Probe::dialog() {
    const ULONGLONG end = GetTickCount64() + m_waitMs;
    for (;;) {
        for (const HWND window : topLevelWindows()) {
            if (IsWindowVisible(window) && Control(window).text() == m_title) {
                m_waitMs = 0;
                return window;
            }
        }
        if (GetTickCount64() >= end) {
            throw std::runtime_error("no visible window is called \"" + mrl::toUtf8(m_title) +
                                     "\"");
        }
        Sleep(LOOK_EVERY_MS);
    }
}

Control Probe::control(const std::string& id) {
    const HWND found = GetDlgItem(dialog(), number(id));
    if (found == nullptr) {
        throw std::runtime_error("the dialog has no control " + id);
    }
    return Control(found);
}

void Probe::windows(const Arguments& /*arguments*/) {
    for (const HWND window : topLevelWindows()) {
        answer(Control(window).description());
    }
}

void Probe::show(const Arguments& arguments) {
    if (!arguments.empty()) {
        answer(control(arguments[0]).description());
        return;
    }
    for (const Control& each : Control::allOf(dialog())) {
        answer(each.description());
    }
}

void Probe::window(const Arguments& /*arguments*/) {
    answer(Control(dialog()).description());
}

void Probe::fit(const Arguments& /*arguments*/) {
    const dialogprobe::DialogFont font;
    for (const Control& each : Control::allOf(dialog())) {
        if (const std::optional<dialogprobe::TextRoom> room = font.roomOf(each)) {
            answer({{"id", each.id()},
                    {"text", mrl::toUtf8(each.text())},
                    {"room", {room->has.cx, room->has.cy}},
                    {"needs", {room->needs.cx, room->needs.cy}}});
        }
    }
}

void Probe::click(const Arguments& arguments) {
    control(arguments[0]).click();
}

void Probe::select(const Arguments& arguments) {
    control(arguments[0]).select(number(arguments[1]));
}

void Probe::focus(const Arguments& arguments) {
    const HWND window = dialog();
    if (!arguments.empty()) {
        Control(window).send(WM_NEXTDLGCTL,
                             reinterpret_cast<WPARAM>(control(arguments[0]).handle()), TRUE);
    }
    const HWND focused = Control(window).focus();
    answer({{"id", focused == nullptr ? 0 : GetDlgCtrlID(focused)}});
}

void Probe::key(const Arguments& arguments) {
    const WPARAM virtualCode = virtualKey(arguments[0]);
    const HWND window = dialog();
    const HWND focused = Control(window).focus();
    Control(focused == nullptr ? window : focused).key(virtualCode);
}

void Probe::close(const Arguments& /*arguments*/) {
    Control(dialog()).post(WM_SYSCOMMAND, SC_CLOSE, 0);
}

void Probe::objects(const Arguments& /*arguments*/) {
    DWORD processId = 0;
    GetWindowThreadProcessId(dialog(), &processId);
    const dialogprobe::GuiObjects held = dialogprobe::guiObjectsOf(processId);
    answer({{"gdi", held.gdi}, {"user", held.user}});
}

void tell(const std::runtime_error& error) {
    std::cout << Json{{"error", error.what()}}.dump() << "\n";
}

void obeyInput(Probe& probe) {
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream stream(line);
        std::vector<std::string> words;
        for (std::string word; stream >> word;) {
            words.push_back(word);
        }
        try {
            if (!words.empty()) {
                probe.execute(words);
            }
        } catch (const std::runtime_error& error) {
            tell(error);
        }
        std::cout << std::endl; // flushed: the caller waits for the answer
    }
}

int run(std::vector<std::string> arguments) {
    std::wstring title;
    DWORD waitMs = 0;
    while (!arguments.empty() && arguments[0].starts_with("--")) {
        if (arguments[0] == "--help") {
            std::cout << USAGE;
            return 0;
        }
        if (arguments.size() < 2) {
            throw WrongUsage(arguments[0] + " needs a value");
        }
        if (arguments[0] == "--title") {
            title = mrl::toUtf16(arguments[1]);
        } else if (arguments[0] == "--wait") {
            waitMs = std::min(static_cast<DWORD>(number(arguments[1])), LONGEST_WAIT_MS);
        } else {
            throw WrongUsage("no option is called " + arguments[0]);
        }
        arguments.erase(arguments.begin(), arguments.begin() + 2);
    }
    Probe probe(std::move(title), waitMs);
    if (arguments.empty()) {
        obeyInput(probe);
        return 0;
    }
    try {
        probe.execute(arguments);
        return 0;
    } catch (const WrongUsage&) {
        throw;
    } catch (const std::runtime_error& error) {
        tell(error);
        return NOT_DONE;
    }
}

} // namespace

int wmain(int count, wchar_t** words) {
    _setmode(_fileno(stdout), _O_BINARY);
    // Otherwise the places would be those of a display of 96 DPI. Windows before 10 1703 lacks it
    // and returns an error, which is ignored.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(mrl::toUtf8(words[i]));
    }
    try {
        return run(std::move(arguments));
    } catch (const WrongUsage& error) {
        std::cerr << "dialogprobe: " << error.what() << "; see --help\n";
        return WRONG_USAGE;
    }
}
