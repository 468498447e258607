#include <mrl/System.h>

#include <mrl/Clock.h>
#include <mrl/Unicode.h>

#include <chrono>
#include <cstdlib>

namespace mrl {

void System::mssleep(unsigned int milliseconds) {
    Clock::current().sleep(std::chrono::milliseconds(milliseconds));
}

Char System::byteToChar(char byte) {
#ifdef _WIN32
    wchar_t character = 0;
    // The result is of no interest: a byte that the locale cannot convert leaves the 0.
    static_cast<void>(std::mbtowc(&character, &byte, 1));
    return character;
#else
    // Other systems' minimal locales differ in what they make of bytes above 127; this program's
    // names do not.
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

} // namespace mrl
