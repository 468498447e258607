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
    return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), requestedShow());
}
