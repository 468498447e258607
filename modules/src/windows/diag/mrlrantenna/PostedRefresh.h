// Brings the wireless service's "scan complete" from its thread to the dialog's.
//
// The hook of the scan notification keeps pointing at the last dialog for good, and notifications
// may come in floods; lists and controls must only be touched on the dialog's thread. So a
// notification leaves one note, and the dialog picks it up when it has nothing else to do.
#pragma once

#include <windows.h>

#include <mutex>

class MRLRAntennaDlg;

/// The one note of the process, for the one dialog that there is at a time. Any thread.
class PostedRefresh {
public:
    static PostedRefresh& instance();

    /// From now on notes are for `dialog`, whose window is `window`.
    void open(MRLRAntennaDlg* dialog, HWND window);
    /// Notes for `dialog` are dropped from now on, and the one that waits is too.
    void close(MRLRAntennaDlg* dialog);

    /// Leaves a note, unless one waits already or `dialog` is not the one that is open; wakes the
    /// dialog's message loop. `dialog` is compared, never used: it may be long gone.
    /// Platform: PostMessageW
    void leave(const MRLRAntennaDlg* dialog);
    /// Takes the note. \return whether there was one for `dialog`
    bool take(const MRLRAntennaDlg* dialog);

private:
    std::mutex m_mutex;
    MRLRAntennaDlg* m_dialog = nullptr;
    HWND m_window = nullptr;
    bool m_waiting = false;
};
