// Starting and ending OLE. Not ended by a thread-local object: that would run inside the system's
// loader lock, where OLE must not be used.
#include <afxdisp.h>

#include "Ole.h"

#include <ole2.h>
#include <utility>

namespace {

thread_local bool t_started = false;

} // namespace

BOOL AFXAPI AfxOleInit() {
    if (!t_started) {
        // RPC_E_CHANGED_MODE, OLE_E_WRONGCOMPOBJ, E_OUTOFMEMORY; S_FALSE when OLE runs on this
        // thread already, which needs an OleUninitialize() of its own too
        t_started = SUCCEEDED(OleInitialize(nullptr));
    }
    return t_started;
}

void AFXAPI AfxEnableControlContainer(COccManager*) {}

void afx::endOle() {
    if (std::exchange(t_started, false)) {
        OleUninitialize();
    }
}
