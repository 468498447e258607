#include <libUikit/MrlrGetCUIHandle.h>

CWnd* MrlrGetCUIHandle() {
    const HWND console = GetConsoleWindow();
    const bool isSeen = console != nullptr && IsWindowVisible(console) && !IsIconic(console);
    return isSeen ? CWnd::FromHandle(console) : nullptr;
}
