// What the client functions answer from the kernel's messages and files.
#include "LinuxRadioTest.h"
#include "support/VirtualClock.h"

#include <nativewifi/Guid.h>
#include <nativewifi/Ssid.h>

#include <mrl/String.h>

#include <gmock/gmock.h>

#include <linux/rfkill.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

namespace nativewifi::linux_radio {
namespace {

using namespace std::chrono_literals;
using namespace test::netlink;
using test::accessPoint;
using test::connectedInterface;
using test::FakeInterface;
using test::FakeRequest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr DWORD RADIO_IS_OFF = ERROR_NDIS_DOT11_POWER_STATE_INVALID;

class LinuxTable : public test::LinuxRadioTest {};

std::string descriptionOf(const WLAN_INTERFACE_INFO& info) {
    return mrl::String(fixedText(info.strInterfaceDescription)).getUTF8String().bytes();
}

// --- opening ---

TEST(LinuxService, IsNotActiveWithoutNl80211AndRefusesWithoutPermission) {
    const struct {
        int error;
        DWORD code;
    } cases[] = {
        {ENOENT, ERROR_SERVICE_NOT_ACTIVE},
        {EPROTONOSUPPORT, ERROR_SERVICE_NOT_ACTIVE},
        {EAFNOSUPPORT, ERROR_SERVICE_NOT_ACTIVE},
        {EPERM, ERROR_ACCESS_DENIED},
        {EACCES, ERROR_ACCESS_DENIED},
        {EMFILE, ERROR_REMOTE_SESSION_LIMIT_EXCEEDED},
        {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
        {ETIMEDOUT, ERROR_TIMEOUT},
    };
    test::LinuxRadio radio;
    for (const auto& [error, code] : cases) {
        radio.kernel().refuseConnections(error);
        DWORD version = 77;
        HANDLE handle = &version;
        EXPECT_EQ(api().WlanOpenHandle(2, nullptr, &version, &handle), code) << error;
        EXPECT_EQ(handle, &version);
        EXPECT_EQ(version, 77U);
    }
    EXPECT_EQ(radio.service().openHandles(), 0U);
}

TEST_F(LinuxTable, ClosesItsConnectionsWithTheHandle) {
    start();
    EXPECT_EQ(kernel().openConnections(), 1U);
    ownedClient().reset();
    EXPECT_EQ(kernel().openConnections(), 0U);
}

TEST_F(LinuxTable, KnowsNoClosedHandleAgain) {
    start();
    const HANDLE closed = client();
    ownedClient().reset();
    for (int i = 0; i < 100; ++i) {
        ClientHandle other;
        DWORD version = 0;
        ASSERT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(other)), ERROR_SUCCESS);
        EXPECT_NE(other.get(), closed);
    }
}

// --- interfaces ---

TEST_F(LinuxTable, ListsTheStationInterfacesOfEachRadioInOrder) {
    FakeInterface second{.index = 9,
                         .wiphy = 1,
                         .name = "wlan1",
                         .permanentAddress = "02:00:00:00:01:00",
                         .rfkill = 1};
    start({second, FakeInterface{}});
    kernel().add({.index = 4, .name = "ap0", .type = NL80211_IFTYPE_AP, .rfkill = 0});
    std::vector<WLAN_INTERFACE_INFO> infos;
    ASSERT_EQ(enumerate(infos), ERROR_SUCCESS);
    ASSERT_EQ(infos.size(), 2U);
    EXPECT_EQ(guidText(infos[0].InterfaceGuid), "6d726c72-6c78-8000-8000-020000000003");
    EXPECT_EQ(guidText(infos[1].InterfaceGuid), "6d726c72-6c78-8000-8000-020000000100");
    EXPECT_EQ(descriptionOf(infos[0]), "wlan0");
    EXPECT_EQ(infos[0].isState, wlan_interface_state_disconnected);
}

TEST_F(LinuxTable, ListsNoInterfaceWithoutOne) {
    start({});
    std::vector<WLAN_INTERFACE_INFO> infos;
    EXPECT_EQ(enumerate(infos), ERROR_SUCCESS);
    EXPECT_THAT(infos, IsEmpty());
}

TEST_F(LinuxTable, LeavesOutAnInterfaceThatGoesWhileItIsListed) {
    FakeInterface second{.index = 9, .name = "wlan1", .permanentAddress = "02:00:00:00:01:00"};
    second.wiphy = 1;
    start({FakeInterface{}, second});
    kernel().fail(NL80211_CMD_GET_STATION, ENODEV);
    std::vector<WLAN_INTERFACE_INFO> infos;
    EXPECT_EQ(enumerate(infos), ERROR_SUCCESS);
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(descriptionOf(infos[0]), "wlan1");
}

TEST_F(LinuxTable, SaysTheStateOfAnInterface) {
    start();
    const auto state = [this] {
        return query<WLAN_INTERFACE_STATE>(wlan_intf_opcode_interface_state);
    };
    EXPECT_EQ(state(), wlan_interface_state_disconnected);
    kernel().change(3, [](FakeInterface& interface) { interface.ssid = "Lab"; });
    EXPECT_EQ(state(), wlan_interface_state_associating);
    kernel().change(3, [](FakeInterface& interface) { interface.connection = Parts{}; });
    EXPECT_EQ(state(), wlan_interface_state_connected);
    kernel().setUp("wlan0", false);
    EXPECT_EQ(state(), wlan_interface_state_not_ready);
    kernel().setSwitch(3, "hard", true);
    EXPECT_EQ(state(), wlan_interface_state_disconnected);
}

// --- networks ---

TEST_F(LinuxTable, ListsWhatTheKernelHeardOf) {
    FakeInterface interface;
    interface.heard = {accessPoint("Lab", 1, -6000), accessPoint("Lab", 2, -5500),
                       accessPoint("Yard", 3, -5000)};
    start({interface});
    std::vector<std::string> names;
    EXPECT_EQ(networks(&names), ERROR_SUCCESS);
    EXPECT_THAT(names, ElementsAre("Yard", "Lab"));
    DWORD count = 0;
    EXPECT_EQ(stations(&count), ERROR_SUCCESS);
    EXPECT_EQ(count, 3U);
}

TEST_F(LinuxTable, KeepsTheTimestampOfAStationThatWasNotHeardAgain) {
    test::VirtualClock wall;
    FakeInterface interface;
    HeardBss heard = accessPoint("Lab", 1);
    heard.lastSeenNs = test::FakeKernel::BOOT_TIME_NS;
    interface.heard = {heard};
    start({interface});
    ULONGLONG first = 0;
    EXPECT_EQ(stations(nullptr, &first), ERROR_SUCCESS);
    wall.sleep(1h);
    ULONGLONG second = 0;
    EXPECT_EQ(stations(nullptr, &second), ERROR_SUCCESS);
    EXPECT_EQ(second, first) << "the clock of the PC was set, and nothing was heard";
}

TEST_F(LinuxTable, LeavesOutOfBothListsWhatWasNotHeardOfFor15Seconds) {
    constexpr std::uint64_t NS_PER_MS = 1'000'000;
    FakeInterface interface;
    HeardBss fresh = accessPoint("Fresh", 1);
    fresh.lastSeenNs = test::FakeKernel::BOOT_TIME_NS - 15'000 * NS_PER_MS;
    HeardBss old = accessPoint("Old", 2);
    old.lastSeenNs = test::FakeKernel::BOOT_TIME_NS - 15'001 * NS_PER_MS;
    interface.heard = {fresh, old};
    start({interface});
    std::vector<std::string> names;
    EXPECT_EQ(networks(&names), ERROR_SUCCESS);
    EXPECT_THAT(names, ElementsAre("Fresh"));
    DWORD count = 0;
    EXPECT_EQ(stations(&count), ERROR_SUCCESS);
    EXPECT_EQ(count, 1U);
}

TEST_F(LinuxTable, ScansByItselfForAListOfNetworksWhenNothingWasHeardForFiveSeconds) {
    FakeInterface interface;
    interface.heard = {accessPoint("Lab")};
    interface.heard.front().lastSeenNs = test::FakeKernel::BOOT_TIME_NS;
    start({interface});
    const auto scansAfter = [this](std::chrono::milliseconds time) {
        kernel().pass(time);
        std::vector<std::string> names;
        EXPECT_EQ(networks(&names), ERROR_SUCCESS);
        EXPECT_THAT(names, ElementsAre("Lab"));
        return kernel().requestCount(NL80211_CMD_TRIGGER_SCAN);
    };
    EXPECT_EQ(scansAfter(5s), 0U);
    EXPECT_EQ(scansAfter(1ms), 1U);
    EXPECT_EQ(scansAfter(4999ms), 1U) << "the scan may still run";
    EXPECT_EQ(stations(), ERROR_SUCCESS);
    EXPECT_EQ(scansAfter(1ms), 2U);
}

TEST_F(LinuxTable, ScansByItselfWhereOnlyTheConnectionIsHeard) {
    FakeInterface interface = connectedInterface();
    interface.heard.pop_back();
    start({interface});
    EXPECT_EQ(networks(), ERROR_SUCCESS);
    EXPECT_EQ(kernel().requestCount(NL80211_CMD_TRIGGER_SCAN), 1U);
}

TEST_F(LinuxTable, ListsNetworksWhereItMayNotScan) {
    start();
    for (const int error : {EPERM, EBUSY, EOPNOTSUPP}) {
        kernel().fail(NL80211_CMD_TRIGGER_SCAN, error);
        kernel().pass(5s);
        EXPECT_EQ(networks(), ERROR_SUCCESS) << error;
    }
    EXPECT_EQ(kernel().requestCount(NL80211_CMD_TRIGGER_SCAN), 3U);
}

TEST_F(LinuxTable, ListsThousandsOfStations) {
    FakeInterface interface;
    for (unsigned i = 0; i < 2000; ++i) {
        HeardBss heard = accessPoint("Lab" + std::to_string(i));
        heard.bssid[4] = static_cast<std::uint8_t>(i / 256);
        heard.bssid[5] = static_cast<std::uint8_t>(i);
        interface.heard.push_back(heard);
    }
    start({interface});
    std::vector<std::string> names;
    EXPECT_EQ(networks(&names), ERROR_SUCCESS);
    EXPECT_EQ(names.size(), 2000U);
    DWORD count = 0;
    EXPECT_EQ(stations(&count), ERROR_SUCCESS);
    EXPECT_EQ(count, 2000U);
}

TEST_F(LinuxTable, TakesAnInterruptedDumpAgain) {
    FakeInterface interface;
    interface.heard = {accessPoint("Lab", 1), accessPoint("Yard", 2)};
    start({interface});
    kernel().interrupt(NL80211_CMD_GET_SCAN, 2);
    std::vector<std::string> names;
    EXPECT_EQ(networks(&names), ERROR_SUCCESS);
    EXPECT_THAT(names, ElementsAre("Lab", "Yard"));
    EXPECT_EQ(kernel().requestCount(NL80211_CMD_GET_SCAN), 3U);
    kernel().interrupt(NL80211_CMD_GET_SCAN, 1);
    DWORD count = 0;
    EXPECT_EQ(stations(&count), ERROR_SUCCESS);
    EXPECT_EQ(count, 2U) << "each once";
}

TEST_F(LinuxTable, TakesADumpThatIsAlwaysInterruptedFiveTimesAndUsesTheLast) {
    FakeInterface interface;
    interface.heard = {accessPoint("Lab", 1), accessPoint("Yard", 2)};
    start({interface});
    kernel().interrupt(NL80211_CMD_GET_SCAN, 100);
    std::vector<std::string> names;
    EXPECT_EQ(networks(&names), ERROR_SUCCESS);
    EXPECT_THAT(names, ElementsAre("Lab"));
    EXPECT_EQ(kernel().requestCount(NL80211_CMD_GET_SCAN), 5U);
}

// --- queries ---

TEST_F(LinuxTable, SaysWhatIsKnownOfAConnection) {
    start({connectedInterface()});
    const auto attributes = query<WLAN_CONNECTION_ATTRIBUTES>(wlan_intf_opcode_current_connection);
    EXPECT_EQ(attributes.isState, wlan_interface_state_connected);
    const WLAN_ASSOCIATION_ATTRIBUTES& association = attributes.wlanAssociationAttributes;
    EXPECT_EQ(ssidBytes(association.dot11Ssid), "Lab");
    EXPECT_EQ(association.dot11BssType, dot11_BSS_type_infrastructure);
    EXPECT_THAT(association.dot11Bssid, ElementsAre(2, 0, 0, 0, 0, 1));
    EXPECT_EQ(association.wlanSignalQuality, 78U); // -61 dBm
    EXPECT_EQ(association.ulRxRate, 130000U);
    EXPECT_EQ(association.ulTxRate, 117000U);
    const WLAN_SECURITY_ATTRIBUTES& security = attributes.wlanSecurityAttributes;
    EXPECT_EQ(security.bSecurityEnabled, TRUE);
    EXPECT_EQ(security.bOneXEnabled, FALSE);
    EXPECT_EQ(security.dot11AuthAlgorithm, DOT11_AUTH_ALGO_RSNA_PSK);
    EXPECT_EQ(security.dot11CipherAlgorithm, DOT11_CIPHER_ALGO_CCMP);
    EXPECT_EQ(query<ULONG>(wlan_intf_opcode_channel_number), 6U);
    EXPECT_EQ(query<LONG>(wlan_intf_opcode_rssi), -61);
    EXPECT_EQ(query<DOT11_BSS_TYPE>(wlan_intf_opcode_bss_type), dot11_BSS_type_infrastructure);
    EXPECT_EQ(query<ULONG>(wlan_intf_opcode_current_operation_mode), 1U);
}

TEST_F(LinuxTable, TakesTheLevelOfAConnectionWhereTheDriverGivesIt) {
    FakeInterface interface = connectedInterface();
    interface.connection = Parts{s8(NL80211_STA_INFO_SIGNAL_AVG, -64)};
    start({interface});
    EXPECT_EQ(query<LONG>(wlan_intf_opcode_rssi), -64);
    kernel().change(3, [](FakeInterface& silent) { silent.connection = Parts{}; });
    EXPECT_EQ(query<LONG>(wlan_intf_opcode_rssi), -60) << "the access point's in the scan result";
    kernel().change(3, [](FakeInterface& silent) { silent.heard.clear(); });
    EXPECT_EQ(resultOf(wlan_intf_opcode_rssi), ERROR_NOT_SUPPORTED);
}

TEST_F(LinuxTable, KnowsTheConnectionOfADriverThatListsNoStations) {
    start({connectedInterface()});
    kernel().fail(NL80211_CMD_GET_STATION, EOPNOTSUPP);
    EXPECT_EQ(query<LONG>(wlan_intf_opcode_rssi), -61) << "asked for by its address";
    kernel().fail(NL80211_CMD_GET_STATION, EOPNOTSUPP, 2);
    EXPECT_EQ(query<LONG>(wlan_intf_opcode_rssi), -60) << "that of the scan result";
    kernel().fail(NL80211_CMD_GET_STATION, EOPNOTSUPP);
    kernel().fail(NL80211_CMD_GET_STATION, ENOENT);
    EXPECT_EQ(resultOf(wlan_intf_opcode_rssi), ERROR_INVALID_STATE) << "gone meanwhile";
    kernel().fail(NL80211_CMD_GET_STATION, EOPNOTSUPP);
    kernel().change(3, [](FakeInterface& interface) { interface.heard[0].status.reset(); });
    EXPECT_EQ(resultOf(wlan_intf_opcode_rssi), ERROR_INVALID_STATE);
}

TEST_F(LinuxTable, DescribesAConnectionThatTheScanResultDoesNotShow) {
    FakeInterface interface = connectedInterface();
    interface.heard.clear();
    start({interface});
    const auto attributes = query<WLAN_CONNECTION_ATTRIBUTES>(wlan_intf_opcode_current_connection);
    EXPECT_EQ(ssidBytes(attributes.wlanAssociationAttributes.dot11Ssid), "Lab");
    EXPECT_THAT(attributes.wlanAssociationAttributes.dot11Bssid, ElementsAre(2, 0, 0, 0, 0, 1));
    EXPECT_EQ(query<ULONG>(wlan_intf_opcode_channel_number), 6U);
}

TEST_F(LinuxTable, NumbersTheChannelsOfEachBand) {
    start({connectedInterface()});
    const struct {
        std::uint32_t mhz;
        ULONG channel;
    } channels[] = {{2412, 1},   {2472, 13}, {2484, 14},  {5180, 36}, {5885, 177},
                    {4920, 184}, {5955, 1},  {7115, 233}, {5935, 2},  {3000, 0}};
    for (const auto& [mhz, channel] : channels) {
        kernel().change(3, [mhz = mhz](FakeInterface& interface) { interface.frequencyMhz = mhz; });
        EXPECT_EQ(query<ULONG>(wlan_intf_opcode_channel_number), channel) << mhz;
    }
    kernel().change(3, [](FakeInterface& interface) { interface.frequencyMhz.reset(); });
    EXPECT_EQ(query<ULONG>(wlan_intf_opcode_channel_number), 6U) << "that of the scan result";
}

TEST_F(LinuxTable, CountsTheFramesOfAConnection) {
    start({connectedInterface()});
    const auto counted = query<WLAN_STATISTICS>(wlan_intf_opcode_statistics);
    EXPECT_EQ(counted.dwNumberOfPhys, 1U);
    EXPECT_EQ(counted.MacUcastCounters.ullReceivedFrameCount, 1000U);
    EXPECT_EQ(counted.MacUcastCounters.ullTransmittedFrameCount, 700U);
    EXPECT_EQ(counted.PhyCounters[0].ullReceivedFrameCount, 1000U);
    EXPECT_EQ(counted.PhyCounters[0].ullTransmittedFrameCount, 700U);
    EXPECT_EQ(counted.PhyCounters[0].ullRetryCount, 20U);
    EXPECT_EQ(counted.PhyCounters[0].ullFailedCount, 3U);
    kernel().change(3, [](FakeInterface& interface) { interface.connection.reset(); });
    const auto none = query<WLAN_STATISTICS>(wlan_intf_opcode_statistics);
    EXPECT_EQ(none.dwNumberOfPhys, 1U);
    EXPECT_EQ(none.MacUcastCounters.ullReceivedFrameCount, 0U);
}

TEST_F(LinuxTable, GivesTheLevelsOfTheReceiveChains) {
    FakeInterface interface = connectedInterface();
    interface.heard[1].chains = {-81, -83};
    start({interface});
    const auto levels = query<ChainLevels>(wlan_intf_opcode_connection_chains);
    EXPECT_EQ(levels.chains, 3U);
    EXPECT_EQ(levels.levels[1], -70);
    EXPECT_EQ(levels.averages[1], -71);
    const auto list = query<ChainLevelsList>(wlan_intf_opcode_bss_chains);
    EXPECT_EQ(list.dwNumberOfItems, 1U);
    EXPECT_EQ(list.items[0].levels[1], -83);
}

TEST_F(LinuxTable, GivesTheReceiveAntennasInUse) {
    FakeInterface interface = connectedInterface();
    interface.availableAntennas = 0b111U;
    start({interface});
    EXPECT_EQ(query<ULONG>(wlan_intf_opcode_receive_antennas), 0b111U);
    kernel().change(3, [](FakeInterface& each) { each.antennas = 0b101U; });
    EXPECT_EQ(query<ULONG>(wlan_intf_opcode_receive_antennas), 0b101U);
    kernel().change(3, [](FakeInterface& each) { each.antennas = each.availableAntennas = {}; });
    EXPECT_EQ(resultOf(wlan_intf_opcode_receive_antennas), ERROR_NOT_SUPPORTED);
}

TEST_F(LinuxTable, SupportsNoChainsWhereTheDriverReportsNone) {
    FakeInterface interface = connectedInterface();
    interface.connection = Parts{s8(NL80211_STA_INFO_SIGNAL, -61)};
    start({interface});
    EXPECT_EQ(resultOf(wlan_intf_opcode_connection_chains), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(resultOf(wlan_intf_opcode_bss_chains), ERROR_NOT_SUPPORTED);
}

TEST_F(LinuxTable, IsInAnInvalidStateForAConnectionWithoutOne) {
    start();
    for (const WLAN_INTF_OPCODE opcode :
         {wlan_intf_opcode_current_connection, wlan_intf_opcode_channel_number,
          wlan_intf_opcode_rssi, wlan_intf_opcode_connection_chains}) {
        EXPECT_EQ(resultOf(opcode), ERROR_INVALID_STATE) << opcode;
    }
}

TEST_F(LinuxTable, SupportsNoOpcodeThatTheKernelKnowsNothingOf) {
    start({connectedInterface()});
    for (const WLAN_INTF_OPCODE opcode :
         {wlan_intf_opcode_autoconf_enabled, wlan_intf_opcode_background_scan_enabled,
          wlan_intf_opcode_media_streaming_mode,
          wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs,
          wlan_intf_opcode_supported_adhoc_auth_cipher_pairs,
          wlan_intf_opcode_supported_country_or_region_string_list,
          static_cast<WLAN_INTF_OPCODE>(0x30000099)}) {
        EXPECT_EQ(resultOf(opcode), ERROR_NOT_SUPPORTED) << opcode;
        EXPECT_EQ(set(opcode, BOOL{TRUE}), ERROR_NOT_SUPPORTED) << opcode;
    }
}

// --- scans ---

std::optional<Bytes> scanAttribute(const FakeRequest& request, unsigned list) {
    const std::optional<Bytes> nested = test::attributeIn(request.attributes, list);
    return nested ? test::attributeIn(*nested, 1) : std::nullopt;
}

TEST_F(LinuxTable, ScansForAllNetworksOrForOneName) {
    start();
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    FakeRequest request = kernel().requests().back();
    EXPECT_EQ(request.command, NL80211_CMD_TRIGGER_SCAN);
    EXPECT_EQ(scanAttribute(request, NL80211_ATTR_SCAN_SSIDS), Bytes{});
    EXPECT_EQ(scanAttribute(request, NL80211_ATTR_SCAN_FREQUENCIES), std::nullopt);

    DOT11_SSID name = toSsid("Lab");
    EXPECT_EQ(scan(&name), ERROR_SUCCESS);
    request = kernel().requests().back();
    EXPECT_EQ(scanAttribute(request, NL80211_ATTR_SCAN_SSIDS), bytesOf("Lab"));
}

TEST_F(LinuxTable, ScansOneChannel) {
    start();
    EXPECT_EQ(set(wlan_intf_opcode_scan_channel, ChannelScan{2437, toSsid("Lab")}), ERROR_SUCCESS);
    const FakeRequest request = kernel().requests().back();
    EXPECT_EQ(request.command, NL80211_CMD_TRIGGER_SCAN);
    EXPECT_EQ(scanAttribute(request, NL80211_ATTR_SCAN_SSIDS), bytesOf("Lab"));
    EXPECT_EQ(scanAttribute(request, NL80211_ATTR_SCAN_FREQUENCIES), (Bytes{0x85, 0x09, 0, 0}));

    ChannelScan wrong{2437, toSsid("Lab")};
    wrong.ssid.uSSIDLength = 33;
    EXPECT_EQ(set(wlan_intf_opcode_scan_channel, wrong), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(set(wlan_intf_opcode_scan_channel, DWORD{2437}), ERROR_INVALID_PARAMETER);
    kernel().fail(NL80211_CMD_TRIGGER_SCAN, EINVAL);
    EXPECT_EQ(set(wlan_intf_opcode_scan_channel, ChannelScan{1, {}}), ERROR_INVALID_PARAMETER);
}

TEST_F(LinuxTable, MeansTheKernelsErrorsOfAScan) {
    start();
    const struct {
        int error;
        DWORD code;
    } cases[] = {
        {EPERM, ERROR_ACCESS_DENIED},
        {ENETDOWN, RADIO_IS_OFF},
        {ERFKILL, RADIO_IS_OFF},
        {EBUSY, ERROR_SUCCESS}, // the scan that runs is ours too
        {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
        {EINVAL, ERROR_INVALID_PARAMETER},
        {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
        {ENOBUFS, ERROR_NOT_ENOUGH_MEMORY},
        {ETIMEDOUT, ERROR_TIMEOUT},
        {ENODEV, ERROR_NOT_FOUND},
        {ENOENT, ERROR_SERVICE_NOT_ACTIVE},
        {EXDEV, ERROR_GEN_FAILURE},
    };
    for (const auto& [error, code] : cases) {
        kernel().fail(NL80211_CMD_TRIGGER_SCAN, error);
        EXPECT_EQ(scan(), code) << error;
    }
    EXPECT_EQ(scan(), ERROR_SUCCESS);
}

// --- the radio ---

TEST_F(LinuxTable, TellsTheSwitchesOfTheRadioApart) {
    start();
    const auto phy = [this] {
        const auto state = query<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state);
        EXPECT_EQ(state.dwNumberOfPhys, 1U);
        return state.PhyRadioState[0];
    };
    EXPECT_EQ(phy().dot11SoftwareRadioState, dot11_radio_state_on);
    EXPECT_EQ(phy().dot11HardwareRadioState, dot11_radio_state_on);
    kernel().setSwitch(3, "hard", true);
    EXPECT_EQ(phy().dot11SoftwareRadioState, dot11_radio_state_on);
    EXPECT_EQ(phy().dot11HardwareRadioState, dot11_radio_state_off);
    kernel().setSwitch(3, "soft", true);
    EXPECT_EQ(phy().dot11SoftwareRadioState, dot11_radio_state_off);
}

TEST_F(LinuxTable, RefusesListsAndScansWithTheRadioOffOrTheInterfaceDown) {
    start({connectedInterface()});
    const auto expectRefusal = [this] {
        EXPECT_EQ(networks(), RADIO_IS_OFF);
        EXPECT_EQ(stations(), RADIO_IS_OFF);
        EXPECT_EQ(scan(), RADIO_IS_OFF);
        EXPECT_EQ(resultOf(wlan_intf_opcode_bss_chains), RADIO_IS_OFF);
    };
    kernel().setSwitch(3, "soft", true);
    expectRefusal();
    kernel().setSwitch(3, "soft", false);
    EXPECT_EQ(networks(), ERROR_SUCCESS);
    kernel().setSwitch(3, "hard", true);
    expectRefusal();
    kernel().setSwitch(3, "hard", false);
    kernel().setUp("wlan0", false);
    expectRefusal();
    EXPECT_EQ(kernel().requestCount(NL80211_CMD_TRIGGER_SCAN), 0U);
}

rfkill_event switched(std::uint32_t number, bool blocked) {
    rfkill_event event{};
    event.idx = number;
    event.type = RFKILL_TYPE_WLAN;
    event.op = RFKILL_OP_CHANGE;
    event.soft = blocked ? 1 : 0;
    return event;
}

std::string bytesOf(const rfkill_event& event) {
    return {reinterpret_cast<const char*>(&event), sizeof event};
}

TEST_F(LinuxTable, SwitchesThatRadioAlone) {
    start({{.rfkill = 7},
           {.index = 9,
            .wiphy = 1,
            .name = "wlan1",
            .permanentAddress = "02:00:00:00:01:00",
            .rfkill = 8}});
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_SUCCESS);
    EXPECT_EQ(kernel().writtenToRfkill(), bytesOf(switched(7, true)));
    EXPECT_EQ(networks(), RADIO_IS_OFF);
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_SUCCESS);
    EXPECT_EQ(kernel().writtenToRfkill(), "") << "it is off already";
    EXPECT_EQ(switchRadio(dot11_radio_state_on), ERROR_SUCCESS);
    EXPECT_EQ(kernel().writtenToRfkill(), bytesOf(switched(7, false)));
    EXPECT_EQ(networks(), ERROR_SUCCESS);
    EXPECT_TRUE(kernel().isUp("wlan1"));
}

TEST_F(LinuxTable, SetsUpAgainWhatItBroughtDownWithTheRadio) {
    start({{}, {.index = 5, .name = "wlan5"}, {.index = 6, .name = "wlan6"}}); // one radio
    kernel().setUp("wlan5", false);
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_SUCCESS);
    EXPECT_EQ(networks(), RADIO_IS_OFF);
    for (const char* const name : {"wlan0", "wlan5", "wlan6"}) {
        EXPECT_FALSE(kernel().isUp(name)) << name;
    }
    EXPECT_EQ(switchRadio(dot11_radio_state_on), ERROR_SUCCESS);
    EXPECT_TRUE(kernel().isUp("wlan0"));
    EXPECT_FALSE(kernel().isUp("wlan5"));
    EXPECT_TRUE(kernel().isUp("wlan6"));
}

TEST_F(LinuxTable, SetsUpTheInterfaceOfARadioThatAnotherSwitchedOff) {
    start();
    kernel().setSwitch(3, "soft", true);
    kernel().setUp("wlan0", false);
    EXPECT_EQ(switchRadio(dot11_radio_state_on), ERROR_SUCCESS);
    EXPECT_EQ(networks(), ERROR_SUCCESS);
}

TEST_F(LinuxTable, ShowsTheRadioOffInSoftwareWithTheInterfaceDownAndSwitchesItOnBySettingItUp) {
    start();
    kernel().setUp("wlan0", false);
    const auto software = [this] {
        const auto state = query<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state);
        EXPECT_EQ(state.PhyRadioState[0].dot11HardwareRadioState, dot11_radio_state_on);
        return state.PhyRadioState[0].dot11SoftwareRadioState;
    };
    EXPECT_EQ(software(), dot11_radio_state_off);
    kernel().refuseToBringUp(EPERM);
    EXPECT_EQ(switchRadio(dot11_radio_state_on), ERROR_ACCESS_DENIED);
    kernel().refuseToBringUp(0);
    EXPECT_EQ(switchRadio(dot11_radio_state_on), ERROR_SUCCESS);
    EXPECT_EQ(software(), dot11_radio_state_on);
    EXPECT_EQ(kernel().writtenToRfkill(), "");
}

