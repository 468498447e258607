#include <mrl/System.h>

#include <mrl/Clock.h>
#include <mrl/Unicode.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace mrl {

void System::mssleep(unsigned int milliseconds) {
    Clock::current().sleep(std::chrono::milliseconds(milliseconds));
}

Char System::byteToChar(char byte) {
#ifdef _WIN32
    wchar_t character = 0;
    // The result is not needed: a byte that the locale cannot convert leaves the 0.
    static_cast<void>(std::mbtowc(&character, &byte, 1));
    return character;
#else
    // Minimal locales of other systems differ for bytes above 127; the result here must not.
    return static_cast<unsigned char>(byte);
#endif
}

std::filesystem::path System::path(std::string_view utf8) {
#ifdef _WIN32
    return std::filesystem::path(toUtf16(utf8));
#else
    return std::filesystem::path(utf8);
#endif
}

std::filesystem::path System::executableFolder() {
    return executable().parent_path();
}

void System::waitForLine() {
    for (int character = 0; character != '\n' && character != EOF;) {
        character = std::getchar();
    }
}

} // namespace mrl
