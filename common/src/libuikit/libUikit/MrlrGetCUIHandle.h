// The console that the program was started from, as a parent for its dialogs.
#pragma once

#include <afxwin.h>

/// The process's console window; null when there is none or it cannot be seen: hidden (a terminal
/// program shows the console's text instead) or minimised, which would hide an owned dialog too.
/// The object is temporary, as those of CWnd::FromHandle(). The window belongs to another process:
/// not to be disabled (CDialog::DoModal() does not).
/// Platform: GetConsoleWindow
CWnd* MrlrGetCUIHandle();
