// The life of a WirelessDevice: where its GUID comes from, how its client handle is opened, when
// that is tried again, and what is closed at the end.
#include "DeviceTest.h"

namespace {

using test::LineSaying;
using test::RADIO_QUERY_LINE;
using testing::ElementsAre;
using testing::IsEmpty;

namespace calls = test::calls;

constexpr const char* VERSION_LINE = "The WLAN API version is not supported";
constexpr unsigned int RADIO_STATE = 4;
const std::string GUID_TEXT = radiosim::FIRST_INTERFACE;

class DeviceConstruction : public test::DeviceTest {};

TEST_F(DeviceConstruction, OpensRegistersAndReadsTheRadioInThisOrder) {
    const WirelessDevice& device = open();
    EXPECT_THAT(radio().callTexts(),
                ElementsAre(calls::open("h1"), calls::parse(), calls::listen("h1"),
                            calls::query("h1", RADIO_STATE, 772)));
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_NE(device.m_clientHandle, nullptr);
    EXPECT_TRUE(device.m_handleOpen);
    EXPECT_EQ(device.m_negotiatedVersion, 2U);
    EXPECT_TRUE(device.m_initialized);
    EXPECT_EQ(device.m_interfaceGuid.Data1, 0x8c2f6b1eU);
    EXPECT_EQ(device.m_interfaceGuid.Data4[7], 0x20);
}

TEST_F(DeviceConstruction, CopiesTheRadioStatePerPhy) {
    const WirelessDevice& device =
        openedOn({.phys = {{.software = 1, .hardware = 2}, {.software = 2}}});
    ASSERT_EQ(device.m_radio.m_numberOfPhys, 2);
    EXPECT_EQ(device.m_radio.m_phys[0].software, dot11_radio_state_on);
    EXPECT_EQ(device.m_radio.m_phys[0].hardware, dot11_radio_state_off);
    EXPECT_EQ(device.m_radio.m_phys[1].index, 1U);
    ASSERT_NE(device.m_radioStateData, nullptr);
    EXPECT_EQ(device.m_radioStateData->dwNumberOfPhys, 2U);
}

TEST_F(DeviceConstruction, CopiesTheFrameworksDevice) {
    const WirelessDevice& device = open();
    EXPECT_EQ(device.m_device.name(), "Simulated Wireless Adapter");
    EXPECT_EQ(device.m_device.properties(), DeviceConstruction::device().properties());
}

TEST_F(DeviceConstruction, BeginsWithNeutralFieldsWhenNothingCouldBeRead) {
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_NOT_ENOUGH_MEMORY});
    const WirelessDevice& device = open();
    EXPECT_THAT(radio().callNames(), ElementsAre("WlanOpenHandle"));
    EXPECT_FALSE(device.m_connectionQueryBlocked);
    EXPECT_EQ(device.m_lastSetResult, 0U);
    EXPECT_EQ(device.m_clientHandle, nullptr);
    EXPECT_FALSE(device.m_handleOpen);
    EXPECT_EQ(device.m_negotiatedVersion, 0xFFFFFFFFU);
    EXPECT_EQ(device.m_autoconfEnabled, 0);
    EXPECT_EQ(device.m_backgroundScanEnabled, 0);
    EXPECT_EQ(device.m_radioStateData, nullptr);
    EXPECT_EQ(device.m_bssTypeData, nullptr);
    EXPECT_EQ(device.m_interfaceStateData, nullptr);
    EXPECT_EQ(device.m_connectionAttributes, nullptr);
    EXPECT_EQ(device.m_channelNumber, 0U);
    EXPECT_EQ(device.m_infrastructureCipherPairs, nullptr);
    EXPECT_EQ(device.m_adhocCipherPairs, nullptr);
    EXPECT_EQ(device.m_countryOrRegionList, nullptr);
    EXPECT_EQ(device.m_mediaStreamingMode, 0);
    EXPECT_EQ(device.m_statistics, nullptr);
    EXPECT_EQ(device.m_rssi, 0);
    EXPECT_EQ(device.m_radio.m_numberOfPhys, 0);
    EXPECT_EQ(device.m_interfaceGuid.Data1, 0U);
    EXPECT_FALSE(device.m_initialized);
    EXPECT_FALSE(device.m_connected);
    EXPECT_EQ(device.m_signalQuality, 0U);
    EXPECT_EQ(device.m_rxRate, 0U);
    EXPECT_EQ(device.m_txRate, 0U);
    EXPECT_TRUE(device.m_interfaceDescription.empty());
    EXPECT_EQ(device.m_numVisibleNetworks, 0U);
    EXPECT_EQ(device.m_visibleNetworks.size(), 0U);
    EXPECT_EQ(device.m_visibleNetworks.capacity(), 8U);
    EXPECT_TRUE(device.m_errorText.empty());
}

