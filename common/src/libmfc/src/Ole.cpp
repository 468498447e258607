// Starting and ending OLE. Not ended by a thread-local object: that would run inside the system's
// loader lock, where OLE must not be touched.
#include <afxdisp.h>

#include "OleThread.h"

#include <ole2.h>
#include <utility>

namespace {
thread_local bool t_oleStarted = false;
} // namespace

BOOL AFXAPI AfxOleInit() {
    if (t_oleStarted) {
        return TRUE;
    }
    // RPC_E_CHANGED_MODE, OLE_E_WRONGCOMPOBJ, E_OUTOFMEMORY; S_FALSE when it ran already, which
    // is to be balanced all the same
    t_oleStarted = SUCCEEDED(OleInitialize(nullptr));
    return t_oleStarted;
}

void AFXAPI AfxEnableControlContainer(COccManager*) {}

namespace afx {

OleThread::~OleThread() {
    if (std::exchange(t_oleStarted, false)) {
        OleUninitialize();
    }
}

} // namespace afx
