// The radio: its state per PHY as flags, and its switch.
#include "DeviceTest.h"

namespace {

using test::LineSaying;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr RadioStateFlags BOTH_OFF = SOFTWARE_OFF | HARDWARE_OFF;

class RadioOfADevice : public test::DeviceTest {};

TEST_F(RadioOfADevice, CountsUnknownAsOff) {
    // 0 unknown, 1 on, 2 off; what is none of these counts as on.
    constexpr struct {
        std::int32_t software;
        std::int32_t hardware;
        mrl::Uint32 flags;
    } states[] = {
        {0, 0, 10}, {0, 1, 6}, {0, 2, 10}, {1, 0, 9}, {1, 1, 5},  {1, 2, 9},
        {2, 0, 10}, {2, 1, 6}, {2, 2, 10}, {3, 1, 5}, {1, -1, 5},
    };
    for (const auto& [software, hardware, flags] : states) {
        WirelessDevice& device = openedOn({.phys = {{.software = software, .hardware = hardware}}});
        EXPECT_EQ(static_cast<mrl::Uint32>(device.getRadioState(0)), flags)
            << software << " " << hardware;
        EXPECT_EQ(device.isRadioEnabled(0), flags == 5U) << software << " " << hardware;
    }
}

TEST_F(RadioOfADevice, IsReadAfreshEachTime) {
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.isRadioEnabled(0));
    radio().setRadio(0, 0, 2, {});
    EXPECT_FALSE(device.isRadioEnabled(0));
    EXPECT_EQ(device.getRadioState(0), SOFTWARE_OFF | HARDWARE_ON);
    radio().setRadio(0, 0, 1, 2);
    EXPECT_EQ(device.getRadioState(0), SOFTWARE_ON | HARDWARE_OFF);
    EXPECT_FALSE(device.isRadioEnabled(0));
    EXPECT_EQ(radio().callCount("WlanQueryInterface"), 5U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(RadioOfADevice, APhyThatDoesNotExistIsOff) {
    WirelessDevice& device = openedOn({.phys = {{}, {}}});
    for (const mrl::Int32 index : {2, 3, 63, 64, 65, INT32_MAX, -1, INT32_MIN}) {
        EXPECT_EQ(device.getRadioState(index), BOTH_OFF) << index;
        EXPECT_FALSE(device.isRadioEnabled(index)) << index;
    }
}

TEST_F(RadioOfADevice, HoldsSixtyFourPhys) {
    std::vector<radiosim::Phy> phys(64);
    phys.back().software = 2;
    WirelessDevice& device = openedOn({.phys = phys});
    EXPECT_EQ(device.m_radio.m_numberOfPhys, 64);
    EXPECT_EQ(device.getRadioState(62), SOFTWARE_ON | HARDWARE_ON);
    EXPECT_EQ(device.getRadioState(63), SOFTWARE_OFF | HARDWARE_ON);
    EXPECT_EQ(device.getRadioState(64), BOTH_OFF);
}

TEST_F(RadioOfADevice, ACountOfNoneOrBeyondTheTableIsKeptAndLeadsNowhereBehindIt) {
    for (const std::uint32_t count : {0U, 65U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(count);
        close();
        startRadio(radiosim::Scenario{
            .faults = {{.function = "WlanQueryInterface", .opcode = 4U, .count = count}}});
        WirelessDevice& device = opened();
        EXPECT_EQ(device.m_radio.m_numberOfPhys, static_cast<mrl::Int32>(count));
        // None, or a negative one, holds no PHY.
        EXPECT_EQ(device.isRadioEnabled(0), device.m_radio.m_numberOfPhys > 0);
        for (const mrl::Int32 index : {63, 64, -1, -2, INT32_MIN, device.m_radio.lastPhy()}) {
            EXPECT_EQ(device.getRadioState(index), BOTH_OFF) << index;
            EXPECT_FALSE(device.isRadioEnabled(index)) << index;
        }
    }
}

TEST_F(RadioOfADevice, EntriesBeyondASmallerCountKeepTheirOldValues) {
    WirelessDevice& device = openedOn({.phys = {{}, {.software = 2}, {.hardware = 2}}});
    radio().setPhys(0, {{.software = 2, .hardware = 2}});
    EXPECT_EQ(device.getRadioState(0), BOTH_OFF);
    EXPECT_EQ(device.m_radio.m_numberOfPhys, 1);
    EXPECT_EQ(device.m_radio.m_phys[1].software, dot11_radio_state_off);
    EXPECT_EQ(device.m_radio.m_phys[2].hardware, dot11_radio_state_off);
    EXPECT_EQ(device.m_radio.m_phys[2].index, 2U);
}

TEST_F(RadioOfADevice, ThatCannotBeReadIsNeitherOnNorOff) {
    WirelessDevice& device = opened();
    radio().addFault({.function = "WlanQueryInterface", .nth = 1, .dataSize = 771U});
    EXPECT_EQ(device.getRadioState(0), RADIO_STATE_NONE);
    // The query logs nothing of the size; its caller names the opcode.
    EXPECT_THAT(lines(), ElementsAre(LineSaying(test::RADIO_QUERY_LINE)));
    radio().addFault({.function = "WlanQueryInterface", .code = ERROR_INVALID_HANDLE});
    EXPECT_EQ(device.getRadioState(99), RADIO_STATE_NONE);
    EXPECT_FALSE(device.isRadioEnabled(0));
    // What was read before stays.
    EXPECT_EQ(device.m_radio.m_numberOfPhys, 1);
    EXPECT_EQ(device.m_radio.m_phys[0].software, dot11_radio_state_on);
}

TEST(Radio, CopiesAllEntriesOfItsTable) {
    WLAN_RADIO_STATE state{};
    state.dwNumberOfPhys = 64;
    for (DWORD i = 0; i < 64; ++i) {
        state.PhyRadioState[i] = {i, dot11_radio_state_on, dot11_radio_state_off};
    }
    Radio source;
    source.update(state);
    state.dwNumberOfPhys = 1;
    source.update(state);

    Radio copy;
    copy = source;
    EXPECT_EQ(copy.m_numberOfPhys, 1);
    for (mrl::Int32 i = 0; i < 64; ++i) {
        EXPECT_EQ(copy.m_phys[i].index, static_cast<mrl::Uint32>(i));
        EXPECT_EQ(copy.m_phys[i].software, dot11_radio_state_on);
        EXPECT_EQ(copy.m_phys[i].hardware, dot11_radio_state_off);
    }
}

// --- the switch ---

std::string switchCall(unsigned int phy, unsigned int software, DWORD result) {
    return R"(WlanSetInterface {"handle":"h1","interface":")" +
           std::string(radiosim::FIRST_INTERFACE) + R"(","opcode":4,"dataSize":12,"phy":)" +
           std::to_string(phy) + R"(,"software":)" + std::to_string(software) +
           R"(,"hardware":0,"reserved":null} = )" + std::to_string(result) + " {}";
}

std::string switchLine(const std::string& phy) {
    return "WlanSetInterface returned ERROR_INVALID_STATE when setting "
           "wlan_intf_opcode_radio_state. The radio " +
           phy + " could not be enabled or disabled";
}

TEST_F(RadioOfADevice, IsSwitchedInSoftware) {
    WirelessDevice& device = openedOn({.phys = {{}, {}}});
    device.m_lastSetResult = 99;
    EXPECT_TRUE(device.setRadioState(1, false));
    EXPECT_EQ(device.m_lastSetResult, 0U);
    EXPECT_FALSE(device.isRadioEnabled(1));
    EXPECT_TRUE(device.isRadioEnabled(0));
    radio().clearCalls();
    EXPECT_TRUE(device.setRadioState(1, true));
    EXPECT_THAT(radio().callTexts(), ElementsAre(switchCall(1, 1, 0)));
    EXPECT_TRUE(device.isRadioEnabled(1));
    radio().clearCalls();
    EXPECT_TRUE(device.setRadioState(0, false));
    EXPECT_THAT(radio().callTexts(), ElementsAre(switchCall(0, 2, 0)));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(RadioOfADevice, AFailedSwitchIsLoggedInOneWordingWhateverTheCodeWithThePhyAsASignedNumber) {
    WirelessDevice& device = opened();
    constexpr struct {
        DWORD code;
        mrl::Uint32 phy;
        const char* named;
    } rows[] = {
        {5023, 0, "0"},
        {87, 7, "7"},
        {5, 0xFFFFFFFF, "-1"},
        {6, 1, "1"},
        {31, 0x80000000, "-2147483648"},
        {0xFFFFFFFF, 2, "2"},
    };
    for (const auto& [code, phy, phyInTheLog] : rows) {
        radio().addFault({.function = "WlanSetInterface", .nth = 1, .code = code});
        log().clear();
        EXPECT_FALSE(device.setRadioState(phy, code % 2 == 0));
        EXPECT_EQ(device.m_lastSetResult, code);
        EXPECT_THAT(lines(), ElementsAre(LineSaying(switchLine(phyInTheLog))));
    }
}

TEST_F(RadioOfADevice, ASwitchWithoutAServiceFailsSilentlyAndWithoutAResult) {
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE});
    WirelessDevice& device = opened();
    device.m_lastSetResult = 99;
    EXPECT_FALSE(device.setRadioState(0, true));
    EXPECT_EQ(device.m_lastSetResult, 99U);
    EXPECT_FALSE(device.m_initialized);
    EXPECT_EQ(radio().callCount("WlanSetInterface"), 0U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(RadioOfADevice, TracesItsOperations) {
    WirelessDevice& device = opened();
    EXPECT_THAT(
        scopesOf([&device] { device.getRadioState(0); }),
        ElementsAre("getRadioState()", "populateRadioState()", "queryWirelessLanInterface()"));
    EXPECT_THAT(
        scopesOf([&device] { device.isRadioEnabled(0); }),
        ElementsAre("isRadioEnabled()", "populateRadioState()", "queryWirelessLanInterface()"));
    device.m_initialized = false;
    EXPECT_THAT(scopesOf([&device] { device.setRadioState(0, true); }),
                ElementsAre("setRadioState()", "initialize()", "openHandle()", "closeHandle()",
                            "isAPIVersionSupported()"));
}

} // namespace