TEST_F(LinuxTable, FreesTheRadioThoughTheInterfaceMayNotBeSetUp) {
    start();
    kernel().setSwitch(3, "soft", true);
    kernel().setUp("wlan0", false);
    kernel().refuseToBringUp(EPERM);
    EXPECT_EQ(switchRadio(dot11_radio_state_on), ERROR_SUCCESS);
    EXPECT_EQ(query<WLAN_INTERFACE_STATE>(wlan_intf_opcode_interface_state),
              wlan_interface_state_not_ready);
}

TEST_F(LinuxTable, RefusesToSwitchWhatCannotBeSwitched) {
    start();
    EXPECT_EQ(switchRadio(dot11_radio_state_off, 1), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(switchRadio(dot11_radio_state_unknown), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(set(wlan_intf_opcode_radio_state, DWORD{2}), ERROR_INVALID_PARAMETER);
    kernel().setSwitch(3, "hard", true);
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_INVALID_STATE);
    kernel().setSwitch(3, "hard", false);
    std::filesystem::remove(kernel().root() / "dev/rfkill");
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_NOT_SUPPORTED);
}

TEST_F(LinuxTable, SaysThatARadioWithoutASwitchIsOn) {
    start({{.rfkill = {}}});
    const auto state = query<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state);
    EXPECT_EQ(state.PhyRadioState[0].dot11SoftwareRadioState, dot11_radio_state_on);
    EXPECT_EQ(state.PhyRadioState[0].dot11HardwareRadioState, dot11_radio_state_on);
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_NOT_SUPPORTED);
}

