// The drawing objects and windows that a process holds.
#pragma once

#include <windows.h>

#include <cstddef>

namespace dialogprobe {

struct GuiObjects {
    /// Fonts, bitmaps, brushes, device contexts and their like.
    std::size_t gdi = 0;
    /// Windows, menus, icons and their like; under Wine, which does not count them, windows alone.
    std::size_t user = 0;

    friend bool operator==(const GuiObjects&, const GuiObjects&) = default;
};

/// The objects of the process `processId` at this moment.
/// Failure: std::runtime_error when the process cannot be read
/// Platform: GetGuiResources, or else the table of drawing objects in the process and EnumWindows
GuiObjects guiObjectsOf(DWORD processId);

} // namespace dialogprobe
