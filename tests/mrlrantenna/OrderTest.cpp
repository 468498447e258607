// The order of what the verification test does where others see it: log lines, events, phases,
// calls of the radio and pauses.
#include "DeviceTest.h"
#include "VerificationWithParameters.h"

namespace {

using radiosim::AccessPoint;
using radiosim::Signal;
using testing::ElementsAre;

using Order = std::vector<std::string>;

// Lines of the module by their numbers, calls by their functions; the rest as the journal has it.
Order orderOf(const test::Journal& journal) {
    Order order;
    for (const std::string& entry : journal.entries()) {
        const std::string line = "log 1 mrlrantenna: ";
        if (entry.starts_with(line)) {
            order.push_back("line " +
                            entry.substr(line.size(), entry.find(' ', line.size()) - line.size()));
        } else if (entry.starts_with("call ")) {
            order.push_back(entry.substr(5, entry.find(' ', 5) - 5));
        } else if (!entry.starts_with("log ")) {
            order.push_back(entry);
        }
    }
    return order;
}

// What follows the last entry that is `entry`.
Order behind(const std::string& entry, const Order& order) {
    return {std::find(order.rbegin(), order.rend(), entry).base(), order.end()};
}

class OrderOfVerification : public test::VerificationWithParameters {
protected:
    Order orderOfTest(const char* ssid, const char* warn, const char* fail) {
        const test::Journal journal;
        verify(ssid, warn, fail);
        return orderOf(journal);
    }
};

TEST_F(OrderOfVerification, OfARunThatPasses) {
    startRadio({AccessPoint{.ssid = "Lab",
                            .signal = 50U,
                            .bss = std::vector<radiosim::Bss>{{.linkQuality = Signal(60U)}}}});
    EXPECT_THAT(
        orderOfTest("Lab", "40", "20"),
        ElementsAre("line 250",
                    // the device and its radio
                    "WlanOpenHandle", "UuidFromStringW", "WlanRegisterNotification",
                    "WlanQueryInterface",
                    // the forced scan
                    "progress SCANNING 45 s", "WlanOpenHandle", "WlanEnumInterfaces", "WlanScan",
                    "pause 7000 ms", "WlanGetNetworkBssList", "line 154",
                    // the search
                    "progress SEARCHING 31 s", "WlanGetAvailableNetworkList", "WlanFreeMemory",
                    "WlanQueryInterface", "line 179", "survey VISIBLE_NETWORKS", "line 181",
                    "line 183", "line 187", "WlanCloseHandle",
                    // the verdict
                    "line 265", "line 268", "line 271", "measurement DetectedSignalStrength"));
}

TEST_F(OrderOfVerification, OfASearchThatFindsNothing) {
    startRadio({AccessPoint{.ssid = "Other", .signal = 50U}});
    const Order order = orderOfTest("Lab", "40", "20");
    EXPECT_THAT(Order(order.begin() + 5, order.begin() + 19),
                ElementsAre("progress SCANNING 45 s", "WlanOpenHandle", "WlanEnumInterfaces",
                            "WlanScan", "pause 7000 ms", "WlanGetNetworkBssList",
                            "progress SCANNING_AGAIN 38 s", "WlanOpenHandle", "WlanEnumInterfaces",
                            "WlanScan", "pause 7000 ms", "WlanGetNetworkBssList", "line 154",
                            "progress SEARCHING 31 s"));
    EXPECT_EQ(std::count(order.begin(), order.end(), "pause 100 ms"), 300);
    EXPECT_THAT(behind("pause 100 ms", order),
                ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory", "WlanQueryInterface",
                            "line 179", "line 194", "survey VISIBLE_NETWORKS", "WlanCloseHandle",
                            "event error ACCESS_POINT_NOT_FOUND", "line 262"));
}

TEST_F(OrderOfVerification, OfASearchInAnEmptyListWhichDoesNotLookAtTheRadioInTheEnd) {
    startRadio(std::vector<AccessPoint>{});
    const Order order = orderOfTest("Lab", "40", "20");
    EXPECT_EQ(std::count(order.begin(), order.end(), "pause 100 ms"), 300);
    EXPECT_THAT(behind("pause 100 ms", order),
                ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory", "line 163",
                            "event error NO_ACCESS_POINT_FOUND", "WlanCloseHandle",
                            "event error ACCESS_POINT_NOT_FOUND", "line 262"));
}

