// The controls of user32, by their messages.
#include <afxwin.h>

#include "MessageArguments.h"

using afx::toInt;
using afx::toWParam;

namespace {

LPARAM toLParam(LPCTSTR text) {
    return reinterpret_cast<LPARAM>(text);
}

} // namespace

int CComboBox::GetCount() const {
    return toInt(SendMessage(CB_GETCOUNT));
}

int CComboBox::GetCurSel() const {
    return toInt(SendMessage(CB_GETCURSEL));
}

int CComboBox::SetCurSel(int nSelect) {
    return toInt(SendMessage(CB_SETCURSEL, toWParam(nSelect)));
}

int CComboBox::GetLBText(int nIndex, LPTSTR lpszText) const {
    return toInt(SendMessage(CB_GETLBTEXT, toWParam(nIndex), toLParam(lpszText)));
}

int CComboBox::InsertString(int nIndex, LPCTSTR lpszString) {
    return toInt(SendMessage(CB_INSERTSTRING, toWParam(nIndex), toLParam(lpszString)));
}

void CComboBox::ResetContent() {
    SendMessage(CB_RESETCONTENT);
}

int CComboBox::SelectString(int nStartAfter, LPCTSTR lpszString) {
    return toInt(SendMessage(CB_SELECTSTRING, toWParam(nStartAfter), toLParam(lpszString)));
}

int CComboBox::GetItemHeight(int nIndex) const {
    return toInt(SendMessage(CB_GETITEMHEIGHT, toWParam(nIndex)));
}

int CComboBox::SetItemHeight(int nIndex, UINT cyItemHeight) {
    return toInt(SendMessage(CB_SETITEMHEIGHT, toWParam(nIndex), MAKELONG(cyItemHeight, 0)));
}
