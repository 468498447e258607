// Escape and Enter in a dialog whose cancel or default button is disabled.
#pragma once

#include <windows.h>

namespace libUikit {

/// While it lives, Escape in `dialog` is the command IDCANCEL even when the control with that id
/// is disabled, and Enter pushes only enabled buttons.
class DialogKeys {
public:
    explicit DialogKeys(HWND dialog);
    DialogKeys(const DialogKeys&) = delete;
    DialogKeys& operator=(const DialogKeys&) = delete;
    ~DialogKeys();

    HWND dialog() const { return m_dialog; }
    const DialogKeys* next() const { return m_next; }

private:
    HWND m_dialog;
    HHOOK m_hook;
    DialogKeys* m_next; // the thread's others
};

} // namespace libUikit
