// What nl80211 says, as plain values: the border between the messages' bytes (Messages.h) and what
// the client functions make of them (Networks.h, Client.h).
//
// An attribute that the kernel left out is an empty optional. Names, elements and addresses come
// from the air: they have the lengths that their types allow, and any content.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nativewifi::linux_radio {

using Bytes = std::vector<std::uint8_t>;
using MacAddress = std::array<std::uint8_t, 6>;

/// One frequency that a wiphy can use.
struct Channel {
    std::uint32_t frequencyMhz = 0;
    bool disabled = false;             ///< by the regulatory domain in force
    bool noInitiatedRadiation = false; ///< passive scans only
};

/// One radio of the kernel.
struct Wiphy {
    std::uint32_t index = 0;
    std::string name; ///< "phy0"
    std::vector<Channel> channels;
    std::optional<std::uint32_t> receiveAntennas; ///< a bit for each chain that receives
    std::optional<std::uint32_t> availableReceiveAntennas;
};

/// One network interface on a wiphy.
struct Interface {
    std::uint32_t index = 0;
    std::uint32_t wiphy = 0;
    std::string name;       ///< "wlan0"
    std::uint32_t type = 0; ///< NL80211_IFTYPE_...
    MacAddress address{};   ///< the one in use, which may be random
    Bytes ssid;             ///< at most 32 bytes; empty without a connection
    std::optional<std::uint32_t> frequencyMhz;
};

/// What a BSS is to the interface that heard it.
enum class BssStatus : std::uint8_t { NONE, AUTHENTICATED, ASSOCIATED, IBSS_JOINED };

/// One entry of a scan result.
struct Bss {
    MacAddress bssid{};
    std::uint32_t frequencyMhz = 0;
    std::optional<std::int32_t> signalMbm; ///< hundredths of dBm; out-of-range values are left out
    std::optional<std::uint8_t> signalPercent; ///< of drivers without a calibrated level
    std::uint16_t capability = 0;
    std::uint16_t beaconInterval = 0;        ///< time units of 1,024 µs
    std::uint64_t timestamp = 0;             ///< of the last beacon or probe response, in µs
    std::optional<std::uint64_t> lastSeenNs; ///< CLOCK_BOOTTIME
    std::optional<std::uint32_t> ageMs;      ///< of drivers or kernels without `lastSeenNs`
    BssStatus status = BssStatus::NONE;
    Bytes elements; ///< of the last probe response, or else of the last beacon
    std::vector<std::optional<std::int32_t>> chainsDbm; ///< by chain number; absent ones are empty
};

/// The peer of a connection: the access point.
struct Station {
    MacAddress address{};
    std::optional<std::int32_t> signalDbm;
    std::optional<std::int32_t> averageDbm;
    std::vector<std::optional<std::int32_t>> chainsDbm;
    std::vector<std::optional<std::int32_t>> averageChainsDbm;
    std::optional<std::uint32_t> receiveRate;  ///< 100 kbit/s
    std::optional<std::uint32_t> transmitRate; ///< 100 kbit/s
    std::optional<std::uint64_t> receivedPackets;
    std::optional<std::uint64_t> transmittedPackets;
    std::optional<std::uint64_t> transmitRetries;
    std::optional<std::uint64_t> transmitFailures;
    std::optional<std::uint64_t> receiveDrops;
};

/// What a multicast message announces.
struct Event {
    enum class Kind : std::uint8_t {
        OTHER,
        SCAN_STARTED,
        SCAN_COMPLETED,
        SCAN_ABORTED,
        CONNECTED,
        DISCONNECTED,
        INTERFACE_ADDED,
        INTERFACE_REMOVED,
    };
    Kind kind = Kind::OTHER;
    std::optional<std::uint32_t> interface;
    std::optional<std::uint32_t> wiphy;
    std::optional<std::uint16_t> statusCode; ///< of CONNECTED: 0 is success
    Bytes ssid;
    MacAddress bssid{};
};

} // namespace nativewifi::linux_radio
