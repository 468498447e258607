#include <libUikit/PngControl.h>

#include "Picture.h"

#include <libUikit/GdiResourceManager.h>

#include <mrl/LoggerStream.h>
#include <mrl/System.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int PRIORITY = 1;

// The answer of a window that screen readers are to treat like a system control: this base, and the
// control's place in the list of OBJID_QUERYCLASSNAMEIDX.
constexpr LRESULT TREATED_LIKE = 65536;
constexpr LRESULT BUTTON_CLASS = 2;

// Set in messages of keys: the key was down before.
constexpr LPARAM IS_REPETITION = 1 << 30;

mrl::Logger* logger() {
    static mrl::Logger& instance = mrl::LogFactory::createLogger("libUikit.PngControl");
    return instance.admitting(PRIORITY);
}

// In the executable's folder, where an installed program has its pictures; else the path as it is.
std::filesystem::path locate(const std::filesystem::path& path) {
    const std::filesystem::path beside = mrl::System::executableFolder() / path;
    std::error_code ignored;
    return std::filesystem::exists(beside, ignored) ? beside : path;
}

// A device context in memory, for painting without flicker.
class Canvas {
public:
    Canvas(HDC like, int width, int height)
        : m_dc(CreateCompatibleDC(nullptr)), m_bitmap(CreateCompatibleBitmap(like, width, height)),
          m_before(SelectObject(m_dc, m_bitmap)) {}
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        SelectObject(m_dc, m_before);
        DeleteObject(m_bitmap);
        DeleteDC(m_dc);
    }
    /// False when memory is short.
    bool isSet() const { return m_before != nullptr; }
    HDC dc() const { return m_dc; }

private:
    HDC m_dc;
    HBITMAP m_bitmap;
    HGDIOBJ m_before;
};

} // namespace

class PngControl::Impl {
public:
    // Null when GDI+ does not start.
    std::shared_ptr<libUikit::GdiplusSession> gdiplus = libUikit::GdiplusSession::acquire();
    std::unique_ptr<Gdiplus::Bitmap> picture;
    bool keepAspect = true;
    bool enlarge = false;
    std::filesystem::path reported;

    // Where the picture is drawn in a control of this size.
    CRect place(SIZE control) const {
        const double width = picture->GetWidth();
        const double height = picture->GetHeight();
        double x = control.cx / width;
        double y = control.cy / height;
        if (keepAspect) {
            x = y = std::min(x, y);
        }
        if (!enlarge) {
            x = std::min(x, 1.0);
            y = std::min(y, 1.0);
        }
        const int shownWidth = std::max(1, static_cast<int>(std::lround(x * width)));
        const int shownHeight = std::max(1, static_cast<int>(std::lround(y * height)));
        const int left = (control.cx - shownWidth) / 2;
        const int top = (control.cy - shownHeight) / 2;
        return {left, top, left + shownWidth, top + shownHeight};
    }
};

PngControl::PngControl() : m_impl(std::make_unique<Impl>()) {}

PngControl::~PngControl() = default;

bool PngControl::SetImage(const mrl::String& path, bool sizeToImage, bool keepAspect,
                          bool enlarge) {
    const std::filesystem::path file = locate(path.getUCS2Buffer());
    std::string reason = "cannot be shown: GDI+ does not start";
    m_impl->picture = m_impl->gdiplus != nullptr ? libUikit::readPicture(file, reason) : nullptr;
    const bool isShown = m_impl->picture != nullptr;
    if (!isShown && file != m_impl->reported) {
        mrl::LoggerStream(logger(), PRIORITY)
            << "the picture " << file.wstring().c_str() << " " << reason;
        m_impl->reported = file;
    }
    m_impl->keepAspect = keepAspect;
    m_impl->enlarge = enlarge;
    if (isShown && sizeToImage) {
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, static_cast<int>(m_impl->picture->GetWidth()),
                       static_cast<int>(m_impl->picture->GetHeight()),
                       SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    Invalidate();
    return isShown;
}

bool PngControl::isButton() const {
    return (GetWindowLongPtrW(m_hWnd, GWL_STYLE) & SS_NOTIFY) != 0;
}

void PngControl::PreSubclassWindow() {
    CStatic::PreSubclassWindow();
    if (isButton()) {
        SetWindowLongPtrW(m_hWnd, GWL_STYLE, GetWindowLongPtrW(m_hWnd, GWL_STYLE) | WS_TABSTOP);
    }
}

LRESULT PngControl::buttonProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_BUTTON;
    case WM_GETOBJECT:
        return static_cast<LONG>(lParam) == OBJID_QUERYCLASSNAMEIDX
                   ? TREATED_LIKE + BUTTON_CLASS
                   : CStatic::WindowProc(message, wParam, lParam);
    case WM_KEYDOWN:
        if (wParam != VK_SPACE || (lParam & IS_REPETITION) != 0) {
            return CStatic::WindowProc(message, wParam, lParam);
        }
        [[fallthrough]];
    case BM_CLICK:
        if (IsWindowEnabled()) {
            ::SendMessageW(::GetParent(m_hWnd), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(), STN_CLICKED),
                           reinterpret_cast<LPARAM>(m_hWnd));
        }
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_UPDATEUISTATE:
        Invalidate();
        return CStatic::WindowProc(message, wParam, lParam);
    default:
        return CStatic::WindowProc(message, wParam, lParam);
    }
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
        // Kept, but not by the control, which would draw it at once.
        return ::DefWindowProcW(m_hWnd, message, wParam, lParam);
    case WM_ENABLE: // likewise
    case WM_SIZE:
        Invalidate();
        return 0;
    default:
        return isButton() ? buttonProc(message, wParam, lParam)
                          : CStatic::WindowProc(message, wParam, lParam);
    }
}

bool PngControl::showsFocus() const {
    return ::GetFocus() == m_hWnd && (SendMessage(WM_QUERYUISTATE) & UISF_HIDEFOCUS) == 0;
}

void PngControl::paint(HDC dc) {
    CRect client;
    GetClientRect(client);
    const Canvas canvas(dc, client.Width(), client.Height());
    if (client.IsRectEmpty() || !canvas.isSet()) {
        return;
    }
    const auto background = reinterpret_cast<HBRUSH>(
        ::SendMessageW(::GetParent(m_hWnd), WM_CTLCOLORSTATIC,
                       reinterpret_cast<WPARAM>(canvas.dc()), reinterpret_cast<LPARAM>(m_hWnd)));
    FillRect(canvas.dc(), client,
             background != nullptr ? background : GetSysColorBrush(COLOR_3DFACE));
    if (m_impl->picture != nullptr) {
        libUikit::drawPicture(canvas.dc(), m_impl->place(client.Size()), *m_impl->picture,
                              IsWindowEnabled() == FALSE);
    }
    if (showsFocus()) {
        SetTextColor(canvas.dc(), GetSysColor(COLOR_BTNTEXT));
        SetBkColor(canvas.dc(), GetSysColor(COLOR_BTNFACE));
        DrawFocusRect(canvas.dc(), client);
    }
    // In a mirrored dialog the picture itself is not mirrored.
    const DWORD layout = SetLayout(dc, 0);
    BitBlt(dc, 0, 0, client.Width(), client.Height(), canvas.dc(), 0, 0, SRCCOPY);
    SetLayout(dc, layout);
}
