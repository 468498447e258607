// Brings the wireless service's "scan complete" from its thread to the dialog's.
//
// The slot of the scan notification keeps pointing at the last dialog after its end, and
// notifications may come in floods; lists and controls must only be touched on the dialog's thread.
// So a notification leaves one refresh pending, and the dialog does it when it is next idle.
#pragma once

#include <windows.h>

#include <mutex>

class MRLRAntennaDlg;

/// The pending refresh of the process's one dialog. Any thread.
class PostedRefresh {
public:
    static PostedRefresh& instance();

    /// From now on refreshes are posted for `dialog`, whose window is `window`.
    void open(MRLRAntennaDlg* dialog, HWND window);
    /// Refreshes of `dialog` are dropped from now on, a pending one too.
    void close(MRLRAntennaDlg* dialog);

    /// Makes a refresh of `dialog` pending and wakes its message loop; does nothing when one is
    /// pending already or `dialog` is not the one that is open. `dialog` is only compared: it may
    /// have been deleted.
    /// Platform: PostMessageW
    void post(const MRLRAntennaDlg* dialog);
    /// \return whether a refresh of `dialog` was pending; it is not any more
    bool takePending(const MRLRAntennaDlg* dialog);

private:
    std::mutex m_mutex;
    MRLRAntennaDlg* m_dialog = nullptr;
    HWND m_window = nullptr;
    bool m_pending = false;
};
