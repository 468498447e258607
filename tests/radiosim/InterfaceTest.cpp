#include "Client.h"

namespace radiosim {
namespace {

using namespace std::chrono_literals;

constexpr std::int32_t ON = dot11_radio_state_on;
constexpr std::int32_t OFF = dot11_radio_state_off;

class Interfaces : public WithEngine {
protected:
    std::vector<WLAN_INTERFACE_INFO> interfaces() const {
        nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
        EXPECT_EQ(nativewifi::api().WlanEnumInterfaces(handle(), nullptr, out(list)),
                  ERROR_SUCCESS);
        if (!list) {
            return {};
        }
        const WLAN_INTERFACE_INFO* const first = list->InterfaceInfo;
        return {first, first + list->dwNumberOfItems};
    }

    template <typename Value>
    DWORD set(WLAN_INTF_OPCODE opcode, Value value) const {
        return nativewifi::api().WlanSetInterface(handle(), &guid(), opcode, sizeof value, &value,
                                                  nullptr);
    }
};

TEST_F(Interfaces, AreListedInTheirOrderWithDescriptionAndState) {
    start({.interfaces = {{.description = "Ä card", .connection = Connection{.ssid = "Lab"}},
                          {.guid = "11111111-2222-4333-8444-555555555502", .state = 6}}});
    const std::vector<WLAN_INTERFACE_INFO> all = interfaces();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_TRUE(nativewifi::sameGuid(all[0].InterfaceGuid, guid()));
    EXPECT_EQ(mrl::toUtf8(all[0].strInterfaceDescription), "Ä card");
    EXPECT_EQ(all[0].isState, wlan_interface_state_connected);
    EXPECT_EQ(all[1].isState, wlan_interface_state_discovering);
}

TEST_F(Interfaces, CanStateWhatDoesNotExist) {
    start({.interfaces = {{.state = -1}}});
    EXPECT_EQ(static_cast<std::int32_t>(interfaces().at(0).isState), -1);
}

TEST_F(Interfaces, AreUnknownOnceTheyAreRemoved) {
    start({.interfaces = {{}, {.guid = "11111111-2222-4333-8444-555555555502"}}});
    engine().removeInterface(0);
    EXPECT_EQ(interfaces().size(), 1U);
    EXPECT_EQ(scan(), ERROR_NOT_FOUND);
}

TEST_F(Interfaces, LoseTheirConnectionWithTheRadio) {
    start({.interfaces = {{.connection = Connection{.ssid = "Lab"}}}});
    engine().setRadio(0, 0, OFF, {});
    EXPECT_EQ(queried<WLAN_INTERFACE_STATE>(wlan_intf_opcode_interface_state),
              wlan_interface_state_disconnected);
}

TEST_F(Interfaces, TakeWhatCanBeSet) {
    start({.interfaces = {{.autoconf = false, .backgroundScan = true, .mediaStreaming = true}}});
    const auto flags = [this] {
        return std::vector{queried<BOOL>(wlan_intf_opcode_autoconf_enabled),
                           queried<BOOL>(wlan_intf_opcode_background_scan_enabled),
                           queried<BOOL>(wlan_intf_opcode_media_streaming_mode)};
    };
    EXPECT_EQ(flags(), (std::vector{FALSE, TRUE, TRUE}));
    EXPECT_EQ(set<BOOL>(wlan_intf_opcode_autoconf_enabled, TRUE), ERROR_SUCCESS);
    EXPECT_EQ(set<BOOL>(wlan_intf_opcode_background_scan_enabled, FALSE), ERROR_SUCCESS);
    EXPECT_EQ(flags(), (std::vector{TRUE, FALSE, TRUE}));
    EXPECT_EQ(set<BOOL>(wlan_intf_opcode_media_streaming_mode, FALSE), ERROR_SUCCESS);
    EXPECT_EQ(flags(), (std::vector{TRUE, FALSE, FALSE}));
    EXPECT_EQ(set(wlan_intf_opcode_bss_type, dot11_BSS_type_any), ERROR_SUCCESS);
    EXPECT_EQ(queried<DOT11_BSS_TYPE>(wlan_intf_opcode_bss_type), dot11_BSS_type_any);
}

TEST_F(Interfaces, RefuseToSetWhatCanOnlyBeQueriedAndAnUnknownOpcode) {
    start({});
    EXPECT_EQ(set<LONG>(wlan_intf_opcode_rssi, -40), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(set<char>(wlan_intf_opcode_autoconf_enabled, 1), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(set<DWORD>(wlan_intf_opcode_radio_state, 1), ERROR_INVALID_PARAMETER);
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(static_cast<WLAN_INTF_OPCODE>(0x0FFFFFFF), bytes), ERROR_INVALID_PARAMETER);
}

TEST_F(Interfaces, ShowTheRadioOfEachPhy) {
    start({.interfaces = {{.phys = {{.software = ON, .hardware = OFF}, {.software = 0}}}}});
    const auto state = queried<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state);
    ASSERT_EQ(state.dwNumberOfPhys, 2U);
    EXPECT_EQ(state.PhyRadioState[0].dwPhyIndex, 0U);
    EXPECT_EQ(state.PhyRadioState[0].dot11SoftwareRadioState, dot11_radio_state_on);
    EXPECT_EQ(state.PhyRadioState[0].dot11HardwareRadioState, dot11_radio_state_off);
    EXPECT_EQ(state.PhyRadioState[1].dwPhyIndex, 1U);
    EXPECT_EQ(state.PhyRadioState[1].dot11SoftwareRadioState, dot11_radio_state_unknown);
}

TEST_F(Interfaces, CannotSwitchARadioThatIsOffInHardware) {
    start({.interfaces = {{.phys = {{.software = OFF, .hardware = OFF}}}}});
    EXPECT_EQ(switchRadio(0, ON), ERROR_INVALID_STATE);
    engine().setRadio(0, 0, {}, ON);
    EXPECT_EQ(switchRadio(0, ON), ERROR_SUCCESS);
}

TEST_F(Interfaces, RefuseARadioThatIsNotThereAndAStateThatIsNone) {
    start({});
    EXPECT_EQ(switchRadio(1, ON), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(switchRadio(0, 0), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(switchRadio(0, 3), ERROR_INVALID_PARAMETER);
}

TEST_F(Interfaces, KnowTheConnectionAndItsRates) {
    start({.interfaces = {{.connection = Connection{.ssid = "Lab", .rxRate = 300, .txRate = 200},
                           .accessPoints = {{.ssid = "Lab",
                                             .signal = 77U,
                                             .profile = "Work",
                                             .auth = DOT11_AUTH_ALGO_RSNA}}}}});
    const auto attributes =
        queried<WLAN_CONNECTION_ATTRIBUTES>(wlan_intf_opcode_current_connection);
    EXPECT_EQ(attributes.isState, wlan_interface_state_connected);
    EXPECT_EQ(mrl::toUtf8(attributes.strProfileName), "Work");
    EXPECT_EQ(ssidText(attributes.wlanAssociationAttributes.dot11Ssid), "Lab");
    EXPECT_EQ(attributes.wlanAssociationAttributes.wlanSignalQuality, 77U);
    EXPECT_EQ(attributes.wlanAssociationAttributes.ulRxRate, 300U);
    EXPECT_EQ(attributes.wlanAssociationAttributes.ulTxRate, 200U);
    EXPECT_EQ(attributes.wlanSecurityAttributes.dot11AuthAlgorithm, DOT11_AUTH_ALGO_RSNA);
    EXPECT_EQ(std::memcmp(attributes.wlanAssociationAttributes.dot11Bssid,
                          bssEntries().at(0).dot11Bssid, 6),
              0);
}

TEST_F(Interfaces, HaveNoConnectionWhenDisconnected) {
    start({});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_current_connection, bytes), ERROR_INVALID_STATE);
    engine().setConnection(0, Connection{.ssid = "Lab"});
    EXPECT_EQ(query(wlan_intf_opcode_current_connection, bytes), ERROR_SUCCESS);
    engine().setState(0, wlan_interface_state_disconnecting);
    EXPECT_EQ(query(wlan_intf_opcode_current_connection, bytes), ERROR_INVALID_STATE);
}

TEST_F(Interfaces, AnswerChannelAndRssi) {
    start({.interfaces = {{.connection = Connection{.ssid = "x", .quality = 80U, .channel = 44}}}});
    EXPECT_EQ(queried<ULONG>(wlan_intf_opcode_channel_number), 44U);
    EXPECT_EQ(queried<LONG>(wlan_intf_opcode_rssi), -60);
    start({.interfaces = {{.rssi = -33}}});
    EXPECT_EQ(queried<LONG>(wlan_intf_opcode_rssi), -33);
}

TEST_F(Interfaces, AnswerListsOfOneItemInTheDeclaredSize) {
    start({});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs, bytes),
              ERROR_SUCCESS);
    EXPECT_EQ(bytes.size(), 12U);
    EXPECT_EQ(query(wlan_intf_opcode_supported_adhoc_auth_cipher_pairs, bytes), ERROR_SUCCESS);
    EXPECT_EQ(bytes.size(), 12U);
    EXPECT_EQ(query(wlan_intf_opcode_supported_country_or_region_string_list, bytes),
              ERROR_SUCCESS);
    EXPECT_EQ(bytes, (std::vector<unsigned char>{1, 0, 0, 0, 'U', 'S', 0, 0}));
}

