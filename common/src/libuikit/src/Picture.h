// Pictures in memory, drawn with GDI+.
#pragma once

#include "GdiplusHeaders.h"

#include <filesystem>
#include <memory>
#include <string>

namespace libUikit {

/// Reads a picture file, which is closed again when the call returns. GDI+ must be running, and as
/// long as the picture lives.
/// \return null when the file cannot be read or is no picture, and why in `reason`
/// Platform: GDI+ (PNG and the other formats that it knows)
std::unique_ptr<Gdiplus::Bitmap> readPicture(const std::filesystem::path& file,
                                             std::string& reason);

/// Draws `picture` over `target`, scaled to it.
/// \param greyed without colours and half transparent, for a control that is disabled
void drawPicture(HDC dc, const RECT& target, Gdiplus::Bitmap& picture, bool greyed);

} // namespace libUikit