TEST_F(OrderOfVerification, OfARadioThatIsOff) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().accessPoints = {{.ssid = "Lab"}};
    scenario.interfaces.front().phys = {{.software = 2}, {.software = 1}};
    startRadio(scenario);
    EXPECT_THAT(behind("progress SEARCHING 31 s", orderOfTest("Lab", "40", "20")),
                ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory", "WlanQueryInterface",
                            "WlanCloseHandle", "line 256"));
}

struct Ending {
    const char* ssid;
    const char* warn;
    const char* fail;
    Order order; // behind the last call of the radio
};

void PrintTo(const Ending& ending, std::ostream* out) {
    *out << "\"" << ending.ssid << "\", warn " << ending.warn << ", fail " << ending.fail;
}

class OrderOfEndings : public OrderOfVerification, public testing::WithParamInterface<Ending> {};

TEST_P(OrderOfEndings, IsAsHostsKnowIt) {
    const Ending& ending = GetParam();
    startRadio({AccessPoint{.ssid = "Lab", .signal = 50U}});
    EXPECT_EQ(behind("WlanCloseHandle", orderOfTest(ending.ssid, ending.warn, ending.fail)),
              ending.order);
}

INSTANTIATE_TEST_SUITE_P(
    EveryVerdict, OrderOfEndings,
    testing::Values(
        Ending{"", "40", "20", {"line 245", "event warning SSID_NOT_SET"}},
        Ending{"Lab",
               "60",
               "20",
               {"line 265", "line 268", "line 271", "measurement DetectedSignalStrength",
                "event warning FAILING_SIGNAL_STRENGTH_DETECTED", "line 292"}},
        Ending{"Lab",
               "60",
               "50",
               {"line 265", "line 268", "line 271", "measurement DetectedSignalStrength",
                "event error FAILING_SIGNAL_STRENGTH_DETECTED", "line 283"}},
        Ending{"Lab",
               "0",
               "0",
               {"line 265", "line 268", "line 271", "line 207",
                "event warning WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO", "line 275"}},
        Ending{"Lab",
               "100",
               "20",
               {"line 265", "line 268", "line 271", "line 213", "event warning PARAM_OUT_OF_RANGE",
                "line 275"}},
        Ending{"Lab",
               "40",
               "100",
               {"line 265", "line 268", "line 271", "line 220", "event warning PARAM_OUT_OF_RANGE",
                "line 275"}},
        Ending{"Lab",
               "20",
               "40",
               {"line 265", "line 268", "line 271", "line 228",
                "event warning FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN", "line 275"}}));

class OrderOfARefresh : public test::DeviceTest {};

TEST_F(OrderOfARefresh, TheOldListIsGoneBeforeTheServiceIsAskedForANewOne) {
    startRadio({AccessPoint{.ssid = "Lab"}});
    WirelessDevice& device = opened();
    ASSERT_EQ(device.getNumVisibleNetworks(), 1U);
    std::vector<mrl::Uint32> sizes;
    // Called after the service's answer, before the module reads it.
    radio().onCall([&](const radiosim::Call& call) {
        if (call.function == "WlanGetAvailableNetworkList") {
            sizes.push_back(device.m_visibleNetworks.size());
        }
    });
    device.getNumVisibleNetworks();
    radio().onCall(nullptr);
    EXPECT_THAT(sizes, ElementsAre(0U));
}

TEST_F(OrderOfARefresh, TheScopeOfTheQueryIsAroundTheOpeningOfTheDevice) {
    radiosim::Scenario scenario;
    scenario.faults = {{.function = "WlanOpenHandle", .code = 5U}};
    startRadio(std::move(scenario));
    WirelessDevice& device = open();
    EXPECT_THAT(scopesOf([&] { device.getNumVisibleNetworks(); }),
                ElementsAre("getNumVisibleNetworks()", "getVisibleNetworkList()", "initialize()",
                            "openHandle()", "closeHandle()"));
}

} // namespace
