#include "TabletPc.h"

#include <windows.h>

bool isTabletPc() {
    return GetSystemMetrics(SM_TABLETPC) != 0;
}
