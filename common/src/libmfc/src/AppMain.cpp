// The main() of programs that consist of an application object. Alone in its file, so that the
// linker takes it out of the archive only for programs without a main() of their own.
#include <afxwin.h>

int main() {
    // DLLs that are loaded from here on come from the system directory, and not from the program's
    // folder or the current one. Either call fails only on systems that are too old for this
    // program.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
    return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOWDEFAULT);
}
