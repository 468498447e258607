// The process's folder and the user's languages, from Windows.
#include <mrl/System.h>

#include <mrl/Unicode.h>

#include <windows.h>

namespace mrl {

// The runtime library has the path only in the code page of the process, which lacks characters of
// some folders' names.
std::filesystem::path System::executable() {
    CharString path(MAX_PATH, Char());
    for (;;) {
        // ERROR_INSUFFICIENT_BUFFER: the text is cut and fills the buffer
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return std::filesystem::path(path);
        }
        path.resize(path.size() * 2);
    }
}

std::vector<std::filesystem::path> System::resourceFolders(std::string_view /*program*/) {
    const std::filesystem::path below("resources");
    const std::filesystem::path folder = executableFolder();
    return folder.empty() ? std::vector{below} : std::vector{folder / below, below};
}

std::string_view System::name() {
    return "windows";
}

std::chrono::minutes System::utcOffset(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(floor<seconds>(time - day));
    const SYSTEMTIME utc = {.wYear = static_cast<WORD>(static_cast<int>(date.year())),
                            .wMonth = static_cast<WORD>(static_cast<unsigned>(date.month())),
                            .wDayOfWeek = 0,
                            .wDay = static_cast<WORD>(static_cast<unsigned>(date.day())),
                            .wHour = static_cast<WORD>(clock.hours().count()),
                            .wMinute = static_cast<WORD>(clock.minutes().count()),
                            .wSecond = static_cast<WORD>(clock.seconds().count()),
                            .wMilliseconds = 0};
    SYSTEMTIME local = {};
    if (SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) == FALSE) {
        return minutes(0);
    }
    const sys_days localDay = year(local.wYear) / local.wMonth / local.wDay;
    return floor<minutes>(localDay + hours(local.wHour) + minutes(local.wMinute) -
                          (day + clock.hours() + clock.minutes()));
}

Uint32 System::processId() {
    return GetCurrentProcessId();
}

bool System::processRuns(Uint32 id) {
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, id);
    if (process == nullptr) {
        return GetLastError() != ERROR_INVALID_PARAMETER; // else ERROR_ACCESS_DENIED
    }
    const DWORD ended = WaitForSingleObject(process, 0);
    CloseHandle(process);
    return ended != WAIT_OBJECT_0;
}

void System::surviveClosedPipes() {}

bool System::ownsConsole(std::size_t processes) {
    for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE}) {
        DWORD mode = 0;
        if (GetConsoleMode(GetStdHandle(stream), &mode) == 0) {
            return false; // a pipe, a file, or nothing
        }
    }
    DWORD first = 0;
    // The number of all, also when the list has no room for them; 0 on failure.
    const DWORD users = GetConsoleProcessList(&first, 1);
    return users != 0 && users <= processes;
}

std::vector<std::string> System::interfaceLanguages() {
    ULONG count = 0;
    ULONG length = 0;
    // ERROR_INVALID_PARAMETER, ERROR_INSUFFICIENT_BUFFER
    if (GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, nullptr, &length) == 0) {
        return {};
    }
    CharString names(length, Char());
    if (GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names.data(), &length) == 0) {
        return {};
    }
    // Each name ends with a zero, and the last one with two.
    std::vector<std::string> languages;
    for (std::size_t begin = 0; begin < names.size() && names[begin] != Char();) {
        const std::size_t end = std::min(names.find(Char(), begin), names.size());
        languages.push_back(toUtf8(CharView(names).substr(begin, end - begin)));
        begin = end + 1;
    }
    return languages;
}

} // namespace mrl
