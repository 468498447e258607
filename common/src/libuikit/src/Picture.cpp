#include "Picture.h"

#include "GdiplusHeaders.h"

#include <array>
#include <cmath>
#include <fstream>
#include <iterator>
#include <shlwapi.h>

namespace libUikit {

namespace {

// Larger pictures are no dialog's: a file of a few bytes can claim any size.
constexpr UINT MAX_SIDE = 8192;

struct Release {
    void operator()(IStream* stream) const { stream->Release(); }
};

// The source pixels that one target pixel is made of.
struct Span {
    int first;
    std::vector<double> weights;
};

// For each of `to` target pixels over `from` source pixels: a triangle as wide as two target
// pixels, or two source pixels when the picture grows.
std::vector<Span> spans(int from, int to) {
    const double scale = static_cast<double>(from) / to;
    const double reach = std::max(scale, 1.0);
    std::vector<Span> result;
    for (int target = 0; target < to; ++target) {
        const double centre = (target + 0.5) * scale - 0.5;
        const int first = std::max(0, static_cast<int>(std::ceil(centre - reach)));
        const int last = std::min(from - 1, static_cast<int>(std::floor(centre + reach)));
        Span span{first, {}};
        double sum = 0;
        for (int source = first; source <= last; ++source) {
            const double weight = std::max(0.0, 1.0 - std::abs(source - centre) / reach);
            span.weights.push_back(weight);
            sum += weight;
        }
        for (double& weight : span.weights) {
            weight /= sum;
        }
        result.push_back(std::move(span));
    }
    return result;
}

using Channels = std::array<double, 4>;

Channels split(std::uint32_t pixel) {
    return {static_cast<double>(pixel & 0xff), static_cast<double>(pixel >> 8 & 0xff),
            static_cast<double>(pixel >> 16 & 0xff), static_cast<double>(pixel >> 24)};
}

std::uint32_t join(const Channels& channels) {
    std::uint32_t pixel = 0;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        pixel |= static_cast<std::uint32_t>(std::lround(channels[i])) << (8 * i);
    }
    return pixel;
}

// One target pixel out of the source pixels `at(i)`.
template <class At>
std::uint32_t weighted(const Span& span, At at) {
    Channels sum{};
    for (std::size_t i = 0; i < span.weights.size(); ++i) {
        const Channels part = split(at(span.first + static_cast<int>(i)));
        for (std::size_t channel = 0; channel < sum.size(); ++channel) {
            sum[channel] += part[channel] * span.weights[i];
        }
    }
    return join(sum);
}

std::size_t index(const Picture& picture, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
           static_cast<std::size_t>(x);
}

} // namespace

std::optional<Picture> decodePicture(const std::filesystem::path& file, std::string& reason) {
    // Read at once, so that the file is not held open as long as the picture lives.
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        reason = "cannot be opened";
        return std::nullopt;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(input), {}};
    const std::unique_ptr<IStream, Release> stream(SHCreateMemStream(
        reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
    if (stream == nullptr) {
        reason = "does not fit into memory";
        return std::nullopt;
    }
    Gdiplus::Bitmap bitmap(stream.get());
    // InvalidParameter, UnknownImageFormat, OutOfMemory: all of them for bad data
    if (bitmap.GetLastStatus() != Gdiplus::Ok || bitmap.GetWidth() == 0 ||
        bitmap.GetHeight() == 0) {
        reason = "is not a picture";
        return std::nullopt;
    }
    if (bitmap.GetWidth() > MAX_SIDE || bitmap.GetHeight() > MAX_SIDE) {
        reason = "is larger than " + std::to_string(MAX_SIDE) + " pixels";
        return std::nullopt;
    }

    Picture picture{static_cast<int>(bitmap.GetWidth()), static_cast<int>(bitmap.GetHeight()), {}};
    const Gdiplus::Rect all(0, 0, picture.width, picture.height);
    Gdiplus::BitmapData data{};
    // Broken data shows here, when the pixels are needed.
    if (bitmap.LockBits(&all, Gdiplus::ImageLockModeRead, PixelFormat32bppPARGB, &data) !=
        Gdiplus::Ok) {
        reason = "is a broken picture";
        return std::nullopt;
    }
    for (int y = 0; y < picture.height; ++y) {
        const auto* const row =
            reinterpret_cast<const std::uint32_t*>(static_cast<const std::byte*>(data.Scan0) +
                                                   static_cast<std::ptrdiff_t>(y) * data.Stride);
        picture.pixels.insert(picture.pixels.end(), row, row + picture.width);
    }
    bitmap.UnlockBits(&data);
    return picture;
}

Picture scaled(const Picture& picture, int width, int height) {
    Picture narrowed{width, picture.height, {}};
    const std::vector<Span> columns = spans(picture.width, width);
    for (int y = 0; y < picture.height; ++y) {
        for (const Span& span : columns) {
            narrowed.pixels.push_back(
                weighted(span, [&](int x) { return picture.pixels[index(picture, x, y)]; }));
        }
    }
    Picture result{width, height, {}};
    for (const Span& span : spans(picture.height, height)) {
        for (int x = 0; x < width; ++x) {
            result.pixels.push_back(
                weighted(span, [&](int y) { return narrowed.pixels[index(narrowed, x, y)]; }));
        }
    }
    return result;
}

Picture greyed(Picture picture) {
    for (std::uint32_t& pixel : picture.pixels) {
        const Channels c = split(pixel);
        const double light = (0.114 * c[0] + 0.587 * c[1] + 0.299 * c[2]) / 2;
        pixel = join({light, light, light, c[3] / 2});
    }
    return picture;
}

} // namespace libUikit
