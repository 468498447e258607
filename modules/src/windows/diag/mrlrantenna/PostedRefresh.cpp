#include "PostedRefresh.h"

PostedRefresh& PostedRefresh::instance() {
    static PostedRefresh refresh;
    return refresh;
}

void PostedRefresh::open(MRLRAntennaDlg* dialog, HWND window) {
    const std::lock_guard lock(m_mutex);
    m_dialog = dialog;
    m_window = window;
    m_pending = false;
}

void PostedRefresh::close(MRLRAntennaDlg* dialog) {
    const std::lock_guard lock(m_mutex);
    if (m_dialog == dialog) {
        m_dialog = nullptr;
    }
}

void PostedRefresh::post(const MRLRAntennaDlg* dialog) {
    const std::lock_guard lock(m_mutex);
    if (dialog == nullptr || dialog != m_dialog || m_pending) {
        return;
    }
    // An empty message wakes the loop, which then calls the dialog's OnKickIdle(). A full queue
    // loses the message, but then the loop is awake.
    m_pending = true;
    PostMessageW(m_window, WM_NULL, 0, 0);
}

bool PostedRefresh::takePending(const MRLRAntennaDlg* dialog) {
    const std::lock_guard lock(m_mutex);
    if (dialog != m_dialog || !m_pending) {
        return false;
    }
    m_pending = false;
    return true;
}
