// The main() of programs that consist of an application object. Alone in its file, so that the
// linker takes it out of the archive only for programs without a main() of their own.
#include <afxwin.h>

#include <mrl/SystemLibrary.h>

int main() {
    mrl::loadFromSystemDirectoryAlone();
    return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOWDEFAULT);
}