TEST_F(Interfaces, AnswerLongerListsInLongerBlocks) {
    start({.interfaces = {{.infrastructurePairs = {{7, 4}, {4, 2}}, .countries = {"DE", "FR"}}}});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs, bytes),
              ERROR_SUCCESS);
    EXPECT_EQ(bytes, (std::vector<unsigned char>{2, 0, 0, 0, 7, 0, 0, 0, 4, 0,
                                                 0, 0, 4, 0, 0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(query(wlan_intf_opcode_supported_country_or_region_string_list, bytes),
              ERROR_SUCCESS);
    EXPECT_EQ(bytes, (std::vector<unsigned char>{2, 0, 0, 0, 'D', 'E', 0, 'F', 'R', 0, 0, 0}));
}

TEST_F(Interfaces, AnswerStatisticsForEachPhy) {
    start({.interfaces = {{.connection = Connection{.ssid = "Lab"}}}});
    clock().sleep(1s);
    const auto statistics = queried<WLAN_STATISTICS>(wlan_intf_opcode_statistics);
    EXPECT_EQ(statistics.dwNumberOfPhys, 1U);
    EXPECT_EQ(statistics.MacUcastCounters.ullTransmittedFrameCount, 100U);
    EXPECT_EQ(statistics.PhyCounters[0].ullReceivedFrameCount, 200U);
    engine().setPhys(0, {{}, {}});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_statistics, bytes), ERROR_SUCCESS);
    EXPECT_EQ(bytes.size(), 512U);
}

TEST_F(Interfaces, NegotiateTheVersionOfTheService) {
    const auto negotiated = [this](Scenario scenario) {
        start(std::move(scenario));
        nativewifi::ClientHandle client;
        DWORD version = 0;
        nativewifi::api().WlanOpenHandle(3, nullptr, &version, out(client));
        return version;
    };
    EXPECT_EQ(negotiated({}), 2U);
    EXPECT_EQ(negotiated({.serviceVersion = 1}), 1U);
}

TEST_F(Interfaces, AreChangedByIndexAndNoOther) {
    start({});
    EXPECT_THROW(engine().setState(1, 1), std::out_of_range);
    EXPECT_THROW(engine().setRadio(0, 1, 1, 1), std::out_of_range);
}

} // namespace
} // namespace radiosim
