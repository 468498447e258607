// Services of the system that need no type of their own.
#pragma once

#include <mrl/Types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace mrl {

class System {
public:
    /// Blocks the calling thread for `milliseconds` of the clock in force.
    /// Platform: Sleep, through the runtime library
    static void mssleep(unsigned int milliseconds);

    /// The character of one byte in the process's locale; with the minimal locale, which this
    /// program never leaves, the character of the same value.
    /// \return the character; 0 where the locale has none for that byte
    /// Platform: mbtowc with a length of 1
    static Char byteToChar(char byte);

    /// A path from UTF-8, for file operations.
    static std::filesystem::path path(std::string_view utf8);

    /// The folder that the running executable's file lies in; empty when the system does not tell.
    /// Platform: GetModuleFileNameW
    static std::filesystem::path executableFolder();

    /// The languages that the user wants to be spoken to in, the dearest first, as tags ("de-AT",
    /// or "de_AT.UTF-8" from the environment); none when the system does not tell.
    /// Platform: GetUserPreferredUILanguages; elsewhere the first of LC_ALL, LC_MESSAGES and LANG
    static std::vector<std::string> interfaceLanguages();
};

} // namespace mrl
