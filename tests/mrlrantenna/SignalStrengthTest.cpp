// A network's mean signal strength, and the readings of the current connection.
#include "DeviceTest.h"

#include <cstdint>

namespace {

using radiosim::AccessPoint;
using radiosim::Milliseconds;
using radiosim::Signal;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class SignalStrength : public test::DeviceTest {
protected:
    // One value for each of the three refreshes.
    static Signal readings(std::uint32_t first, std::uint32_t second, std::uint32_t third) {
        return Signal::Series{.values = {first, second, third}, .step = Milliseconds(100)};
    }
};

TEST_F(SignalStrength, IsTheMeanOfThreeRefreshesWithItsFractionDropped) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = readings(70, 71, 73)}});
    EXPECT_EQ(device.getSignalStrength(named("Lab")), 71);
}

TEST_F(SignalStrength, TakesThreeListsAndAPauseAfterEach) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getSignalStrength(named("Lab"));
    EXPECT_THAT(radio().callNames(), ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory",
                                                 "WlanGetAvailableNetworkList", "WlanFreeMemory",
                                                 "WlanGetAvailableNetworkList", "WlanFreeMemory"));
    EXPECT_THAT(clock().sleeps(), ElementsAre(100, 100, 100));
    const std::vector<radiosim::Call> made = radio().calls();
    EXPECT_EQ(made[2].at, Milliseconds(100));
    EXPECT_EQ(made[4].at, Milliseconds(200));
    EXPECT_EQ(radio().leaksOf("WlanGetAvailableNetworkList"), radiosim::Leaks());
    EXPECT_THAT(raised(), IsEmpty());
}

TEST_F(SignalStrength, CountsOnlyTheRefreshesThatShowTheNetwork) {
    const AccessPoint once{
        .ssid = "Lab", .signal = 77U, .from = Milliseconds(100), .to = Milliseconds(200)};
    EXPECT_EQ(openedSeeing({once}).getSignalStrength(named("Lab")), 77);
    const AccessPoint late{.ssid = "Lab", .signal = readings(0, 40, 61), .from = Milliseconds(100)};
    EXPECT_EQ(openedSeeing({late}).getSignalStrength(named("Lab")), 50);
    EXPECT_EQ(openedSeeing({{.ssid = "Guest"}}).getSignalStrength(named("Lab")), 0);
}

TEST_F(SignalStrength, AveragesInANetworkWhoseNameIsAPartOfTheGivenOne) {
    const AccessPoint lab{.ssid = "Lab", .signal = 40U};
    const AccessPoint lab5{.ssid = "Lab-5G", .signal = 90U};
    EXPECT_EQ(openedSeeing({lab5, lab}).getSignalStrength(named("Lab-5G")), 65);
    EXPECT_EQ(openedSeeing({lab5, lab}).getSignalStrength(named("Lab")), 40);
    // Merged into the shorter name.
    EXPECT_EQ(openedSeeing({lab, lab5}).getSignalStrength(named("Lab-5G")), 40);
    EXPECT_EQ(openedSeeing({lab, lab5}).getSignalStrength(named("Lab")), 40);
}

TEST_F(SignalStrength, LeavesTheThirdRefreshInTheList) {
    WirelessDevice& device = openedSeeing({{.ssid = "Guest", .to = Milliseconds(200)},
                                           {.ssid = "Lab", .signal = readings(10, 20, 30)}});
    device.getSignalStrength(named("Lab"));
    ASSERT_EQ(device.m_visibleNetworks.size(), 1U);
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 30);
}

TEST_F(SignalStrength, LeavesOutAFailedRefresh) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = readings(30, 99, 51)}});
    radio().addFault({.function = "WlanGetAvailableNetworkList", .nth = 2, .code = ERROR_BUSY});
    EXPECT_EQ(device.getSignalStrength(named("Lab")), 40);
    EXPECT_THAT(clock().sleeps(), ElementsAre(100, 100, 100));
}

TEST_F(SignalStrength, CountsTheOldRecordsAgainWhenTheHandleCannotBeOpened) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = readings(30, 60, 90)}});
    ASSERT_TRUE(device.getVisibleNetworkList());
    device.m_initialized = false;
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE});
    EXPECT_EQ(device.getSignalStrength(named("Lab")), 30);
    EXPECT_THAT(clock().sleeps(), ElementsAre(100, 100, 100));
}

