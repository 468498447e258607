// A radio environment, and what goes wrong in it, as plain data.
//
// Tests write it with designated initialisers; people write it as JSON (the README of this folder
// names every key). Enumerated values are numbers as wlanapi.h gives them, so that a test can also
// write one that does not exist.
#pragma once

#include <radiosim/Level.h>
#include <radiosim/Signal.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace radiosim {

using Milliseconds = std::chrono::milliseconds;

/// A scenario that cannot be used.
class ScenarioError : public std::runtime_error {
public:
    ScenarioError(std::string place, std::string reason);

    /// Where: a JSON path such as /interfaces/0/accessPoints/3/ssid ("/" is the whole text), or
    /// "line 3, column 14" for what is not JSON at all;
    /// empty when there is no text.
    const std::string& place() const { return m_place; }
    /// Why, in one sentence without a full stop.
    const std::string& reason() const { return m_reason; }

private:
    std::string m_place;
    std::string m_reason;
};

/// One radio of an access point, an entry of the BSS list.
struct Bss {
    /// Six bytes; all zero: made up from the place in the scenario.
    std::vector<std::uint8_t> bssid = {};
    /// Absent: the network's signal.
    std::optional<Signal> linkQuality = {};
    /// In dBm. Absent: from the link quality, 0 % being -100 dBm and 100 % being -50 dBm.
    std::optional<Level> rssi = {};
    /// What each receive chain of the adapter hears, in dB above `rssi`; empty: the driver reports
    /// no chains. A chain without a value reports nothing.
    std::vector<std::optional<std::int32_t>> chains = {};
    /// How often the adapter hears the BSS: in between, its entry stands still, host timestamp
    /// included. 0: at each look.
    Milliseconds heardEvery{0};
    /// The adapter hears it no more from here on, and lists it all the same, as drivers do.
    std::optional<Milliseconds> heardUntil = {};
    /// 1 to 14 in the 2.4 GHz band, above that in the 5 GHz band.
    std::uint32_t channel = 6;
    std::int32_t phyType = 7; ///< dot11_phy_type_ht
    /// Of the channel, in MHz: 20, 40, 80, 160 or 320.
    std::uint32_t width = 20;
    /// The information elements behind the name, in place of those that are made from the network's
    /// security and the width.
    std::optional<std::vector<std::uint8_t>> elements = {};
};

/// When a network shows.
enum class Visible : std::uint8_t {
    ALWAYS,
    AFTER_SCAN,  ///< from the end of the client's scan on (AccessPoint::scans: of which one)
    BEFORE_SCAN, ///< until then
};

/// One entry of the available-network list, which keeps the scenario's order.
struct AccessPoint {
    /// The name's bytes, at most 32. Empty: a network without a name.
    std::string ssid = {};
    /// The name is not sent: both lists show the network without one.
    bool hidden = false;
    Signal signal = 50U;
    /// Name of the stored profile, UTF-8; empty: none, and the entry lacks the profile flag.
    std::string profile = {};
    /// Absent: connected when the interface is, to this name with this profile.
    std::optional<bool> connected = {};
    bool secured = true;
    std::int32_t auth = 7;    ///< DOT11_AUTH_ALGO_RSNA_PSK
    std::int32_t cipher = 4;  ///< DOT11_CIPHER_ALGO_CCMP
    std::int32_t bssType = 1; ///< dot11_BSS_type_infrastructure
    bool connectable = true;
    /// WLAN_REASON_CODE for a network that is not connectable.
    std::uint32_t reason = 0;
    /// DOT11_PHY_TYPE values; more than 8 set the entry's "more PHY types" flag.
    std::vector<std::int32_t> phyTypes = {7};
    Visible visible = Visible::ALWAYS;
    /// How many scans must have ended for AFTER_SCAN and BEFORE_SCAN.
    std::uint32_t scans = 1;
    /// Time since the start during which the network is there at all.
    std::optional<Milliseconds> from = {};
    std::optional<Milliseconds> to = {};
    /// Entries of the BSS list. Absent: one, with the network's signal. Empty: none.
    std::optional<std::vector<Bss>> bss = {};
    /// Number of BSSIDs in the network list's entry. Absent: as many as there are.
    std::optional<std::uint32_t> bssidCount = {};
    /// False: in the BSS list alone.
    bool inNetworkList = true;
    /// The length field of the name, where it is to lie about it.
    std::optional<std::uint32_t> ssidLength = {};
};

/// Radio states are DOT11_RADIO_STATE: 0 unknown, 1 on, 2 off.
struct Phy {
    std::int32_t software = 1;
    std::int32_t hardware = 1;
};

/// The network that an interface is connected to.
struct Connection {
    std::string ssid = {};
    /// UTF-8. Absent: that of the first entry with this name.
    std::optional<std::string> profile = {};
    /// Absent: the signal of the first entry with this name; 0 without one.
    std::optional<Signal> quality = {};
    std::uint32_t rxRate = 144400; ///< kbit/s
    std::uint32_t txRate = 144400; ///< kbit/s
    std::uint32_t phyIndex = 0;
    std::uint32_t channel = 6;
    /// Whether the connection's quality for each link (opcode 19) is known; systems before
    /// Windows 11 24H2 do not know the opcode.
    bool links = false;
    /// The link's frequency in MHz, as its name says, or in kHz, as its documentation does.
    bool linkFrequencyInKhz = false;
    /// From here on nothing is received any more, although the connection is kept; absent: never.
    std::optional<Milliseconds> heardUntil = {};
    /// Of a connection over several links, those besides `channel`'s.
    struct Link {
        std::uint32_t channel = 36;
        std::int32_t rssi = -60; ///< dBm
    };
    std::vector<Link> otherLinks = {};
};

