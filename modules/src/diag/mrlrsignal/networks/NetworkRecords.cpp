#include <networks/NetworkRecords.h>

#include <networks/NetworkTexts.h>
#include <records/Records.h>

#include <nativewifi/Channels.h>

#include <chrono>
#include <cmath>

namespace networks {

namespace {

template <typename Value>
mrl::Json knownOrNull(bool known, const Value& value) {
    return known ? mrl::Json(value) : mrl::Json(nullptr);
}

} // namespace

mrl::Json recordOf(const Network& network, const std::string& adapter) {
    constexpr double MILLI = 1000;
    const double age =
        std::chrono::duration<double>(network.age.value_or(mrl::Clock::Duration::zero())).count();
    mrl::Json record;
    records::addName(record, network.name);
    record["bssid"] = readings::bssidText(network.bssid);
    record["dbm"] = knownOrNull(network.dbm.has_value(), network.dbm.value_or(0));
    record["percent"] = network.percent;
    record["ageSeconds"] = knownOrNull(network.age.has_value(), std::round(age * MILLI) / MILLI);
    record["band"] = knownOrNull(!bandText(network).empty(), bandText(network));
    const ULONG channel = nativewifi::channelOf(network.mhz);
    record["channel"] = knownOrNull(channel != 0, channel);
    record["mhz"] = knownOrNull(network.mhz != 0, network.mhz);
    record["widthMhz"] = knownOrNull(network.width != 0, network.width);
    record["security"] = network.security;
    record["device"] = knownOrNull(network.device != 0, network.device);
    record["deviceIsSure"] = knownOrNull(network.device != 0, network.deviceIsSure);
    record["adapter"] = adapter;
    return record;
}

} // namespace networks
