// The steps that the application's message loop and the modal ones share.
#pragma once

#include <afxwin.h>

namespace afx {

/// Takes one message into `message`, lets the thread's windows look at it first, dispatches it.
/// \return false for WM_QUIT
/// Failure: an exception that left a handler comes out of here.
bool pumpMessage(MSG& message, CWinThread* thread);

/// Asks the window that `message` is for, then its parents and owners.
/// \return whether one has handled it
bool preTranslate(MSG& message);

/// Frees temporary objects, unless a handler that may hold one is running.
void freeTemporaries();

/// Whether a loop is to do its idle work again after `message`; `last` is kept between the calls.
bool isIdleMessage(const MSG& message, LastPointer& last);

} // namespace afx
