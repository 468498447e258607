// The OLE part of the application doubles.
#pragma once

#include <afxwin.h>

inline BOOL AfxOleInit() {
    doubles::journal().emplace_back("AfxOleInit");
    return doubles::oleStarts ? 1 : 0;
}

inline void AfxEnableControlContainer() {
    doubles::journal().emplace_back("AfxEnableControlContainer");
}
