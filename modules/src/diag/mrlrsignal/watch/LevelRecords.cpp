#include <watch/LevelRecords.h>

#include <nativewifi/Channels.h>
#include <nativewifi/LinkQuality.h>

namespace watch {

namespace {

using mrl::Json;

Json bandOf(std::uint32_t mhz) {
    const std::optional<nativewifi::Band> band = nativewifi::bandOf(mhz);
    if (!band) {
        return nullptr;
    }
    switch (*band) {
    case nativewifi::Band::GHZ_2_4:
        return 2.4;
    case nativewifi::Band::GHZ_5:
        return 5;
    case nativewifi::Band::GHZ_6:
        break;
    }
    return 6;
}

Json recordOf(const readings::Reading& reading, const readings::ChainLevels& chains) {
    mrl::Clock& clock = mrl::Clock::current();
    const auto age =
        std::chrono::duration_cast<mrl::Clock::UtcTime::duration>(clock.now() - reading.at);
    const ULONG channel = nativewifi::channelOf(reading.mhz);
    Json record;
    record["time"] = mrl::utcText(clock.utcNow() - age);
    records::addName(record, reading.ssid);
    record["bssid"] = readings::bssidText(reading.bssid);
    record["dbm"] = reading.dbm;
    record["percent"] = nativewifi::linkQuality(reading.dbm);
    record["source"] = nameOf(reading.source);
    record["channel"] = channel == 0 ? Json(nullptr) : Json(channel);
    record["band"] = bandOf(reading.mhz);
    record["mhz"] = reading.mhz == 0 ? Json(nullptr) : Json(reading.mhz);
    record["chains"] = Json::array();
    for (const std::optional<LONG>& chain : chains) {
        record["chains"].push_back(chain ? Json(*chain) : Json(nullptr));
    }
    return record;
}

} // namespace

bool writeRecords(mrl::OutputStream& stream, const RecordPlan& plan,
                  const std::function<void(const SourceState&)>& onSource,
                  const std::function<bool()>& stop) {
    mrl::Clock& clock = mrl::Clock::current();
    Source source(plan.interfaceGuid, plan.target);
    records::Writer writer(stream, plan.format);
    SourceState before;
    const Moment begin = clock.now();
    while (!stop()) {
        if (plan.longest && clock.now() - begin >= *plan.longest) {
            return true;
        }
        for (const readings::Reading& reading : source.look()) {
            if (!writer.write(recordOf(reading, source.chainsOf(reading)))) {
                return false;
            }
        }
        const SourceState& state = source.state();
        if (state.error != before.error || state.scanError != before.scanError) {
            onSource(state);
            before = state;
        }
        clock.sleep(std::max(source.nextLook() - clock.now(), Moment::zero()));
    }
    return false;
}

} // namespace watch
