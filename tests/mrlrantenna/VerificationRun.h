// Runs of the verification test, whatever their parameters.
#pragma once

#include "ModuleTest.h"

#include <tesk5/TestResult.h>

#include <functional>

namespace test {

class VerificationRun : public ModuleTest {
protected:
    ~VerificationRun() override;

    /// A radio on which a run takes every path: two forced scans, two refreshes of the list, a
    /// network with a reason, one whose quality is queried. "Lab" is heard, at 60%, once two scans
    /// have ended, and listed, at 50%, from the second look on. "Attic" is not connectable, for it
    /// is not visible (0x28002); "Cellar", which the adapter is connected to, claims 100%.
    void startScene();
    /// Looks for `ssid` with a warning at `warn` % and a failure at `fail` %. In the scene, the
    /// result is PASS when the second forced scan heard "Lab", else WARN.
    static tesk5::TestResult verify(const char* ssid = "Lab", const char* warn = "55",
                                    const char* fail = "20");

    /// How many handles the calls from the `first` on leave open: those of forced scans, and those
    /// whose closing failed.
    std::size_t handlesLeft(std::size_t first = 0) const;

    /// Called after each call of the module in the scene, with its number from 1 on.
    std::function<void(std::size_t, const radiosim::Call&)> afterCall;

private:
    std::size_t m_calls = 0;
};

} // namespace test
