// Services of the system that need no type of their own.
#pragma once

#include <mrl/Types.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mrl {

class System {
public:
    /// Blocks the calling thread for `milliseconds` of the clock in use.
    /// Platform: Sleep, through the runtime library
    static void mssleep(unsigned int milliseconds);

    /// The character of one byte in the process's locale. This program stays in the minimal locale,
    /// where it is the character of the same value.
    /// \return the character; 0 when the locale has none for that byte
    /// Platform: mbtowc with a length of 1
    static Char byteToChar(char byte);

    /// How far this PC's local time is ahead of UTC at `time`; 0 when the system does not say.
    /// Platform: SystemTimeToTzSpecificLocalTime; localtime_r
    static std::chrono::minutes utcOffset(std::chrono::system_clock::time_point time);

    /// A path from UTF-8, for file operations.
    static std::filesystem::path path(std::string_view utf8);

    /// The path of the running executable's file; empty when the system cannot say.
    /// Platform: GetModuleFileNameW; /proc/self/exe
    static std::filesystem::path executable();

    /// The folder that this file lies in.
    static std::filesystem::path executableFolder();

    /// The folders that the resources of `program` may lie in, the nearest first. On Windows
    /// "resources" beside the executable and in the current folder. On Linux "share/<program>"
    /// beside the executable, as it is built, and beside the executable's folder, as it is
    /// installed; not the current folder, because the program may have rights that its user lacks.
    /// Platform: that of executable()
    static std::vector<std::filesystem::path> resourceFolders(std::string_view program);

    /// The system that the program is built for: "windows" or "linux".
    static std::string_view name();

    /// The user's languages, the preferred one first, as tags ("de-AT", or "de_AT.UTF-8" from the
    /// environment); empty when the system has none.
    /// Platform: GetUserPreferredUILanguages; elsewhere the first of LC_ALL, LC_MESSAGES and LANG
    static std::vector<std::string> interfaceLanguages();

    /// The system's number of this process.
    /// Platform: GetCurrentProcessId; getpid
    static Uint32 processId();

    /// Whether a process of that number exists and has not ended. When the system does not say, it
    /// does.
    /// Platform: OpenProcess; kill with signal 0
    static bool processRuns(Uint32 id);

    /// From now on, writing to a pipe without a reader fails instead of ending the process.
    /// Platform: signal(SIGPIPE); on Windows it is so anyway
    static void surviveClosedPipes();

    /// Whether standard input and standard output are a console that no more than `processes`
    /// processes use, this one included: its window closes when they end.
    /// Platform: GetConsoleMode, GetConsoleProcessList; elsewhere never
    static bool ownsConsole(std::size_t processes);

    /// Blocks until standard input has a whole line, or ends.
    /// Platform: the runtime library
    static void waitForLine();
};

} // namespace mrl
