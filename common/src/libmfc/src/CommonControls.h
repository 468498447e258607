// The window classes of the common controls.
#pragma once

namespace afx {

/// Registers them, so that dialog templates can name them. Any thread, any number of times.
/// Platform: InitCommonControlsEx
void registerCommonControls();

} // namespace afx
