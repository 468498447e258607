// A fact of the PC that the dialog adapts to.
#pragma once

/// Whether this is a Tablet PC, which is operated by finger.
/// Platform: GetSystemMetrics(SM_TABLETPC)
bool isTabletPc();
