// Pictures in memory: decoding, scaling, greying.
#pragma once

#include <libUikit/GdiResourceManager.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace libUikit {

/// Pixels row by row from the top, 0xAARRGGBB with the colours multiplied by alpha already.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

/// Decodes a picture file. GDI+ must be running.
/// \return nothing when it cannot be read or is no picture, and why in `reason`
/// Platform: GDI+ (PNG and the other formats that it knows)
std::optional<Picture> decodePicture(const std::filesystem::path& file, std::string& reason);

/// `picture` in another size. Each new pixel is the mean of those that it covers, weighted towards
/// the middle, so that nothing is lost when a picture shrinks; between pixels when it grows.
Picture scaled(const Picture& picture, int width, int height);

/// `picture` without colours and half transparent, for a control that is disabled.
Picture greyed(Picture picture);

} // namespace libUikit
