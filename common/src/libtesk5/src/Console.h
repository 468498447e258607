// What the person at the console reads of a run.
#pragma once

#include "Runner.h"

#include <mrl/OutputStream.h>

namespace tesk5 {

/// Writes one line in one piece. Whatever could move a cursor or break the line is made visible,
/// for names come from anywhere.
void writeLine(mrl::OutputStream& stream, const std::string& text);

/// `texts` with `separator` between them.
std::string joined(const std::vector<std::string>& texts, const char* separator);

/// Tells a run on standard output, and what broke it on standard error.
class Console final : public RunListener {
public:
    void starts(const PlannedRun& run) override;
    void ended(const Outcome& outcome) override;
    void broken(const PlannedRun& run, const std::string& reason) override;

    /// Why a test that was to run has no device, with every device there is and what is against it.
    static void noDevice(const Test& test, const DeviceList& devices,
                         const std::optional<std::string>& filter);
    /// The last line of a run.
    static void summary(const RunRecord& run);
    /// The answer to the first Ctrl+C. Any thread.
    static void stopping();
};

/// The list of tests, devices, and what would run where.
void showList(const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter);

} // namespace tesk5