// --- what goes wrong ---

TEST_F(LinuxTable, FindsAnInterfaceNoMoreThatHasGone) {
    start();
    kernel().remove(3);
    EXPECT_EQ(networks(), ERROR_NOT_FOUND);
    EXPECT_EQ(scan(), ERROR_NOT_FOUND);
    EXPECT_EQ(resultOf(wlan_intf_opcode_radio_state), ERROR_NOT_FOUND);
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_NOT_FOUND);
    kernel().add({.index = 12});
    EXPECT_EQ(networks(), ERROR_SUCCESS) << "back under another index";
}

TEST_F(LinuxTable, FindsAnInterfaceNoMoreThatGoesBetweenTwoRequestsOfACall) {
    start({connectedInterface()});
    const auto expectGone = [this](std::uint8_t command, auto call) {
        kernel().add(connectedInterface());
        kernel().onRequest([this, command](std::uint8_t requested) {
            if (requested == command) {
                kernel().remove(3);
            }
        });
        EXPECT_EQ(call(), ERROR_NOT_FOUND) << static_cast<int>(command);
        kernel().onRequest({});
    };
    kernel().remove(3);
    expectGone(NL80211_CMD_GET_SCAN, [this] { return networks(); });
    expectGone(NL80211_CMD_GET_SCAN, [this] { return stations(); });
    expectGone(NL80211_CMD_TRIGGER_SCAN, [this] { return scan(); });
    expectGone(NL80211_CMD_GET_STATION,
               [this] { return resultOf(wlan_intf_opcode_current_connection); });
    expectGone(NL80211_CMD_GET_SCAN,
               [this] { return resultOf(wlan_intf_opcode_current_connection); });
    expectGone(NL80211_CMD_GET_STATION,
               [this] { return resultOf(wlan_intf_opcode_interface_state); });
    expectGone(NL80211_CMD_GET_STATION, [this] { return resultOf(wlan_intf_opcode_statistics); });
}

