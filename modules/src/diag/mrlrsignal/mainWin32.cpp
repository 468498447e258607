#include "SignalProgram.h"

#include <mrl/ProcessArguments.h>
#include <mrl/Unicode.h>

#include <windows.h>

int main() {
    // DLLs that are loaded from here on come from the system directory, and not from the program's
    // folder or the current one. Either call fails only on systems that are too old for this
    // program.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
    std::vector<std::string> arguments;
    for (const mrl::CharString& argument : mrl::processArguments()) {
        arguments.push_back(mrl::toUtf8(argument));
    }
    return runSignalProgram(arguments);
}
