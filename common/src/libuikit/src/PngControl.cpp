#include <libUikit/PngControl.h>

#include "Picture.h"

#include <mrl/LoggerStream.h>
#include <mrl/System.h>

#include <algorithm>
#include <cmath>

using libUikit::Picture;

namespace {

constexpr int PRIORITY = 1;

mrl::Logger* logger() {
    static mrl::Logger& instance = mrl::LogFactory::createLogger("libUikit.PngControl");
    return instance.admitting(PRIORITY);
}

// Beside the executable, where an installed program has its pictures; else as the path stands.
std::filesystem::path locate(const std::filesystem::path& path) {
    const std::filesystem::path beside = mrl::System::executableFolder() / path;
    std::error_code ignored;
    return std::filesystem::exists(beside, ignored) ? beside : path;
}

// A device context in memory with a bitmap of its own.
class Canvas {
public:
    /// `pixels` gets the bitmap's memory.
    Canvas(int width, int height, void*& pixels) : m_dc(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height; // from the top
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        pixels = nullptr;
        m_bitmap = CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        m_before = SelectObject(m_dc, m_bitmap);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        SelectObject(m_dc, m_before);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    HDC dc() const { return m_dc; }

private:
    HDC m_dc;
    HBITMAP m_bitmap;
    HGDIOBJ m_before;
};

void blend(HDC target, int x, int y, const Picture& picture) {
    void* pixels = nullptr;
    const Canvas source(picture.width, picture.height, pixels);
    if (pixels == nullptr) {
        return; // no memory: nothing is drawn
    }
    std::copy(picture.pixels.begin(), picture.pixels.end(), static_cast<std::uint32_t*>(pixels));
    GdiFlush();
    GdiAlphaBlend(target, x, y, picture.width, picture.height, source.dc(), 0, 0, picture.width,
                  picture.height, BLENDFUNCTION{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA});
}

} // namespace

class PngControl::Impl {
public:
    // Nothing to decode with: null
    std::shared_ptr<libUikit::GdiplusSession> gdiplus = libUikit::GdiplusSession::acquire();
    Picture picture;
    bool keepAspect = true;
    bool enlarge = false;
    std::filesystem::path reported;

    // The picture as it is shown now, made again when the size or the state changes.
    const Picture& shown(SIZE room, bool enabled) {
        const SIZE size = fitted(room);
        if (m_shown.width != size.cx || m_shown.height != size.cy || m_shownEnabled != enabled) {
            m_shown = libUikit::scaled(picture, size.cx, size.cy);
            m_shown = enabled ? std::move(m_shown) : libUikit::greyed(std::move(m_shown));
            m_shownEnabled = enabled;
        }
        return m_shown;
    }
    void forgetShown() { m_shown = {}; }

private:
    SIZE fitted(SIZE room) const {
        double x = static_cast<double>(room.cx) / picture.width;
        double y = static_cast<double>(room.cy) / picture.height;
        if (keepAspect) {
            x = y = std::min(x, y);
        }
        if (!enlarge) {
            x = std::min(x, 1.0);
            y = std::min(y, 1.0);
        }
        return {std::max(1L, std::lround(x * picture.width)),
                std::max(1L, std::lround(y * picture.height))};
    }

    Picture m_shown;
    bool m_shownEnabled = true;
};

PngControl::PngControl() : m_impl(std::make_unique<Impl>()) {}

PngControl::~PngControl() = default;

bool PngControl::SetImage(const mrl::String& path, bool sizeToImage, bool keepAspect,
                          bool enlarge) {
    const std::filesystem::path file = locate(path.getUCS2Buffer());
    std::string reason = "cannot be shown: GDI+ does not start";
    std::optional<Picture> picture;
    if (m_impl->gdiplus != nullptr) {
        picture = libUikit::decodePicture(file, reason);
    }
    if (!picture && file != m_impl->reported) {
        mrl::LoggerStream(logger(), PRIORITY)
            << "the picture " << file.wstring().c_str() << " " << reason;
        m_impl->reported = file;
    }
    m_impl->picture = picture ? std::move(*picture) : Picture{};
    m_impl->keepAspect = keepAspect;
    m_impl->enlarge = enlarge;
    m_impl->forgetShown();
    if (picture && sizeToImage) {
        SetWindowPos(m_hWnd, nullptr, 0, 0, m_impl->picture.width, m_impl->picture.height,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    Invalidate();
    return picture.has_value();
}

LRESULT PngControl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT: {
        CPaintDC dc(this);
        paint(dc);
        return 0;
    }
    case WM_PRINTCLIENT:
        paint(reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return TRUE; // painting covers everything
    case WM_SETTEXT:
        // Kept, but past the control, which would draw it at once.
        return ::DefWindowProcW(m_hWnd, message, wParam, lParam);
    case WM_ENABLE: // likewise
    case WM_SIZE:
        Invalidate();
        return 0;
    default:
        return CStatic::WindowProc(message, wParam, lParam);
    }
}

void PngControl::paint(HDC dc) {
    CRect client;
    GetClientRect(client);
    void* pixels = nullptr;
    const Canvas canvas(client.Width(), client.Height(), pixels);
    if (pixels == nullptr) {
        return; // an empty control, or no memory
    }
    const auto background = reinterpret_cast<HBRUSH>(
        ::SendMessageW(::GetParent(m_hWnd), WM_CTLCOLORSTATIC,
                       reinterpret_cast<WPARAM>(canvas.dc()), reinterpret_cast<LPARAM>(m_hWnd)));
    FillRect(canvas.dc(), client,
             background != nullptr ? background : GetSysColorBrush(COLOR_3DFACE));
    if (m_impl->picture.width > 0) {
        const Picture& picture =
            m_impl->shown({client.Width(), client.Height()}, IsWindowEnabled() != FALSE);
        blend(canvas.dc(), (client.Width() - picture.width) / 2,
              (client.Height() - picture.height) / 2, picture);
    }
    // In a mirrored dialog the picture itself is not mirrored.
    const DWORD layout = SetLayout(dc, 0);
    BitBlt(dc, 0, 0, client.Width(), client.Height(), canvas.dc(), 0, 0, SRCCOPY);
    SetLayout(dc, layout);
}
