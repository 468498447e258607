#include <readings/LevelSource.h>

#include <readings/Query.h>
#include <readings/ReceivedFrames.h>
#include <readings/ScanRequest.h>

#include <nativewifi/Ssid.h>

#include <algorithm>
#include <utility>

namespace readings {

namespace {

using nativewifi::api;
using nativewifi::WlanMemory;

// What drivers report for "none" lies outside: 0, 127, -127, -200.
constexpr LONG LOWEST = -120;
constexpr LONG HIGHEST = 0;

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

constexpr ULONG KHZ_PER_MHZ = 1000;
// No centre frequency has so many MHz, and every one has more kHz.
constexpr ULONG HIGHEST_MHZ = 100'000;

std::uint32_t mhzOf(ULONG frequency) {
    return frequency > HIGHEST_MHZ ? frequency / KHZ_PER_MHZ : frequency;
}

// In either direction: the system's clock can be set.
bool hasMoved(ULONGLONG before, ULONGLONG now) {
    return std::max(before, now) - std::min(before, now) >= MOVED;
}

} // namespace

LevelSource::LevelSource(const GUID& interfaceGuid, Target target)
    : m_guid(interfaceGuid), m_target(std::move(target)) {}

bool LevelSource::isLevel(LONG dbm) {
    const bool good = dbm > LOWEST && dbm < HIGHEST;
    m_dropped.outOfRange += good ? 0 : 1;
    return good;
}

std::optional<Reading> LevelSource::ofLink(Reading reading) {
    const auto quality = query<WLAN_REALTIME_CONNECTION_QUALITY>(
        m_client.get(), m_guid, wlan_intf_opcode_realtime_connection_quality);
    // One link: with several, the address of the connection does not tell which is which.
    if (!quality || quality->ulNumLinks != 1) {
        return std::nullopt;
    }
    const WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO& link = quality->linksInfo[0];
    reading.source = Source::LINK;
    reading.dbm = link.lRssi;
    reading.mhz = mhzOf(link.ulChannelCenterFrequencyMhz);
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
    Target anyBand = m_target;
    anyBand.band.reset();
    if (!anyBand.matches(reading.ssid, reading.bssid, 0)) {
        return std::nullopt;
    }
    std::optional<Reading> found = ofLink(reading);
    if (!found) {
        const auto level = query<LONG>(m_client.get(), m_guid, wlan_intf_opcode_rssi);
        if (!level) {
            return std::nullopt;
        }
        reading.dbm = *level;
        found = reading;
    }
    // Where the system does not tell the connection's frequency, the list decides about a band.
    if (!m_target.matches(found->ssid, found->bssid, found->mhz)) {
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
        // At the first look there is nothing to tell a fresh entry by.
        if (isNew || !hasMoved(known->second, entry.ullHostTimestamp)) {
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
