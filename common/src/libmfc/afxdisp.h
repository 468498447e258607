// OLE: starting it, and letting windows hold OLE controls.
#pragma once

#include <afxwin.h>

class COccManager;

/// Starts OLE on the calling thread, as a single-threaded apartment, until AfxWinMain() ends. A
/// second call on the thread changes nothing.
/// \return FALSE when OLE cannot be started, for example because the thread already belongs to
/// the multithreaded apartment
/// Platform: OleInitialize, OleUninitialize
BOOL AFXAPI AfxOleInit();

/// Lets dialogs hold OLE controls. The library's dialogs are made of Windows' own controls, which
/// need no container, so that nothing changes; programs call it on either side of that line.
void AFXAPI AfxEnableControlContainer(COccManager* pOccManager = nullptr);