TEST_F(DeviceConstruction, TakesASuccessWithoutABlockForNoRadioState) {
    radio().addFault({.function = "WlanQueryInterface", .nth = 1, .noData = true});
    const WirelessDevice& device = open();
    EXPECT_EQ(device.m_radio.m_numberOfPhys, 0);
    EXPECT_EQ(device.m_radioStateData, nullptr);
}

// --- the name and its GUID ---

TEST_F(DeviceConstruction, PrefersTheVirtualSystemNameAndSaysSo) {
    const WirelessDevice& device = open(deviceWith(
        {{"DeviceSystemName", "\\DEVICE\\{00000000-0000-0000-0000-000000000000}"},
         {"VirtualDeviceSystemName", tesk5::TeskString("\\DEVICE\\{" + GUID_TEXT + "}")}}));
    EXPECT_EQ(utf8(device.m_deviceSystemName), "\\DEVICE\\{" + GUID_TEXT + "}");
    EXPECT_TRUE(device.m_initialized);
    EXPECT_THAT(lines(),
                ElementsAre(LineSaying("Found the VirtualDeviceSystemName property, so using "
                                       "that as the device system name.")));
}

TEST_F(DeviceConstruction, UsesTheSystemNameSilentlyWhenItIsAlone) {
    const WirelessDevice& device = open();
    EXPECT_EQ(utf8(device.m_deviceSystemName), "\\DEVICE\\{" + GUID_TEXT + "}");
    EXPECT_EQ(utf8(device.m_interfaceGuidText), GUID_TEXT);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(DeviceConstruction, UsesAVirtualSystemNameThatIsEmpty) {
    const WirelessDevice& device =
        open(deviceWith({{"DeviceSystemName", tesk5::TeskString("{" + GUID_TEXT + "}")},
                         {"VirtualDeviceSystemName", ""}}));
    EXPECT_TRUE(device.m_deviceSystemName.empty());
    EXPECT_FALSE(device.m_initialized);
}

TEST_F(DeviceConstruction, ADeviceWithoutANameFailsAtTheGuidAndSaysNothingOfIt) {
    WirelessDevice& device = open(deviceWith({}));
    EXPECT_THAT(radio().callTexts(),
                ElementsAre(calls::open("h1"), calls::parse("", RPC_S_INVALID_STRING_UUID)));
    EXPECT_THAT(lines(), ElementsAre(LineSaying(RADIO_QUERY_LINE)));
    EXPECT_FALSE(device.m_initialized);
    EXPECT_FALSE(device.initialize());
}

// --- trying again ---

TEST_F(DeviceConstruction, AnInitializedDeviceAsksForNothingMore) {
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.initialize());
    EXPECT_THAT(radio().callTexts(), IsEmpty());
    device.populateRadioState();
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::query("h1", RADIO_STATE, 772)));
}

TEST_F(DeviceConstruction, AnotherClientVersionFailsEveryQueryAndSwitchAndIsTriedEachTime) {
    startRadio(radiosim::Scenario{.serviceVersion = 1});
    WirelessDevice& device = open();
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::open("h1", 1)));
    EXPECT_THAT(lines(), ElementsAre(LineSaying(VERSION_LINE), LineSaying(RADIO_QUERY_LINE)));
    EXPECT_TRUE(device.m_handleOpen);
    EXPECT_FALSE(device.m_initialized);

    radio().clearCalls();
    log().clear();
    EXPECT_FALSE(device.queryWirelessLanInterface(wlan_intf_opcode_bss_type));
    EXPECT_FALSE(device.setRadioState(0, true));
    EXPECT_FALSE(device.enumerateInterfaces());
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_THAT(radio().callTexts(),
                ElementsAre(calls::close("h1"), calls::open("h2", 1), calls::close("h2"),
                            calls::open("h3", 1), calls::close("h3"), calls::open("h4", 1),
                            calls::close("h4"), calls::open("h5", 1)));
    EXPECT_THAT(lines(), ElementsAre(LineSaying(VERSION_LINE), LineSaying(VERSION_LINE),
                                     LineSaying(VERSION_LINE), LineSaying(VERSION_LINE)));
    EXPECT_EQ(radio().openHandles(), 1U);
}

