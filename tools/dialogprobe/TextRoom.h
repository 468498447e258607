// The room that texts have in their controls, and the room that they need.
#pragma once

#include "Control.h"

#include <optional>

namespace dialogprobe {

/// In pixels.
struct TextRoom {
    SIZE has;
    SIZE needs;
};

/// The font that dialog templates ask for, "MS Shell Dlg" of 8 points, at the screen's DPI.
///
/// Font handles of other processes cannot be used, so an invisible dialog of the probe requests the
/// font as the observed dialog does.
class DialogFont {
public:
    /// Failure: std::runtime_error when the dialog cannot be created.
    DialogFont();
    DialogFont(const DialogFont&) = delete;
    DialogFont& operator=(const DialogFont&) = delete;
    ~DialogFont();

    /// \return nothing for a control that is hidden, empty or shows no text of its own
    std::optional<TextRoom> roomOf(const Control& control) const;

private:
    HWND m_dialog;
};

} // namespace dialogprobe
