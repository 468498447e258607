#include <readings/LevelSource.h>

#include <readings/DriverNumbers.h>
#include <readings/Query.h>
#include <readings/ReceivedFrames.h>
#include <readings/ScanRequest.h>

#include <nativewifi/Ssid.h>

#include <algorithm>
#include <set>
#include <utility>

namespace readings {

namespace {

using nativewifi::api;
using nativewifi::WlanMemory;

constexpr std::chrono::milliseconds CONNECTION_PAUSE{200};
// A list is a copy in memory; beacons come every 100 ms.
constexpr std::chrono::milliseconds LIST_PAUSE{100};

// By how much the host timestamp of an entry moves that was heard again, at least, in 100 ns.
// Beacons come every 100 ms; where a system computes the timestamp from an age, it jitters by some
// milliseconds.
constexpr ULONGLONG MOVED = 200'000;

// A connection that has received nothing for so long is asked no more until it does: either its
// driver does not count beacons, or its access point is gone.
constexpr std::chrono::seconds SILENCE{1};

// An access point that was not heard for so long may have changed its channel.
constexpr std::chrono::seconds CHANNEL_TRUST{2};

// The standard has 15 link numbers.
constexpr ULONG MOST_LINKS = 15;

// In either direction: the system's clock can be set.
bool hasMoved(ULONGLONG before, ULONGLONG now) {
    return std::max(before, now) - std::min(before, now) >= MOVED;
}

} // namespace

const char* nameOf(Source source) {
    switch (source) {
    case Source::LINK:
        return "link";
    case Source::CONNECTION:
        return "connection";
    case Source::SCAN:
        break;
    }
    return "scan";
}

LevelSource::LevelSource(const GUID& interfaceGuid, Target target)
    : m_guid(interfaceGuid), m_target(std::move(target)) {}

bool LevelSource::isLevel(LONG dbm) {
    const bool good = isLevelInDbm(dbm);
    m_dropped.outOfRange += good ? 0 : 1;
    return good;
}

// The frequency on which the list has `bssid` under the connection's name; nothing when it has not,
// or when another radio of that name is on the same frequency.
std::optional<std::uint32_t> LevelSource::listedMhz(const std::string& ssid, const Bssid& bssid) {
    WlanMemory<WLAN_BSS_LIST> list;
    api().WlanGetNetworkBssList(m_client.get(), &m_guid, nullptr, dot11_BSS_type_any, FALSE,
                                nullptr, out(list));
    std::map<std::uint32_t, std::set<Bssid>> radios;
    std::optional<std::uint32_t> found;
    for (DWORD i = 0; list && i < list->dwNumberOfItems; ++i) {
        const WLAN_BSS_ENTRY& entry = list->wlanBssEntries[i];
        if (nativewifi::ssidBytes(entry.dot11Ssid) != ssid) {
            continue;
        }
        const std::uint32_t mhz = mhzOf(entry.ulChCenterFrequency);
        radios[mhz].insert(bssidOf(entry.dot11Bssid));
        if (bssidOf(entry.dot11Bssid) == bssid) {
            found = mhz;
        }
    }
    return found && radios[*found].size() == 1 ? found : std::nullopt;
}

// Of several links the structure tells the frequencies and no addresses: an address is looked up
// in the list, a band is that of one link alone.
std::optional<Reading> LevelSource::ofLink(Reading reading) {
    const auto ask = [this](std::size_t links) {
        return query<WLAN_REALTIME_CONNECTION_QUALITY>(
            m_client.get(), m_guid, wlan_intf_opcode_realtime_connection_quality,
            offsetof(WLAN_REALTIME_CONNECTION_QUALITY, linksInfo) +
                links * sizeof(WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO));
    };
    auto quality = ask(1);
    const ULONG count = quality ? std::min(quality->ulNumLinks, MOST_LINKS) : 0;
    if (count > 1) {
        quality = ask(count);
    }
    if (!quality || count == 0 || quality->ulNumLinks < count) {
        return std::nullopt;
    }
    const WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO* const links = quality->linksInfo;
    const auto mhzOfLink = [](const WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO& link) {
        return mhzOf(link.ulChannelCenterFrequencyMhz);
    };
    const auto* chosen = links;
    if (count > 1) {
        // 0: the list does not tell.
        const std::uint32_t listed =
            m_target.bssid ? listedMhz(reading.ssid, *m_target.bssid).value_or(0) : 0;
        const auto isMeant = [&](const WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO& link) {
            const std::uint32_t mhz = mhzOfLink(link);
            return m_target.bssid ? listed != 0 && listed == mhz
                                  : m_target.band && nativewifi::bandOf(mhz) == m_target.band;
        };
        if (std::count_if(links, links + count, isMeant) != 1) {
            return std::nullopt;
        }
        chosen = std::find_if(links, links + count, isMeant);
        reading.bssid = m_target.bssid.value_or(reading.bssid);
    }
    reading.source = Source::LINK;
    reading.dbm = chosen->lRssi;
    reading.mhz = mhzOfLink(*chosen);
    return reading;
}

// The reading of the connection when it is to the target; its level may be none.
std::optional<Reading> LevelSource::ofConnection() {
    const auto connection = query<WLAN_CONNECTION_ATTRIBUTES>(m_client.get(), m_guid,
                                                              wlan_intf_opcode_current_connection);
    if (!connection || connection->isState != wlan_interface_state_connected) {
        return std::nullopt;
    }
    const WLAN_ASSOCIATION_ATTRIBUTES& association = connection->wlanAssociationAttributes;
    Reading reading{.at = mrl::Clock::current().now(),
                    .source = Source::CONNECTION,
                    .bssid = bssidOf(association.dot11Bssid),
                    .ssid = std::string(nativewifi::ssidBytes(association.dot11Ssid))};
    if (m_target.ssid && *m_target.ssid != reading.ssid) {
        return std::nullopt;
    }
    // A target's address can be that of another link than the one that the connection names.
    std::optional<Reading> found = ofLink(reading);
    if (!found && (!m_target.bssid || *m_target.bssid == reading.bssid)) {
        const auto level = query<LONG>(m_client.get(), m_guid, wlan_intf_opcode_rssi);
        if (!level) {
            return std::nullopt;
        }
        reading.dbm = *level;
        found = reading;
    }
    // Where the system does not tell the connection's frequency, the list decides about a band.
    if (!found || !m_target.matches(found->ssid, found->bssid, found->mhz)) {
        return std::nullopt;
    }
    return found;
}

void LevelSource::scanIfDue(Look& look) {
    const mrl::Clock::Duration now = mrl::Clock::current().now();
    if (m_lastHeard && now - *m_lastHeard > CHANNEL_TRUST) {
        m_channelMhz.reset();
    }
    const std::uint32_t mhz = m_channelMhz.value_or(0);
    if (m_lastScan && now - *m_lastScan < scanInterval(mhz)) {
        return;
    }
    look.scanError = requestScan(m_client.get(), m_guid, mhz);
    m_lastScan = now;
    m_scans += look.scanError == ERROR_SUCCESS ? 1 : 0;
}

void LevelSource::readList(Look& look) {
    WlanMemory<WLAN_BSS_LIST> list;
    look.error = api().WlanGetNetworkBssList(m_client.get(), &m_guid, nullptr, dot11_BSS_type_any,
                                             FALSE, nullptr, out(list));
    if (look.error != ERROR_SUCCESS || !list) {
        return;
    }
    const bool isFirst = !std::exchange(m_hasList, true);
    for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
        const WLAN_BSS_ENTRY& entry = list->wlanBssEntries[i];
        Reading reading{.at = mrl::Clock::current().now(),
                        .dbm = entry.lRssi,
                        .source = Source::SCAN,
                        .bssid = bssidOf(entry.dot11Bssid),
                        .ssid = std::string(nativewifi::ssidBytes(entry.dot11Ssid)),
                        .mhz = mhzOf(entry.ulChCenterFrequency)};
        if (!m_target.matches(reading.ssid, reading.bssid, reading.mhz)) {
            continue;
        }
        look.listed = true;
        const auto [known, isNew] =
            m_heard.try_emplace({reading.bssid, reading.ssid}, entry.ullHostTimestamp);
        // In the first list there is nothing to tell a fresh entry by; a later one was heard since.
        if (isNew ? isFirst : !hasMoved(known->second, entry.ullHostTimestamp)) {
            ++m_dropped.unchanged;
            continue;
        }
        known->second = entry.ullHostTimestamp;
        m_lastHeard = reading.at;
        m_channelMhz =
            m_target.bssid || m_heard.size() == 1 ? std::optional(reading.mhz) : std::nullopt;
        const bool another = std::ranges::any_of(look.readings, [&reading](const Reading& each) {
            return each.bssid == reading.bssid; // under another name
        });
        if (!another && isLevel(reading.dbm)) {
            look.readings.push_back(std::move(reading));
        }
    }
}

