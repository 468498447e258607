#include <mrl/OutputStream.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace mrl {

namespace {

std::FILE* fileOf(OutputStream::Target target) {
    return target == OutputStream::Target::standardOutput ? stdout : stderr;
}

#ifdef _WIN32

HANDLE handleOf(OutputStream::Target target) {
    return GetStdHandle(target == OutputStream::Target::standardOutput ? STD_OUTPUT_HANDLE
                                                                       : STD_ERROR_HANDLE);
}

// The console behind a stream, or null when the stream is a file or a pipe.
HANDLE consoleOf(OutputStream::Target target) {
    const HANDLE handle = handleOf(target);
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 ? handle : nullptr;
}

bool isConsole(OutputStream::Target target) {
    return consoleOf(target) != nullptr;
}

// Consoles before Windows 10 do not support them.
bool followsEscapeSequences(OutputStream::Target target) {
    const HANDLE console = consoleOf(target);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t columnsOfConsole(OutputStream::Target target) {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    // ERROR_INVALID_HANDLE
    if (GetConsoleScreenBufferInfo(consoleOf(target), &info) == 0) {
        return 0;
    }
    return static_cast<std::size_t>(std::max(info.srWindow.Right - info.srWindow.Left + 1, 0));
}

// A console gets UTF-16, because its code page lacks most characters of network names. A pipe or a
// file gets UTF-8.
// \return false when a part is known to be lost
bool writeTo(OutputStream::Target target, std::string_view utf8) {
    if (const HANDLE console = consoleOf(target)) {
        const CharString text = toUtf16(utf8);
        DWORD written = 0;
        WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        return true; // a console keeps nothing that could be incomplete
    }
    // A program that is started without the stream, by DETACHED_PROCESS for instance, has no reader
    // that could miss a part.
    if (handleOf(target) == nullptr || handleOf(target) == INVALID_HANDLE_VALUE) {
        return true;
    }
    // Otherwise the runtime library writes \r\n for \n.
    const int file = _fileno(fileOf(target));
    _setmode(file, _O_BINARY);
    // Not std::fwrite, which may write byte by byte to character devices.
    std::fflush(fileOf(target));
    while (!utf8.empty()) {
        const int written = _write(file, utf8.data(), static_cast<unsigned>(utf8.size()));
        if (written <= 0) {
            return false; // EBADF, ENOSPC, EPIPE
        }
        utf8.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

#else

bool isConsole(OutputStream::Target target) {
    return isatty(fileno(fileOf(target))) != 0;
}

bool followsEscapeSequences(OutputStream::Target target) {
    return isConsole(target);
}

std::size_t columnsOfConsole(OutputStream::Target target) {
    winsize size = {};
    return ioctl(fileno(fileOf(target)), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool writeTo(OutputStream::Target target, std::string_view utf8) {
    return std::fwrite(utf8.data(), 1, utf8.size(), fileOf(target)) == utf8.size();
}

#endif

} // namespace

constinit OutputStream cout(OutputStream::Target::standardOutput);
constinit OutputStream cerr(OutputStream::Target::standardError);

OutputStream::Receiver::~Receiver() = default;

OutputStream& OutputStream::operator<<(std::string_view utf8) {
    if (m_receiver != nullptr) {
        m_receiver->write(utf8);
        return *this;
    }
    if (m_lost) {
        m_lost = !writeTo(m_target, "\n");
    }
    if (!writeTo(m_target, utf8)) {
        lose();
    }
    return *this;
}

OutputStream& OutputStream::operator<<(const String& text) {
    return *this << std::string_view(text.getUTF8String().bytes());
}

void OutputStream::flush() {
    // The runtime library discards what it could not write.
    if (m_receiver == nullptr && std::fflush(fileOf(m_target)) != 0) {
        lose();
    }
}

void OutputStream::lose() {
    m_lost = true;
    m_hasLost = true;
}

bool OutputStream::isTerminal() const {
    return m_receiver == nullptr && isConsole(m_target);
}

std::size_t OutputStream::columns() const {
    return isTerminal() ? columnsOfConsole(m_target) : 0;
}

bool OutputStream::showsColours(Colours when) const {
    if (when != Colours::automatic) {
        if (when == Colours::always && isTerminal()) {
            followsEscapeSequences(m_target); // switches them on in a console
        }
        return when == Colours::always;
    }
    const char* const unwanted = std::getenv("NO_COLOR");
    return isTerminal() && (unwanted == nullptr || *unwanted == '\0') &&
           followsEscapeSequences(m_target);
}

OutputStream::Receiver* OutputStream::redirect(Receiver* receiver) {
    return std::exchange(m_receiver, receiver);
}

OutputStream& endl(OutputStream& stream) {
    stream << std::string_view("\n");
    stream.flush();
    return stream;
}

} // namespace mrl