TEST_F(LinuxTable, KeepsTheGuidsOfItsInterfacesWhileOthersOfTheRadioGo) {
    start({{}, {.index = 5, .name = "wlan5"}});
    EXPECT_FALSE(sameGuid(*guid(0), *guid(1)));
    kernel().remove(3);
    std::vector<WLAN_INTERFACE_INFO> infos;
    ASSERT_EQ(enumerate(infos), ERROR_SUCCESS);
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_TRUE(sameGuid(infos[0].InterfaceGuid, *guid(1)));
}

TEST_F(LinuxTable, ReturnsTheErrorOfAKernelThatDoesNotAnswer) {
    start({connectedInterface()});
    kernel().fail(NL80211_CMD_GET_INTERFACE, ETIMEDOUT, 2);
    std::vector<WLAN_INTERFACE_INFO> infos;
    EXPECT_EQ(enumerate(infos), ERROR_TIMEOUT);
    EXPECT_EQ(networks(), ERROR_TIMEOUT);
    kernel().fail(NL80211_CMD_GET_SCAN, ETIMEDOUT, 3);
    EXPECT_EQ(networks(), ERROR_TIMEOUT);
    EXPECT_EQ(stations(), ERROR_TIMEOUT);
    EXPECT_EQ(resultOf(wlan_intf_opcode_current_connection), ERROR_TIMEOUT);
    kernel().fail(NL80211_CMD_GET_STATION, ETIMEDOUT, 2);
    EXPECT_EQ(enumerate(infos), ERROR_TIMEOUT);
    EXPECT_EQ(resultOf(wlan_intf_opcode_statistics), ERROR_TIMEOUT);
    EXPECT_EQ(networks(), ERROR_SUCCESS);
}

TEST_F(LinuxTable, LetsNoExceptionOut) {
    start();
    kernel().onRequest([](std::uint8_t) { throw std::bad_alloc(); });
    std::vector<WLAN_INTERFACE_INFO> infos;
    EXPECT_EQ(enumerate(infos), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(networks(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(stations(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(scan(), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(resultOf(wlan_intf_opcode_rssi), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_NOT_ENOUGH_MEMORY);
    kernel().onRequest([](std::uint8_t) { throw std::runtime_error("unforeseen"); });
    EXPECT_EQ(enumerate(infos), ERROR_GEN_FAILURE);
    kernel().onRequest({});
    EXPECT_EQ(networks(), ERROR_SUCCESS);
}

TEST_F(LinuxTable, GivesAReasonWithoutAClient) {
    WCHAR text[64] = {};
    EXPECT_EQ(api().WlanReasonCodeToString(0x28002, std::size(text), text, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(mrl::String(fixedText(text)), mrl::String("The wireless network is not visible."));
}

} // namespace
} // namespace nativewifi::linux_radio
