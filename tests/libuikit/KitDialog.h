// A dialog with everything that the kit adds.
#pragma once

#include <libUikit/MRLLangExt.h>
#include <libUikit/PngControl.h>
#include <libUikit/UiLanguage.h>

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

    std::wstring text(int id) const;
    /// Height of the letters of a control's font, in pixels.
    LONG letterHeight(int id) const;
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

/// Sets the language of the user interface for its own lifetime.
struct Language {
    explicit Language(LANGID language) { libUikit::setUiLanguage(language); }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    ~Language() { libUikit::setUiLanguage(0); }
};

} // namespace test
