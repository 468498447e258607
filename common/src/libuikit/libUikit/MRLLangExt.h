// Dialogs that follow the language of the user interface.
#pragma once

#include <afxwin.h>

#include <memory>

/// Second base class of a dialog, which passes two of its overrides on:
///
///     void PreSubclassWindow() override { CDialog::...; MRLLangExt::PreSubclassWindow(this); }
///     BOOL OnInitDialog() override { CDialog::...; MRLLangExt::OnInitDialog(this); ... }
///
/// With libUikit::uiLanguage() the dialog then
/// - is mirrored for languages written from right to left: its controls change sides, a progress
///   bar fills from the right, pictures stay as they are. Static texts are read from right to left
///   then, except those with SS_NOPREFIX, the style for names from elsewhere: the first letter of
///   a name says which way it is read, so that "Office (5G)" keeps its brackets where they are;
/// - shows control characters in static texts with SS_NOPREFIX as the console does, "\x1B"; their
///   WM_GETTEXT goes on with the text as it was set;
/// - has a font with the language's letters: the template's, or else one that is known for the
///   language, or else any that has them;
/// - shows texts whole: a static text or a button whose text would be clipped gets a smaller font
///   or wraps, down to three fifths of the font's height; what is still too long ends in "...".
///   This holds for later texts and sizes as well. It is meant for languages that are added later:
///   templates should have room for the texts that are shipped.
///
/// On a screen of another density (WM_DPICHANGED) it takes the place that Windows suggests, and its
/// controls, fonts and icons follow. Its icons (WM_SETICON) are shown in the sizes of its density.
///
/// Keys: where the control with IDCANCEL is disabled, Windows' dialog manager ignores Escape; here
/// it reaches OnCancel() all the same. Enter pushes the button that has the focus, or else the
/// default button if that one is enabled, and does nothing otherwise.
///
/// Threads: the dialog's.
class MRLLangExt {
public:
    MRLLangExt();
    MRLLangExt(const MRLLangExt&) = delete;
    MRLLangExt& operator=(const MRLLangExt&) = delete;
    virtual ~MRLLangExt();

    /// Chooses the layout, before the dialog has controls.
    void PreSubclassWindow(CWnd* dialog);
    /// Chooses fonts and fits texts, now and from now on.
    void OnInitDialog(CWnd* dialog);
    /// Called after OnInitDialog(), before `list` has entries: the entries of a drop-down list are
    /// names, read from left to right in mirrored dialogs too. Control characters in them are
    /// shown as the console shows them, "\x1B"; messages of the list go on with the names as they
    /// are. Without entries it does not look selected when it has the keyboard focus.
    void ShowsNames(const CComboBox& list);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};
