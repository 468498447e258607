// Runs a program from the folder of helpers beside that of the test programs. Windows only.
#pragma once

#include <mrl/System.h>

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace test {

struct HelperRun {
    DWORD code = 0;
    std::string output; ///< standard output
};

/// Waits for the program's end. A program that does not start is a failure of the test.
inline HelperRun runHelper(const std::wstring& name, const std::wstring& arguments) {
    const std::filesystem::path file =
        mrl::System::executableFolder().parent_path() / L"helpers" / name;
    std::wstring commandLine = L"\"" + file.wstring() + L"\" " + arguments;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    CreatePipe(&reading, &writing, &inherited, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writing;
    PROCESS_INFORMATION process{};
    EXPECT_NE(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                             nullptr, &startup, &process),
              0)
        << GetLastError();
    CloseHandle(writing); // the pipe then ends with the program

    HelperRun run;
    char part[512];
    DWORD count = 0;
    // ERROR_BROKEN_PIPE at the end
    while (ReadFile(reading, part, sizeof part, &count, nullptr) != 0 && count > 0) {
        run.output.append(part, count);
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &run.code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    CloseHandle(reading);
    return run;
}

} // namespace test
