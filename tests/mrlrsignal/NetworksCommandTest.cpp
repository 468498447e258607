// The command networks through the real framework, on the simulated radio.
#include "SignalProgramTest.h"
#include <levels/ModuleObjects.h>
#include <levels/TargetParameters.h>

#include <networks/Listing.h>
#include <readings/ScanRequest.h>

#include <mrl/Json.h>

#include <sstream>

namespace test {
namespace {

using namespace std::chrono_literals;
using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Fault;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Networks : public SignalProgramTest {
protected:
    int networks(std::vector<std::string> options = {}) {
        options.insert(options.begin(), "networks");
        return program(std::move(options));
    }

    // What the records of --format jsonl have under `member`.
    std::vector<mrl::Json> records(const char* member, std::vector<std::string> options = {}) {
        options.insert(options.end(), {"--format", "jsonl"});
        EXPECT_EQ(networks(options), 0) << errors();
        std::vector<mrl::Json> values;
        std::istringstream lines(output());
        for (std::string line; std::getline(lines, line);) {
            values.push_back(mrl::parseJson(line).at(member));
        }
        return values;
    }
};

AccessPoint named(const std::string& name, std::vector<Bss> radios) {
    return {.ssid = name, .bss = std::move(radios)};
}

Bss radioAt(std::uint8_t number, LONG dbm, std::uint32_t channel = 6, std::uint32_t width = 20) {
    return {.bssid = {0x02, 0, number, 0, 1, 0}, .rssi = dbm, .channel = channel, .width = width};
}

TEST_F(Networks, ShowsEveryNetworkTheStrongestFirst) {
    startRadio({named("Lab", {radioAt(1, -70), radioAt(2, -50, 36, 80)}),
                {.ssid = "Guest",
                 .secured = false,
                 .auth = DOT11_AUTH_ALGO_80211_OPEN,
                 .cipher = DOT11_CIPHER_ALGO_NONE,
                 .bss = {{radioAt(3, -60)}}}});
    EXPECT_EQ(networks(), 0);
    EXPECT_EQ(output(), "dBm   %  Age/s  GHz  Ch  MHz  Security  BSSID              Dev  Name\n"
                        "-50  50      0    5  36   80  WPA2      02:00:02:00:01:00       Lab\n"
                        "-60  50      0  2.4   6   20  Open      02:00:03:00:01:00       Guest\n"
                        "-70  50      0  2.4   6   20  WPA2      02:00:01:00:01:00       Lab\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(Networks, ShowsOnlyWhatItIsAskedFor) {
    startRadio(
        {named("Lab", {radioAt(1, -70), radioAt(2, -50, 36)}), named("Lab2", {radioAt(3, -60)})});
    EXPECT_THAT(records("bssid", {"--set", "SSID=Lab"}),
                ElementsAre("02:00:02:00:01:00", "02:00:01:00:01:00"));
    EXPECT_THAT(records("bssid", {"--set", "SSID=hex:4C6162", "--set", "Band=2.4"}),
                ElementsAre("02:00:01:00:01:00"));
    EXPECT_THAT(records("name", {"--set", "BSSID=02-00-03-00-01-00"}), ElementsAre("Lab2"));
}

TEST_F(Networks, WaitsForWhatTheScanFinds) {
    startRadio(
        {{.ssid = "Late", .visible = radiosim::Visible::AFTER_SCAN, .bss = {{radioAt(1, -70)}}}});
    EXPECT_THAT(records("name"), ElementsAre("Late"));
}

TEST_F(Networks, HasNoLevelWhereTheDriverHasNone) {
    startRadio({named("None", {radioAt(1, 0)}), named("Weak", {radioAt(2, -100)})});
    EXPECT_THAT(records("dbm"), ElementsAre(-100, nullptr)) << "the unknown one is last";
}

TEST_F(Networks, ShowsAHiddenNetworkOnceWhereAnAnswerNamesIt) {
    startRadio({{.ssid = "Secret", .hidden = true, .bss = {{radioAt(1, -70), radioAt(2, -75)}}},
                named("Secret", {radioAt(1, -71)})});
    EXPECT_THAT(records("nameHex"), ElementsAre("536563726574", ""));
}

TEST_F(Networks, WritesRecordsForPrograms) {
    startRadio({named("a,\"b\"\n", {radioAt(1, -70, 36, 160)})});
    EXPECT_EQ(networks({"--format", "csv"}), 0);
    EXPECT_EQ(output(),
              "name,nameHex,bssid,dbm,percent,ageSeconds,band,channel,mhz,widthMhz,security,device,"
              "deviceIsSure,adapter\r\n"
              "\"a,\"\"b\"\"\n\",612c2262220a,02:00:01:00:01:00,-70,50,0.0,5,36,5180,160,WPA2,,,"
              "Simulated Wireless Adapter\r\n");
    EXPECT_EQ(networks({"--format", "jsonl"}), 0);
    EXPECT_THAT(output(), testing::StartsWith(R"({"name":"a,\"b\"\n","nameHex":"612c2262220a",)"));
}

TEST_F(Networks, KeepsHostileNamesAsTheyAreInRecords) {
    const std::string names[] = {"\x1b[2J", std::string("a\0b", 3), std::string(32, '\xFF'),
                                 "\xE2\x80\xAE"
                                 "daB"};
    std::vector<AccessPoint> accessPoints;
    std::uint8_t number = 0;
    for (const std::string& name : names) {
        accessPoints.push_back(named(name, {radioAt(number, -50 - number)}));
        ++number;
    }
    startRadio(accessPoints);
    EXPECT_THAT(records("name"), ElementsAre(names[0], names[1], nullptr, names[3]));
    EXPECT_THAT(output(), HasSubstr(R"("name":"\u001b[2J")"));
    EXPECT_THAT(output(), HasSubstr(R"("name":"a\u0000b")"));
    EXPECT_THAT(output(), HasSubstr(R"("name":"\u202edaB")"));
    EXPECT_EQ(networks(), 0);
    EXPECT_THAT(output(), Not(HasSubstr("\x1b")));
}

TEST_F(Networks, SurvivesElementsThatAreNone) {
    Bss cut = radioAt(1, -50);
    cut.elements = {{48, 200, 1, 0}};
    Bss hostile = radioAt(2, -60);
    hostile.elements = {{48, 0, 221, 4, 0, 0x50, 0xF2, 4, 201, 4, 0xF0, 0, 0, 0, 255, 0, 61, 1, 6}};
    startRadio({named("Cut", {cut}), named("Hostile", {hostile})});
    EXPECT_THAT(records("security"), ElementsAre("WEP", "WPA2 Enterprise"));
    EXPECT_THAT(records("widthMhz"), ElementsAre(nullptr, nullptr));
}

TEST_F(Networks, SaysWhichOnesAreOfOneDevice) {
    Bss second = radioAt(1, -60, 36);
    second.bssid.back() = 1;
    startRadio({named("Lab", {radioAt(1, -50), second, radioAt(2, -70)})});
    EXPECT_THAT(records("device"), ElementsAre(1, 1, nullptr));
    EXPECT_THAT(records("deviceIsSure"), ElementsAre(false, false, nullptr));
    EXPECT_EQ(networks(), 0);
    EXPECT_THAT(output(), HasSubstr("  1?   Lab\n"));
    EXPECT_THAT(output(), HasSubstr("\nDev: networks with the same number are sent by one device; "
                                    "? = probably, by their addresses.\n"));
}

TEST_F(Networks, HasATableForEachOfSeveralAdapters) {
    startRadio(radiosim::Scenario{
        .interfaces = {{.description = "First", .accessPoints = {named("Lab", {radioAt(1, -50)})}},
                       {.guid = "8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b21",
                        .description = "Second",
                        .accessPoints = {named("Lab", {radioAt(1, -55)})}}}});
    EXPECT_EQ(networks(), 0);
    EXPECT_THAT(output(), HasSubstr("Heard by First:\n"));
    EXPECT_THAT(output(), HasSubstr("Heard by Second:\n"));
    EXPECT_THAT(records("adapter"), ElementsAre("First", "Second"));
    EXPECT_THAT(records("dbm", {"--device", "second"}), ElementsAre(-55));
}

TEST_F(Networks, WithoutANetworkSaysWhatToDo) {
    startRadio(std::vector<AccessPoint>{});
    EXPECT_EQ(networks(), TestResult::CANNOTRUN().value());
    EXPECT_EQ(output(), "");
    EXPECT_THAT(errors(), HasSubstr("heard no network"));
    EXPECT_THAT(errors(), HasSubstr("doctor"));
    startRadio({named("Lab", {radioAt(1, -50)})});
    EXPECT_EQ(networks({"--set", "SSID=Other", "--format", "csv"}),
              TestResult::CANNOTRUN().value());
    EXPECT_EQ(output(), "");
    EXPECT_THAT(errors(), HasSubstr("heard 1 networks, and none that --set asks for"));
}

TEST_F(Networks, ShowsWhatTheSystemKnowsWhereItMayNotScan) {
    startRadio(
        radiosim::Scenario{.interfaces = {{.accessPoints = {named("Lab", {radioAt(1, -50)})}}},
                           .faults = {{.function = "WlanScan", .code = ERROR_ACCESS_DENIED}}});
    EXPECT_EQ(networks(), 0);
    EXPECT_THAT(output(), HasSubstr("Lab\n"));
    EXPECT_THAT(errors(), HasSubstr("did not scan: the list has what the system knew before"));
    EXPECT_THAT(errors(), testing::AnyOf(HasSubstr("ms-settings:privacy-location"),
                                         HasSubstr("CAP_NET_ADMIN")));
    EXPECT_EQ(clock().now(), 0s) << "there is no scan to wait for";
}

TEST_F(Networks, SaysWhyThereIsNoList) {
    const std::pair<DWORD, const char*> reasons[] = {
        {ERROR_NDIS_DOT11_POWER_STATE_INVALID, "the radio is off"},
        {ERROR_GEN_FAILURE, "(WlanGetNetworkBssList: error 31)"},
    };
    for (const auto& [code, words] : reasons) {
        startRadio(
            radiosim::Scenario{.interfaces = {{.accessPoints = {named("Lab", {radioAt(1, -50)})}}},
                               .faults = {{.function = "WlanGetNetworkBssList", .code = code}}});
        EXPECT_EQ(networks(), TestResult::CANNOTRUN().value());
        EXPECT_EQ(output(), "");
        EXPECT_THAT(errors(), HasSubstr(words));
    }
}

TEST_F(Networks, EndsWhenItIsInterrupted) {
    startRadio({named("Lab", {radioAt(1, -50)})});
    context().stopRequest.raise();
    EXPECT_EQ(networks(), TestResult::USERABORTED().value());
    EXPECT_EQ(output(), "");
    EXPECT_EQ(clock().now(), 0s);
}

TEST_F(Networks, RefusesAnAddressThatIsNone) {
    startRadio({named("Lab", {radioAt(1, -50)})});
    EXPECT_EQ(networks({"--set", "BSSID=Lab"}), 64);
    EXPECT_THAT(errors(), HasSubstr("\"Lab\" is no BSSID"));
    EXPECT_THAT(radio().calls(), IsEmpty());
}

// The look around itself; notifications arrive when they are due.
class NetworkListings : public ModuleTest {
protected:
    networks::Listing look() {
        return networks::listNetworks(levels::interfaceOf(device()), {}, [this] {
            radio().settle();
            return m_stopAt && clock().now() >= *m_stopAt;
        });
    }
    void stopAt(mrl::Clock::Duration moment) { m_stopAt = moment; }

    static radiosim::Scenario scanEnding(radiosim::ScanEnd end) {
        return {
            .interfaces = {{.scanEnd = end, .accessPoints = {named("Lab", {radioAt(1, -50)})}}}};
    }

private:
    std::optional<mrl::Clock::Duration> m_stopAt;
};

TEST_F(NetworkListings, WaitForTheEndOfTheScan) {
    startRadio(scanEnding(radiosim::ScanEnd::COMPLETE));
    const networks::Listing listing = look();
    EXPECT_EQ(clock().now(), 4s);
    EXPECT_EQ(listing.networks.size(), 1U);
    EXPECT_EQ(listing.scanError, ERROR_SUCCESS);
    EXPECT_FALSE(listing.scanFailed || listing.interrupted);
}

TEST_F(NetworkListings, SayThatAScanFailed) {
    startRadio(scanEnding(radiosim::ScanEnd::FAIL));
    const networks::Listing listing = look();
    EXPECT_EQ(clock().now(), 4s);
    EXPECT_TRUE(listing.scanFailed);
    EXPECT_EQ(listing.networks.size(), 1U);
}

TEST_F(NetworkListings, DoNotWaitForeverForAnEndThatIsNotAnnounced) {
    startRadio(scanEnding(radiosim::ScanEnd::SILENT));
    EXPECT_FALSE(look().scanFailed);
    EXPECT_EQ(clock().now(), readings::longestScan());
}

TEST_F(NetworkListings, TakeAnotherProgramsScanForTheirOwn) {
    radiosim::Scenario scenario = scanEnding(radiosim::ScanEnd::COMPLETE);
    scenario.faults = {{.function = "WlanScan", .code = ERROR_BUSY}};
    startRadio(scenario);
    EXPECT_EQ(look().scanError, ERROR_SUCCESS);
    EXPECT_EQ(clock().now(), readings::longestScan()) << "nothing scans here";
}

TEST_F(NetworkListings, EndAtOnceWhenTheyAreStopped) {
    startRadio(scanEnding(radiosim::ScanEnd::COMPLETE));
    stopAt(1s);
    const networks::Listing listing = look();
    EXPECT_EQ(clock().now(), 1s);
    EXPECT_TRUE(listing.interrupted);
    EXPECT_THAT(listing.networks, IsEmpty());
}

TEST_F(NetworkListings, SayHowOldEachEntryIs) {
    Bss old = radioAt(1, -70);
    old.heardUntil = 1s;
    startRadio({named("Old", {old}), named("New", {radioAt(2, -80)})});
    const networks::Listing listing = look();
    ASSERT_EQ(listing.networks.size(), 2U);
    EXPECT_EQ(listing.networks[0].age, 3s);
    EXPECT_EQ(listing.networks[1].age, 0s);
}

TEST_F(NetworkListings, SayWhichCallFailed) {
    startRadio(radiosim::Scenario{.interfaces = {{}},
                                  .faults = {{.function = "WlanOpenHandle", .code = 1062}}});
    const networks::Listing listing = look();
    EXPECT_EQ(listing.error, 1062U);
    EXPECT_STREQ(listing.function, "WlanOpenHandle");
}

} // namespace
} // namespace test
