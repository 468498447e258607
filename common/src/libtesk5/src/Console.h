// What the person at the console reads of a run.
#pragma once

#include "RunListener.h"

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
    void runStarts(const RunRecord& record, std::size_t planned) override;
    void starts(const PlannedRun& run) override;
    void ended(const Outcome& outcome) override;
    void broken(const PlannedRun& run, const std::string& reason) override;
    void stopping() override;
    void runEnded(const RunRecord& record) override;
};

/// The list of tests, devices, and what would run where.
void showList(const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter);

} // namespace tesk5
