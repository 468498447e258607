// The order of what a program does through the different test doubles: log lines, events, platform
// calls and pauses in one list.
#pragma once

#include <string>
#include <vector>

namespace test {

/// Collects what the test doubles note while it lives. One at a time.
///
/// Entries begin with their kind:
///   `log 1 mrlrantenna: 245 text`     a line that reached a CapturedLog
///   `pause 100 ms`                    a sleep on a VirtualClock
///   `call WlanScan = 0`               a call of the simulated radio, with its result (ModuleTest)
///   `event error NO_ACCESS_POINT_FOUND`   an event of the test (ModuleTest, DiagModuleDouble)
///   `measurement DetectedSignalStrength`  a value that the test measured (ModuleTest)
///   `survey VISIBLE_NETWORKS`         a list that it recorded (ModuleTest)
///   `progress SEARCHING 31 s`         a phase of the test with its longest time (ModuleTest)
class Journal {
public:
    Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal();

    /// Adds an entry to the journal that lives; does nothing without one. Any thread.
    static void note(std::string entry);

    /// Every entry so far, in order.
    std::vector<std::string> entries() const;
    /// Those of the kinds `kinds`, such as "call" and "pause".
    std::vector<std::string> entries(const std::vector<std::string>& kinds) const;
    /// Discards the entries and frees their memory.
    void clear();

private:
    std::vector<std::string> m_entries;
};

} // namespace test