TEST_F(SignalStrength, WrapsOnAbsurdReportsInsteadOfFailing) {
    // A sum beyond 32 bits wraps.
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = 0x7FFFFFFFU}});
    EXPECT_EQ(device.getSignalStrength(named("Lab")), 0x7FFFFFFD / 3);
    // A negative one is divided as such.
    EXPECT_EQ(
        openedSeeing({{.ssid = "Lab", .signal = 0xFFFFFFFFU}}).getSignalStrength(named("Lab")), -1);
}

TEST_F(SignalStrength, TracesItsRefreshesAndComparisons) {
    WirelessDevice& device = openedSeeing({});
    EXPECT_THAT(scopesOf([&] { device.getSignalStrength(named("Lab")); }),
                ElementsAre("getSignalStrength()", "getVisibleNetworkList()",
                            "getVisibleNetworkList()", "getVisibleNetworkList()"));
    device.addVisibleNetwork(named("Lab"));
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE});
    device.m_initialized = false;
    EXPECT_EQ(scopesOf([&] { device.getSignalStrength(named("Lab")); }).back(), "isSame()");
}

// --- the current connection ---

class ConnectionReadings : public test::DeviceTest {
protected:
    WirelessDevice& openedConnected() {
        return openedOn({.connection = radiosim::Connection{
                             .ssid = "Lab", .quality = 66U, .rxRate = 433300, .txRate = 86700}});
    }
    // Quality, receive rate, transmit rate.
    static std::vector<mrl::Uint32> readingsOf(const WirelessDevice& device) {
        return {device.m_signalQuality, device.m_rxRate, device.m_txRate};
    }
    static void fill(WirelessDevice& device) {
        device.m_signalQuality = 1;
        device.m_rxRate = 2;
        device.m_txRate = 3;
    }
};

TEST_F(ConnectionReadings, AreQualityAndBothRates) {
    WirelessDevice& device = openedConnected();
    EXPECT_TRUE(device.getSigTransReceieveRate());
    EXPECT_THAT(readingsOf(device), ElementsAre(66, 433300, 86700));
    EXPECT_THAT(radio().callTexts(), ElementsAre(test::calls::query("h1", 7, 604)));
    EXPECT_THAT(clock().sleeps(), IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ConnectionReadings, AreZeroWithoutAConnection) {
    WirelessDevice& device = opened();
    fill(device);
    EXPECT_FALSE(device.getSigTransReceieveRate());
    EXPECT_THAT(readingsOf(device), ElementsAre(0, 0, 0));
    EXPECT_THAT(lines(), Contains(test::LineSaying(test::CONNECTION_QUERY_LINE)));
}

TEST_F(ConnectionReadings, AreZeroWhenTheAnswerCannotBeUsedOrTheServiceIsGone) {
    for (const radiosim::Fault& fault :
         {radiosim::Fault{.function = "WlanQueryInterface", .nth = 1, .dataSize = 603U},
          radiosim::Fault{.function = "WlanQueryInterface", .nth = 1, .noData = true},
          radiosim::Fault{.function = "WlanOpenHandle", .nth = 1, .code = 1062U}}) {
        WirelessDevice& device = openedConnected();
        fill(device);
        device.m_initialized = fault.function != "WlanOpenHandle";
        radio().addFault(fault);
        EXPECT_FALSE(device.getSigTransReceieveRate());
        EXPECT_THAT(readingsOf(device), ElementsAre(0, 0, 0));
    }
}

TEST_F(ConnectionReadings, KeepTheirValuesWhileQueriesAreBlocked) {
    WirelessDevice& device = openedConnected();
    fill(device);
    device.m_connectionQueryBlocked = true;
    EXPECT_FALSE(device.getSigTransReceieveRate());
    EXPECT_TRUE(device.m_connectionQueryBlocked);
    EXPECT_THAT(readingsOf(device), ElementsAre(1, 2, 3));
    EXPECT_THAT(radio().callTexts(), IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ConnectionReadings, AreTraced) {
    WirelessDevice& device = openedConnected();
    EXPECT_THAT(scopesOf([&device] { device.getSigTransReceieveRate(); }),
                ElementsAre("getSigTransReceieveRate()", "populateWLANConnectionAtrributes()",
                            "queryWirelessLanInterface()"));
    device.m_connectionQueryBlocked = true;
    EXPECT_THAT(scopesOf([&device] { device.getSigTransReceieveRate(); }),
                ElementsAre("getSigTransReceieveRate()"));
}

} // namespace