TEST_F(DeviceConstruction, EnumeratingAndListingDoNotRememberThatTheyInitialized) {
    radio().addFault({.function = "WlanRegisterNotification", .nth = 1, .code = 6U});
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_FALSE(device.m_initialized);
    EXPECT_TRUE(device.getVisibleNetworkList());
    EXPECT_FALSE(device.m_initialized);
    EXPECT_THAT(radio().callNames(),
                ElementsAre("WlanCloseHandle", "WlanOpenHandle", "UuidFromStringW",
                            "WlanRegisterNotification", "WlanEnumInterfaces", "UuidToStringW",
                            "RpcStringFreeW", "WlanCloseHandle", "WlanOpenHandle",
                            "UuidFromStringW", "WlanRegisterNotification",
                            "WlanGetAvailableNetworkList", "WlanFreeMemory"));
}

TEST_F(DeviceConstruction, ARadioSwitchRemembersThatItInitialized) {
    radio().addFault({.function = "WlanRegisterNotification", .nth = 1, .code = 6U});
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.setRadioState(0, true));
    EXPECT_TRUE(device.m_initialized);
    radio().clearCalls();
    device.setRadioState(0, true);
    EXPECT_THAT(radio().callNames(), ElementsAre("WlanSetInterface"));
}

// --- the handle ---

TEST_F(DeviceConstruction, ClosingTheHandleLeavesTheDeviceInitialized) {
    WirelessDevice& device = opened();
    device.closeHandle();
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::close("h1")));
    EXPECT_EQ(device.m_clientHandle, nullptr);
    EXPECT_FALSE(device.m_handleOpen);
    EXPECT_TRUE(device.m_initialized);
    EXPECT_TRUE(device.initialize());
    EXPECT_FALSE(device.queryWirelessLanInterface(wlan_intf_opcode_bss_type));

    radio().clearCalls();
    device.closeHandle();
    EXPECT_THAT(radio().callTexts(), IsEmpty());
}

TEST_F(DeviceConstruction, OpeningTheHandleClosesTheOneBeforeEvenWhenItFails) {
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.openHandle());
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::close("h1"), calls::open("h2")));
    EXPECT_EQ(radio().openHandles(), 1U);

    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_REMOTE_SESSION_LIMIT_EXCEEDED});
    EXPECT_FALSE(device.openHandle());
    EXPECT_EQ(device.m_clientHandle, nullptr);
    EXPECT_FALSE(device.m_handleOpen);
    EXPECT_EQ(radio().openHandles(), 0U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(DeviceConstruction, OnlyVersionTwoIsSupported) {
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.isAPIVersionSupported());
    for (const DWORD version : {0U, 1U, 3U, 0xFFFFFFFFU}) {
        device.m_negotiatedVersion = version;
        log().clear();
        EXPECT_FALSE(device.isAPIVersionSupported()) << version;
        EXPECT_THAT(lines(), ElementsAre(LineSaying(VERSION_LINE)));
    }
}

TEST_F(DeviceConstruction, DestructionWithoutAHandleCallsNothing) {
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_NOT_ENOUGH_MEMORY});
    opened();
    close();
    EXPECT_THAT(radio().callTexts(), IsEmpty());
}

// --- trace scopes ---

TEST_F(DeviceConstruction, TracesEachOperationUnderItsOwnName) {
    WirelessDevice* device = nullptr;
    EXPECT_THAT(scopesOf([&] { device = &open(); }),
                ElementsAre("populateRadioState()", "queryWirelessLanInterface()", "initialize()",
                            "openHandle()", "closeHandle()", "isAPIVersionSupported()"));
    // None where it returns at once.
    EXPECT_THAT(scopesOf([&] { device->initialize(); }), IsEmpty());
    EXPECT_THAT(scopesOf([this] { close(); }), ElementsAre("closeHandle()"));
}

TEST_F(DeviceConstruction, ScopesEncloseTheirCalls) {
    EXPECT_THAT(traceOf([this] { open(); }),
                ElementsAre("> populateRadioState()", "> queryWirelessLanInterface()",
                            "> initialize()", "> openHandle()", "> closeHandle()",
                            "< closeHandle()", "WlanOpenHandle", "< openHandle()",
                            "> isAPIVersionSupported()", "< isAPIVersionSupported()",
                            "UuidFromStringW", "WlanRegisterNotification", "< initialize()",
                            "WlanQueryInterface", "< queryWirelessLanInterface()",
                            "< populateRadioState()"));
    EXPECT_THAT(traceOf([this] { close(); }),
                ElementsAre("> closeHandle()", "WlanCloseHandle", "< closeHandle()"));
}

TEST_F(DeviceConstruction, AScopeNamesItsSourceFile) {
    WirelessDevice& device = opened();
    mrl::LogFactory::setPriority(0);
    device.closeHandle();
    EXPECT_THAT(lines(),
                ElementsAre(testing::StartsWith("> closeHandle() (modules/src/windows/diag/"
                                                "mrlrantenna/WirelessDevice.cpp:"),
                            "< closeHandle()"));
}

} // namespace
