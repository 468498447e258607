// Dialog data exchange: binding members of a dialog to its controls.
#pragma once

class CDataExchange;
class CWnd;

/// Binds `rControl` to the control `nIDC` of the dialog: the first exchange subclasses the
/// control, later ones find it bound and do nothing.
/// Failure: throws CNotSupportedException when the dialog has no such control, or when the control
/// belongs to another object.
void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);
