// OLE: starting it, and letting windows hold OLE controls.
#pragma once

#include <afxwin.h>

class COccManager;

/// Starts OLE on the calling thread, as a single-threaded apartment, until AfxWinMain() ends. A
/// second call on the thread changes nothing. In a process that has not loaded ole32.dll, OLE
/// starts with the thread's first window: a program that never opens one does without.
/// \return FALSE when OLE cannot be started, for example because the thread already belongs to
/// the multithreaded apartment; when OLE that waited for a window cannot, the window cannot be
/// created
/// Platform: OleInitialize, OleUninitialize
BOOL AFXAPI AfxOleInit();

/// Lets dialogs hold OLE controls. The library's dialogs are made of Windows' own controls, which
/// need no container, so that nothing changes; programs call it on either side of that line.
void AFXAPI AfxEnableControlContainer(COccManager* pOccManager = nullptr);
