#include "StandardInput.h"

#include <mrl/Unicode.h>

#include <windows.h>

#include <array>

namespace mrl {

std::optional<std::string> readStandardInput() {
    constexpr DWORD MOST = 1024;
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    DWORD count = 0;
    if (GetConsoleMode(input, &mode) != 0) {
        std::array<wchar_t, MOST> units{};
        // ERROR_OPERATION_ABORTED, with nothing read: Ctrl+C
        if (ReadConsoleW(input, units.data(), MOST, &count, nullptr) == 0 || count == 0) {
            return std::nullopt;
        }
        return toUtf8(CharView(units.data(), count));
    }
    std::array<char, MOST> bytes{};
    // ERROR_BROKEN_PIPE, ERROR_INVALID_HANDLE: nothing more comes
    if (ReadFile(input, bytes.data(), MOST, &count, nullptr) == 0 || count == 0) {
        return std::nullopt;
    }
    return std::string(bytes.data(), count);
}

} // namespace mrl
