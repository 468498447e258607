// Fresh readings of a level: what one look at the radio adds to what is known already.
//
// A reading is fresh when the system has it from the air since the last one. Drivers list an access
// point with its last level for half a minute after it was heard, so an entry alone is no reading:
// its host timestamp must have moved.
#pragma once

#include <readings/Target.h>

#include <nativewifi/Handles.h>

#include <mrl/Clock.h>

#include <map>
#include <vector>

namespace readings {

/// Where a reading comes from.
enum class Source : std::uint8_t {
    LINK,       ///< the quality of the connection's link
    CONNECTION, ///< the received strength of the connection
    SCAN,       ///< an entry of the BSS list whose host timestamp has moved
};

/// What programs call it: "link", "connection", "scan".
const char* nameOf(Source source);

struct Reading {
    mrl::Clock::Duration at{0}; ///< on the clock in force
    LONG dbm = 0;
    Source source = Source::SCAN;
    Bssid bssid{};
    std::string ssid;      ///< the name's bytes
    std::uint32_t mhz = 0; ///< centre frequency; 0 when the system does not say
};

/// What was looked at and is no reading.
struct Dropped {
    std::size_t unchanged = 0;  ///< what was not heard since the last look
    std::size_t outOfRange = 0; ///< levels that are none: 0 and above, -120 and below
};

struct Look {
    std::vector<Reading> readings;
    /// Why the system gave no list; ERROR_SUCCESS when it did, or when none was needed.
    DWORD error = ERROR_SUCCESS;
    /// Why the system refused to scan; ERROR_SUCCESS when it did not.
    DWORD scanError = ERROR_SUCCESS;
    bool listed = false; ///< the target is connected or in the list, fresh or not
};

/// One interface and one target. One thread.
class LevelSource {
public:
    /// \param interfaceGuid the wireless interface
    /// Failure: without a service each look() says so
    LevelSource(const GUID& interfaceGuid, Target target);

    /// Asks the connection, when it is to the target, and else the list of what was heard, and
    /// starts a scan when one is due. Without a name or an address as the target it asks the
    /// list, and the connection only when the system gives no list. Does not wait.
    /// Platform: WlanOpenHandle, WlanQueryInterface, WlanGetNetworkBssList, WlanScan
    Look look();

    /// How long to wait until the next look can bring more.
    mrl::Clock::Duration pause() const;

    const Dropped& dropped() const { return m_dropped; }
    /// The time from one scan to the next; nothing while the connection alone is asked.
    std::optional<mrl::Clock::Duration> scanEvery() const;
    /// How many scans were started.
    std::size_t scans() const { return m_scans; }

private:
    std::optional<Reading> ofConnection();
    std::optional<Reading> ofLink(Reading reading);
    std::optional<std::uint32_t> listedMhz(const std::string& ssid, const Bssid& bssid);
    bool addConnection(Look& look);
    bool isHeard();
    void scanIfDue(Look& look);
    void readList(Look& look);
    bool isLevel(LONG dbm);

    GUID m_guid;
    Target m_target;
    nativewifi::ClientHandle m_client;
    bool m_connected = false;
    std::optional<ULONGLONG> m_frames;         ///< that the connection has received
    mrl::Clock::Duration m_framesAt{0};        ///< when their number was seen first
    std::optional<std::uint32_t> m_channelMhz; ///< where it was heard, when that is one place
    std::optional<mrl::Clock::Duration> m_lastHeard;
    std::optional<mrl::Clock::Duration> m_lastScan;
    /// Host timestamps. A hidden network can have two entries: named by an answer to a probe, and
    /// without a name by its beacons.
    std::map<std::pair<Bssid, std::string>, ULONGLONG> m_heard;
    bool m_hasList = false; ///< what the client answers can be compared with an earlier list
    std::size_t m_scans = 0;
    Dropped m_dropped;
};

} // namespace readings
