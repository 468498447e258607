// A run of the verification test that takes every path: two forced scans, two refreshes of the
// list, a network with a reason, one whose quality is queried.
#pragma once

#include "ModuleTest.h"

#include <tesk5/TestResult.h>

#include <functional>

namespace test {

class VerificationRun : public ModuleTest {
protected:
    ~VerificationRun() override;

    /// "Lab" is heard, at 60 %, once two scans have ended, and listed, at 50 %, from the second
    /// look on. "Attic" is not connectable, for it is not visible (0x28002); "Cellar", which the
    /// adapter is connected to, claims 100 %.
    void startScene();
    /// Looks for "Lab", with a warning at 55 % and a failure at 20 %: PASS when the second forced
    /// scan heard it, else WARN.
    static tesk5::TestResult verify();

    /// The events raised, as lines.
    std::vector<std::string> raisedLines() const;
    /// How many handles the calls from the `first` on leave open: those of forced scans, and those
    /// whose closing failed.
    std::size_t handlesLeft(std::size_t first = 0) const;

    /// Called after each call of the module, with its number from 1 on.
    std::function<void(std::size_t, const radiosim::Call&)> afterCall;

private:
    std::size_t m_calls = 0;
};

} // namespace test
