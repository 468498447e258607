// Looking handlers up, and the end of every chain of message maps.
#include <afxwin.h>

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY messageEntries[] = {{0, 0, 0, 0, nullptr}};
    static const AFX_MSGMAP messageMap = {nullptr, messageEntries};
    return &messageMap;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}

const AFX_MSGMAP_ENTRY* CCmdTarget::findMessageEntry(UINT message, UINT code, UINT id) const {
    for (const AFX_MSGMAP* map = GetMessageMap(); map != nullptr;
         map = map->pfnGetBaseMap == nullptr ? nullptr : map->pfnGetBaseMap()) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage != 0; ++entry) {
            if (entry->nMessage == message && entry->nCode == code && entry->nID <= id &&
                id <= entry->nLastID) {
                return entry;
            }
        }
    }
    return nullptr;
}

BOOL CCmdTarget::OnCmdMsg(UINT nID, int nCode, void*, AFX_CMDHANDLERINFO*) {
    const AFX_MSGMAP_ENTRY* const entry =
        findMessageEntry(WM_COMMAND, static_cast<WORD>(nCode), nID);
    if (entry == nullptr) {
        return FALSE;
    }
    entry->pfn(this, MSG{});
    return TRUE;
}
