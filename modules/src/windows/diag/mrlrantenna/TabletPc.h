// The kind of PC, for the size of the list's entries.
#pragma once

/// Whether this is a Tablet PC, which is used by touch.
/// Platform: GetSystemMetrics(SM_TABLETPC)
bool isTabletPc();
