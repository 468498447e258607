// What happens to the dialog's window and controls, in order, as lines that a test can compare.
#pragma once

#include <support/Journal.h>

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/// While it lives, the messages that set something in windows of this thread are noted:
///
///     text 1031 Lab            list empty              meter 42         tip 1042 Turn it off
///     icon big, icon small     list insert 0 Lab       meter range 100  tips on, tips off
///     enable 1015              list select 0           meter step 1     icon background
///     disable 1042             list find 0 Lab         list height 0 32
///     opens                    count entries
///
/// Numbers behind the first word are control ids, 0 for the dialog itself. The entries of a Journal
/// stand between them. One at a time.
class ControlJournal {
public:
    ControlJournal();
    ControlJournal(const ControlJournal&) = delete;
    ControlJournal& operator=(const ControlJournal&) = delete;
    ~ControlJournal();

    /// The entries that begin with one of `kinds`; without any, all but calls, log lines and
    /// events.
    std::vector<std::string> entries(const std::vector<std::string_view>& kinds = {}) const;
    /// How many entries are `entry`.
    long count(std::string_view entry) const;
    void clear() { m_journal.clear(); }

    /// Called with each message as it is noted, and its window, before the window gets it.
    std::function<void(const std::string& entry, HWND window)> onEntry;
    /// How many of the messages came from another thread.
    int fromOtherThreads() const { return m_fromOtherThreads; }

private:
    static LRESULT CALLBACK hook(int code, WPARAM wParam, LPARAM lParam);

    Journal m_journal;
    int m_fromOtherThreads = 0;
    HHOOK m_hook;
};

/// Whether a window is a tool tip.
bool isToolTip(HWND window);

} // namespace test
