// GDI+ and shared GDI objects for the time that dialogs are up.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>

namespace libUikit {

/// GDI+ runs as long as one of these lives.
class GdiplusSession {
public:
    /// The running session, started when there is none.
    /// \return null when GDI+ cannot be started
    /// Platform: GdiplusStartup, GdiplusShutdown. Any thread.
    static std::shared_ptr<GdiplusSession> acquire();

    GdiplusSession(const GdiplusSession&) = delete;
    GdiplusSession& operator=(const GdiplusSession&) = delete;
    ~GdiplusSession();

private:
    GdiplusSession() = default;
    ULONG_PTR m_token = 0;
};

/// Owns a font.
class Font {
public:
    explicit Font(HFONT handle) : m_handle(handle) {}
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
    ~Font() { DeleteObject(m_handle); }
    HFONT handle() const { return m_handle; }

private:
    HFONT m_handle;
};

} // namespace libUikit

/// Constructed on the stack before a dialog and destroyed after it: starts GDI+, and keeps the
/// fonts that the dialog's controls share. Managers nest; the innermost serves.
///
/// What is in use outlives it: controls and dialogs hold their fonts and GDI+ themselves, so that
/// a dialog may be destroyed after its manager when an exception unwinds the stack.
/// Threads: a manager serves the thread that constructed it.
class GdiResourceManager {
public:
    GdiResourceManager();
    GdiResourceManager(const GdiResourceManager&) = delete;
    GdiResourceManager& operator=(const GdiResourceManager&) = delete;
    ~GdiResourceManager();

    /// The font with these properties: the one already made for them, or a new one when there is
    /// none or no manager on this thread.
    /// \return null when Windows cannot make it
    /// Platform: CreateFontIndirectW
    static std::shared_ptr<const libUikit::Font> font(const LOGFONTW& properties);

private:
    std::shared_ptr<libUikit::GdiplusSession> m_gdiplus;
    std::map<std::wstring, std::shared_ptr<const libUikit::Font>> m_fonts;
    GdiResourceManager* m_outer;
};
