// Starting and ending OLE. Not ended by a thread-local object: that would run inside the system's
// loader lock, where OLE must not be touched.
#include <afxdisp.h>

#include "FirstWindow.h"
#include "OleThread.h"

#include <ole2.h>
#include <utility>

namespace {

enum class Ole { none, promised, started };
thread_local Ole t_ole = Ole::none;

bool start() {
    // RPC_E_CHANGED_MODE, OLE_E_WRONGCOMPOBJ, E_OUTOFMEMORY; S_FALSE when it ran already, which
    // is to be balanced all the same
    t_ole = SUCCEEDED(OleInitialize(nullptr)) ? Ole::started : Ole::none;
    return t_ole == Ole::started;
}

} // namespace

BOOL AFXAPI AfxOleInit() {
    if (t_ole != Ole::none) {
        return TRUE;
    }
    // Only somebody who has the DLL could have put the thread where OLE cannot start, or could see
    // whether it runs.
    if (GetModuleHandleW(L"ole32.dll") == nullptr) {
        t_ole = Ole::promised;
        return TRUE;
    }
    return start();
}

bool afx::startPromisedOle() {
    return t_ole != Ole::promised || start();
}

void AFXAPI AfxEnableControlContainer(COccManager*) {}

namespace afx {

OleThread::~OleThread() {
    if (std::exchange(t_ole, Ole::none) == Ole::started) {
        OleUninitialize();
    }
}

} // namespace afx
