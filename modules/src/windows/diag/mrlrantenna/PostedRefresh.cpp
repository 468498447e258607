#include "PostedRefresh.h"

PostedRefresh& PostedRefresh::instance() {
    static PostedRefresh note;
    return note;
}

void PostedRefresh::open(MRLRAntennaDlg* dialog, HWND window) {
    const std::lock_guard lock(m_mutex);
    m_dialog = dialog;
    m_window = window;
    m_waiting = false;
}

void PostedRefresh::close(MRLRAntennaDlg* dialog) {
    const std::lock_guard lock(m_mutex);
    if (m_dialog == dialog) {
        m_dialog = nullptr;
        m_window = nullptr;
        m_waiting = false;
    }
}

void PostedRefresh::leave(const MRLRAntennaDlg* dialog) {
    const std::lock_guard lock(m_mutex);
    if (dialog == nullptr || dialog != m_dialog || m_waiting) {
        return;
    }
    // An empty message: the loop wakes up, finds nothing else to do and lets the dialog look here.
    // A full queue loses it, but then the loop is awake anyway.
    m_waiting = true;
    PostMessageW(m_window, WM_NULL, 0, 0);
}

bool PostedRefresh::take(const MRLRAntennaDlg* dialog) {
    const std::lock_guard lock(m_mutex);
    if (dialog != m_dialog || !m_waiting) {
        return false;
    }
    m_waiting = false;
    return true;
}
