#include <libUikit/GdiResourceManager.h>

#include "GdiplusHeaders.h"

#include <mrl/SystemLibrary.h>

#include <mutex>
#include <utility>

namespace libUikit {

namespace {

// Wine's GDI+ and common controls load these by name from any directory, whatever
// SetDefaultDllDirectories() says; a DLL that is loaded already is not searched for.
void loadForWine() {
    static const mrl::SystemLibrary decoders(L"windowscodecs.dll");
    static const mrl::SystemLibrary blending(L"msimg32.dll");
}

} // namespace

std::shared_ptr<GdiplusSession> GdiplusSession::acquire() {
    static std::mutex mutex;
    static std::weak_ptr<GdiplusSession> running;
    const std::lock_guard lock(mutex);
    if (std::shared_ptr<GdiplusSession> session = running.lock()) {
        return session;
    }
    loadForWine();
    std::shared_ptr<GdiplusSession> session(new GdiplusSession); // the constructor is private
    Gdiplus::GdiplusStartupInput input;
    // OutOfMemory, UnsupportedGdiplusVersion
    if (Gdiplus::GdiplusStartup(&session->m_token, &input, nullptr) != Gdiplus::Ok) {
        session->m_token = 0;
        return nullptr;
    }
    running = session;
    return session;
}

GdiplusSession::~GdiplusSession() {
    if (m_token != 0) {
        Gdiplus::GdiplusShutdown(m_token);
    }
}

} // namespace libUikit

namespace {

thread_local GdiResourceManager* t_innermost = nullptr;

// Equal properties have equal keys; what follows the name's end in the buffer does not count.
std::wstring keyOf(const LOGFONTW& properties) {
    std::wstring key(properties.lfFaceName);
    for (const LONG part : {properties.lfHeight, properties.lfWidth, properties.lfEscapement,
                            properties.lfOrientation, properties.lfWeight}) {
        key += L'|' + std::to_wstring(part);
    }
    for (const BYTE part :
         {properties.lfItalic, properties.lfUnderline, properties.lfStrikeOut, properties.lfCharSet,
          properties.lfOutPrecision, properties.lfClipPrecision, properties.lfQuality,
          properties.lfPitchAndFamily}) {
        key += L'|' + std::to_wstring(part);
    }
    return key;
}

std::shared_ptr<const libUikit::Font> makeFont(const LOGFONTW& properties) {
    const HFONT handle = CreateFontIndirectW(&properties);
    return handle == nullptr ? nullptr : std::make_shared<const libUikit::Font>(handle);
}

} // namespace

GdiResourceManager::GdiResourceManager()
    : m_gdiplus(libUikit::GdiplusSession::acquire()), m_outer(std::exchange(t_innermost, this)) {}

GdiResourceManager::~GdiResourceManager() {
    t_innermost = m_outer;
}

std::shared_ptr<const libUikit::Font> GdiResourceManager::font(const LOGFONTW& properties) {
    if (t_innermost == nullptr) {
        return makeFont(properties);
    }
    std::shared_ptr<const libUikit::Font>& kept = t_innermost->m_fonts[keyOf(properties)];
    if (kept == nullptr) {
        kept = makeFont(properties);
    }
    return kept;
}
