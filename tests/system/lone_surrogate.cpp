// Starts its first argument with a second one in which a surrogate has no partner, and ends with
// its exit value: no shell and no script passes such text on.
#include <windows.h>

#include <string>

int wmain(int count, wchar_t** arguments) {
    if (count != 3) {
        return 1;
    }
    std::wstring line = L"\"" + std::wstring(arguments[1]) + L"\" run " + arguments[2] + L"\xD83D";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(arguments[1], line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &startup, &process) == 0) {
        return 1;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD value = 1;
    GetExitCodeProcess(process.hProcess, &value);
    return static_cast<int>(value);
}