struct AuthCipherPair {
    std::int32_t auth = 7;
    std::int32_t cipher = 4;
};

/// How a scan ends.
enum class ScanEnd : std::uint8_t {
    COMPLETE, ///< with the scan-complete notification
    FAIL,     ///< with the scan-fail notification; networks that wait for a scan do not show
    SILENT,   ///< complete, without a notification
};

inline constexpr const char* FIRST_INTERFACE = "8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20";

/// One wireless adapter.
struct Interface {
    /// 36 characters, without braces.
    std::string guid = FIRST_INTERFACE;
    /// UTF-8, at most 255 UTF-16 units.
    std::string description = "Simulated Wireless Adapter";
    /// WLAN_INTERFACE_STATE. Absent: connected or disconnected, as the connection and the radio
    /// say.
    std::optional<std::int32_t> state = {};
    bool autoconf = true;
    bool backgroundScan = true;
    bool mediaStreaming = false;
    std::int32_t bssType = 1;
    std::vector<Phy> phys = {Phy{}};
    std::optional<Connection> connection = {};
    /// Of the connection, in dBm. Absent: from the connection's quality.
    std::optional<Level> rssi = {};
    /// A bit for each receive antenna. Absent: the driver does not tell them.
    std::optional<std::uint32_t> receiveAntennas = {};
    Milliseconds scanDuration{4000};
    ScanEnd scanEnd = ScanEnd::COMPLETE;
    std::vector<AuthCipherPair> infrastructurePairs = {AuthCipherPair{}};
    std::vector<AuthCipherPair> adhocPairs = {AuthCipherPair{}};
    /// Two letters each.
    std::vector<std::string> countries = {"US"};
    std::vector<AccessPoint> accessPoints = {};
};

/// What a function does wrong. The fields that are set all take effect, in the order given here.
struct Fault {
    /// Name as exported; a GUID conversion (UuidFromStringW, ...) where the engine is linked in.
    std::string function = {};
    /// Which of the calls that match: 1 the first since the fault was added; 0 each of them.
    std::uint32_t nth = 0;
    /// Only calls of WlanQueryInterface and WlanSetInterface with this opcode match.
    std::optional<std::uint32_t> opcode = {};
    /// The call takes this much longer.
    Milliseconds delay{0};
    /// Returned at once: nothing is done and no out-parameter is written.
    std::optional<std::uint32_t> code = {};
    /// WlanQueryInterface: the block has this many bytes, and its size says so.
    std::optional<std::uint32_t> dataSize = {};
    /// The count of items that a block states, whatever it holds.
    std::optional<std::uint32_t> count = {};
    /// Success with a null pointer for the block.
    bool noData = false;
    /// WlanOpenHandle: the version that is negotiated.
    std::optional<std::uint32_t> version = {};
};

/// A notification that no call causes.
struct Notification {
    /// Time since the start. Without it: at the end of a scan.
    std::optional<Milliseconds> at = {};
    /// 1 the first ended scan of the interface, 0 each; used when `at` is absent.
    std::uint32_t afterScan = 0;
    std::uint32_t interfaceIndex = 0;
    std::uint32_t source = 8; ///< WLAN_NOTIFICATION_SOURCE_ACM
    std::uint32_t code = 7;   ///< wlan_notification_acm_scan_complete
    /// The bytes that come with it; none: a null pointer.
    std::vector<std::uint8_t> data = {};
};

/// What a function answered at a moment of a capture.
struct CapturedAnswer {
    Milliseconds at{0}; ///< since the start
    std::uint32_t result = 0;
    std::optional<std::vector<std::uint8_t>> block = {}; ///< absent: none, or a null pointer
    std::uint32_t dataSize = 0;                          ///< as WlanQueryInterface states it
};

/// All answers of one function about one interface, in the order of their times. The last one
/// before a call answers it; before the first one, the first.
struct CapturedAnswers {
    std::string function = {};
    std::string guid = {}; ///< empty for a function about no interface
    std::optional<std::uint32_t> opcode = {};
    std::vector<CapturedAnswer> answers = {};
};

struct Scenario {
    std::vector<Interface> interfaces = {Interface{}};
    std::vector<Fault> faults = {};
    std::vector<Notification> notifications = {};
    /// The version that WlanOpenHandle negotiates. Absent: the client's, at most 2.
    std::optional<std::uint32_t> serviceVersion = {};
    /// Take the place of what the interfaces show, until the client switches a radio.
    std::vector<CapturedAnswers> captured = {};

    /// Refuses what cannot be simulated: a GUID that is none or that two interfaces have, and a
    /// notification of an interface that does not exist.
    /// Failure: ScenarioError
    void check() const;

    /// Reads a JSON text. Unknown keys, keys written twice, and values of the wrong type or out of
    /// range are refused, and what check() refuses.
    /// Failure: ScenarioError
    static Scenario fromJson(std::string_view text);

    /// What a capture of the program's option --capture shows, at its times.
    /// Failure: ScenarioError, with the capture's line as the place
    static Scenario fromCapture(std::string_view text);

    /// The same from a file: a scenario of at most 16 MiB, or a capture.
    /// Failure: ScenarioError, without a place when the file cannot be read
    static Scenario fromFile(const std::filesystem::path& file);

    /// An office: one adapter, connected, and a dozen networks around it.
    static Scenario builtIn();
    /// The JSON text that builtIn() is read from.
    static std::string_view builtInText();
};

} // namespace radiosim