Look LevelSource::look() {
    Look look;
    look.error = openClient(m_client);
    if (look.error != ERROR_SUCCESS) {
        return look;
    }
    const bool everything = !m_target.ssid && !m_target.bssid;
    m_connected = !everything && addConnection(look);
    if (m_connected) {
        return look;
    }
    scanIfDue(look);
    readList(look);
    if (everything && look.error != ERROR_SUCCESS) {
        m_connected = addConnection(look);
    }
    // The service has ended, and knows none of its handles when it is back.
    if (look.error == ERROR_INVALID_HANDLE || look.error == ERROR_SERVICE_NOT_ACTIVE) {
        m_client.reset();
        m_hasList = false;
    }
    return look;
}

bool LevelSource::addConnection(Look& look) {
    std::optional<Reading> connected = ofConnection();
    if (!connected) {
        return false;
    }
    look.listed = true;
    if (!isHeard()) {
        ++m_dropped.unchanged;
        return mrl::Clock::current().now() - m_framesAt <= SILENCE;
    }
    if (isLevel(connected->dbm)) {
        look.readings.push_back(std::move(*connected));
    }
    return true;
}

bool LevelSource::isHeard() {
    const std::optional<ULONGLONG> frames = receivedFrames(m_client.get(), m_guid);
    if (frames && frames == m_frames) {
        return false;
    }
    m_frames = frames;
    m_framesAt = mrl::Clock::current().now();
    return true;
}

mrl::Clock::Duration LevelSource::pause() const {
    return m_connected ? CONNECTION_PAUSE : LIST_PAUSE;
}

std::optional<mrl::Clock::Duration> LevelSource::scanEvery() const {
    return m_connected ? std::nullopt : std::optional(scanInterval(m_channelMhz.value_or(0)));
}

} // namespace readings
