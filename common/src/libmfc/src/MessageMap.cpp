// The end of every chain of message maps.
#include <afxwin.h>

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY messageEntries[] = {{0, 0, 0, 0, nullptr}};
    static const AFX_MSGMAP messageMap = {nullptr, messageEntries};
    return &messageMap;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}
