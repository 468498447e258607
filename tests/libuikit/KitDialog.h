// A dialog with everything that the kit adds.
#pragma once

#include <libUikit/MRLLangExt.h>
#include <libUikit/PngControl.h>
#include <libUikit/UiLanguage.h>

#include <support/WindowLooks.h>

#include "dialog_ids.h"

#include <functional>
#include <string>

namespace test {

constexpr UINT WM_KIT_STEP = WM_APP + 7;

class KitDialog : public CDialog, public MRLLangExt {
public:
    explicit KitDialog(CWnd* parent = nullptr) : CDialog(IDD_KIT, parent) {}

    BOOL OnInitDialog() override;
    PngControl picture;
    /// Runs once the dialog is open.
    std::function<void()> step = [this] { EndDialog(0); };
    std::function<HBRUSH(CWnd*)> onColor;
    int pictureClicks = 0;
    int pushes = 0;

    std::wstring text(int id) const { return textOf(*GetDlgItem(id)); }
    LONG letterHeight(int id) const { return test::letterHeight(*GetDlgItem(id)); }
    DWORD styleOf(int id) const {
        return static_cast<DWORD>(GetWindowLongPtrW(*GetDlgItem(id), GWL_STYLE));
    }

protected:
    void PreSubclassWindow() override;
    void DoDataExchange(CDataExchange* exchange) override;
    afx_msg LRESULT OnStep(WPARAM, LPARAM);
    afx_msg HBRUSH OnCtlColor(CDC* dc, CWnd* control, UINT type);
    afx_msg void OnPicture() { ++pictureClicks; }
    afx_msg void OnPush() { ++pushes; }
    DECLARE_MESSAGE_MAP()
};

/// The colours that a control paints, pixel by pixel.
class Painted {
public:
    /// \param layout that of the device context while it paints, as LAYOUT_RTL
    explicit Painted(HWND control, DWORD layout = 0);
    Painted(const Painted&) = delete;
    Painted& operator=(const Painted&) = delete;
    ~Painted();

    COLORREF at(int x, int y) const { return GetPixel(m_dc, x, y); }
    int width() const { return m_size.right; }
    int height() const { return m_size.bottom; }

private:
    RECT m_size{};
    HDC m_dc;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_before = nullptr;
};

/// Read from right to left.
constexpr LANGID HEBREW = MAKELANGID(LANG_HEBREW, SUBLANG_DEFAULT);

/// Sets the language of the user interface for its own lifetime.
struct Language {
    explicit Language(LANGID language) { libUikit::setUiLanguage(language); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    ~Language() { libUikit::setUiLanguage(0); }
};

} // namespace test
