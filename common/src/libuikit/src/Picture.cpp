#include "Picture.h"

#include <fstream>

namespace libUikit {

namespace {

// A file of a few bytes can claim any size; no dialog has larger pictures.
constexpr UINT MAX_SIDE = 8192;

// The colours' brightness in all three of them, and half of the opacity.
constexpr Gdiplus::ColorMatrix GREYED = {{{0.299F, 0.299F, 0.299F, 0, 0},
                                          {0.587F, 0.587F, 0.587F, 0, 0},
                                          {0.114F, 0.114F, 0.114F, 0, 0},
                                          {0, 0, 0, 0.5F, 0},
                                          {0, 0, 0, 0, 1}}};

} // namespace

std::unique_ptr<Gdiplus::Bitmap> readPicture(const std::filesystem::path& file,
                                             std::string& reason) {
    if (!std::ifstream(file, std::ios::binary)) {
        reason = "cannot be opened";
        return nullptr;
    }
    // Holds the file open as long as it lives.
    Gdiplus::Bitmap source(file.c_str());
    // InvalidParameter, UnknownImageFormat, OutOfMemory: all of them for bad data
    if (source.GetLastStatus() != Gdiplus::Ok || source.GetWidth() == 0 ||
        source.GetHeight() == 0) {
        reason = "is not a picture";
        return nullptr;
    }
    const UINT width = source.GetWidth();
    const UINT height = source.GetHeight();
    if (width > MAX_SIDE || height > MAX_SIDE) {
        reason = "is larger than " + std::to_string(MAX_SIDE) + " pixels";
        return nullptr;
    }
    auto picture = std::make_unique<Gdiplus::Bitmap>(
        static_cast<INT>(width), static_cast<INT>(height), PixelFormat32bppPARGB);
    Gdiplus::Graphics graphics(picture.get());
    // Broken data is found here, when the pixels are needed.
    if (graphics.DrawImage(&source, 0, 0, static_cast<INT>(width), static_cast<INT>(height)) !=
        Gdiplus::Ok) {
        reason = "is a broken picture";
        return nullptr;
    }
    return picture;
}

void drawPicture(HDC dc, const RECT& target, Gdiplus::Bitmap& picture, bool greyed) {
    Gdiplus::Graphics graphics(dc);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    Gdiplus::ImageAttributes attributes;
    // Otherwise the border is mixed with the transparent pixels around the picture.
    attributes.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
    if (greyed) {
        attributes.SetColorMatrix(&GREYED);
    }
    graphics.DrawImage(&picture,
                       Gdiplus::Rect(target.left, target.top, target.right - target.left,
                                     target.bottom - target.top),
                       0, 0, static_cast<INT>(picture.GetWidth()),
                       static_cast<INT>(picture.GetHeight()), Gdiplus::UnitPixel, &attributes);
}

} // namespace libUikit
