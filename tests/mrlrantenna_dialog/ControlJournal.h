// What happens to the dialog's window and controls, in order, as lines that a test can compare.
#pragma once

#include <support/VirtualClock.h>

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
///
/// Numbers behind the first word are control ids, 0 for the dialog itself. Sleeps of the clock
/// (`sleep 1000`) and what a test adds with note() stand between them. One at a time.
class ControlJournal {
public:
    explicit ControlJournal(VirtualClock& clock);
    ControlJournal(const ControlJournal&) = delete;
    ControlJournal& operator=(const ControlJournal&) = delete;
    ~ControlJournal();

    /// The entries that begin with one of `kinds`; all without any.
    std::vector<std::string> entries(std::vector<std::string_view> kinds = {});
    /// How many entries are `entry`.
    long count(std::string_view entry);
    void clear();
    void note(std::string entry);

    /// Called with each entry as it is noted, before the window gets the message.
    std::function<void(const std::string&)> onEntry;
    /// How many of the messages came from another thread.
    int fromOtherThreads() const { return m_fromOtherThreads; }

private:
    static LRESULT CALLBACK hook(int code, WPARAM wParam, LPARAM lParam);
    void noteSleeps();

    VirtualClock& m_clock;
    std::size_t m_sleepsSeen = 0;
    std::vector<std::string> m_entries;
    int m_fromOtherThreads = 0;
    HHOOK m_hook;
};

} // namespace test
