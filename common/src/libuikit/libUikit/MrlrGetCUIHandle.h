// The console that the program was started from, as a parent for its dialogs.
#pragma once

#include <afxwin.h>

/// The process's console window; null when there is none, or when nobody sees it: hidden (a
/// terminal program shows the console's text in its place) or minimised, which would hide an
/// owned dialog with it.
/// The object is temporary, as those of CWnd::FromHandle(). The window belongs to another process:
/// not to be disabled (CDialog::DoModal() does not).
/// Platform: GetConsoleWindow
CWnd* MrlrGetCUIHandle();
