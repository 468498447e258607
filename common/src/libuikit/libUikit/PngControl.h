// A picture in a dialog.
#pragma once

#include <afxwin.h>
#include <mrl/String.h>

#include <memory>

/// A static control that shows a picture file over the dialog's background, with its transparency,
/// and greyed while it is disabled. The control's text is not drawn: it is the picture's name for
/// screen readers. The picture keeps its sides in mirrored dialogs.
///
/// One with SS_NOTIFY works like a button: the dialog gets STN_CLICKED for clicks, as from any
/// static with that style, and also for the space bar and BM_CLICK. The Tab key reaches it, it
/// shows the keyboard focus, and screen readers announce it as a button.
class PngControl : public CStatic {
public:
    PngControl();
    PngControl(const PngControl&) = delete;
    PngControl& operator=(const PngControl&) = delete;
    ~PngControl() override;

    /// Shows the picture `path`, in place of the one before.
    /// \param path PNG; when relative, looked for beside the executable first and then in the
    /// current folder
    /// \param sizeToImage give the control the picture's size; otherwise the picture is fitted
    /// into the control
    /// \param keepAspect keep the proportion of width to height and centre the picture; otherwise
    /// fill the control with it
    /// \param enlarge let a picture that is smaller than the control grow; otherwise it is only
    /// ever made smaller
    /// \return whether there is a picture now. A file that is missing or broken leaves the control
    /// empty, with one line at priority 1 in the logger "libUikit.PngControl"; asking again for
    /// the same file does not repeat the line.
    /// Platform: GDI+
    bool SetImage(const mrl::String& path, bool sizeToImage, bool keepAspect, bool enlarge);

protected:
    void PreSubclassWindow() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    class Impl;

    void paint(HDC dc);
    bool isButton() const;
    bool showsFocus() const;
    LRESULT buttonProc(UINT message, WPARAM wParam, LPARAM lParam);

    std::unique_ptr<Impl> m_impl;
};
