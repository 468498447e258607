// The process's entry for programs that consist of an application object. Alone in its file, so
// that the linker takes it out of the archive only for programs without a main() of their own.
#include <afxwin.h>

namespace {

int requestedShow() {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    GetStartupInfoW(&startup);
    return (startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? startup.wShowWindow : SW_SHOWDEFAULT;
}

} // namespace

int main() {
    // What Windows' own parts load from here on comes from the system directory: neither a file
    // beside the program nor one in the current directory takes its place. Either call fails only
    // on systems that are too old for this program.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
    return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), requestedShow());
}
