// Readings as records, without a view: a line a reading, for pipes and files.
#pragma once

#include <records/Records.h>
#include <watch/Source.h>

#include <functional>
#include <optional>

namespace watch {

struct RecordPlan {
    GUID interfaceGuid{};
    readings::Target target; ///< without a name or an address: every network
    std::optional<Moment> longest;
    records::Format format = records::Format::JSONL;
};

/// Writes each reading as a record: "time" (UTC, with milliseconds), "name", "nameHex", "bssid",
/// "dbm", "percent", "source" ("link", "connection" or "scan"), "channel", "band" (GHz), "mhz"
/// (these three null where the system does not say), and "chains" (dBm by chain; empty where the
/// system does not say). Ends when the time is over, `stop` says so, or a record is lost.
/// \param onSource called when what keeps readings from coming changes
/// \return whether the time is over
bool writeRecords(mrl::OutputStream& stream, const RecordPlan& plan,
                  const std::function<void(const SourceState&)>& onSource,
                  const std::function<bool()>& stop);

} // namespace watch
