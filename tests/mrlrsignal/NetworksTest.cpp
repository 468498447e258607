// Parts of the command networks: words for security, networks of one device, and the table.
#include <networks/Devices.h>
#include <networks/NetworkRecords.h>
#include <networks/SecurityWords.h>
#include <networks/Table.h>

#include <support/SafeText.h>

#include <mrl/DisplayWidth.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace networks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(SecurityWords, AreThoseOfTheWayToJoin) {
    const std::pair<std::vector<DOT11_AUTH_ALGORITHM>, const char*> kinds[] = {
        {{DOT11_AUTH_ALGO_80211_OPEN}, "Open"},
        {{DOT11_AUTH_ALGO_80211_SHARED_KEY}, "WEP"},
        {{DOT11_AUTH_ALGO_OWE}, "OWE"},
        {{DOT11_AUTH_ALGO_WPA_PSK}, "WPA"},
        {{DOT11_AUTH_ALGO_RSNA_PSK}, "WPA2"},
        {{DOT11_AUTH_ALGO_WPA_PSK, DOT11_AUTH_ALGO_RSNA_PSK}, "WPA/WPA2"},
        {{DOT11_AUTH_ALGO_RSNA_PSK, DOT11_AUTH_ALGO_WPA3_SAE}, "WPA2/WPA3"},
        {{DOT11_AUTH_ALGO_WPA3_SAE}, "WPA3"},
        {{DOT11_AUTH_ALGO_RSNA}, "WPA2 Enterprise"},
        {{DOT11_AUTH_ALGO_RSNA, DOT11_AUTH_ALGO_WPA3_ENT}, "WPA2/WPA3 Enterprise"},
        {{DOT11_AUTH_ALGO_WPA3_ENT, DOT11_AUTH_ALGO_WPA3}, "WPA3 Enterprise"},
        {{DOT11_AUTH_ALGO_RSNA_PSK, DOT11_AUTH_ALGO_RSNA}, "WPA2, WPA2 Enterprise"},
        {{DOT11_AUTH_ALGO_IHV_START}, "Unknown"},
    };
    for (const auto& [offered, words] : kinds) {
        EXPECT_EQ(securityWords(offered), words);
    }
}

Network networkAt(const readings::Bssid& bssid, std::uint32_t mhz = 2437) {
    Network network;
    network.bssid = bssid;
    network.mhz = mhz;
    return network;
}

// The numbers of the networks' devices, as the table has them.
std::vector<std::string> devicesOf(std::vector<Network> networks) {
    numberDevices(networks);
    std::vector<std::string> all;
    all.reserve(networks.size());
    for (const Network& network : networks) {
        all.push_back(std::to_string(network.device) +
                      (network.device == 0 || network.deviceIsSure ? "" : "?"));
    }
    return all;
}

constexpr readings::Bssid A = {0x10, 0x20, 0x30, 0x40, 0x50, 0x60};
constexpr readings::Bssid FAR_AWAY = {0x90, 0x21, 0x31, 0x41, 0x51, 0x61};

TEST(NetworksOfOneDevice, AreProbablyThoseOfNeighbouringAddresses) {
    const readings::Bssid nearby = {0x10, 0x20, 0x30, 0x40, 0x50, 0x67};
    const readings::Bssid local = {0x16, 0x20, 0x30, 0x40, 0x50, 0x61};
    const readings::Bssid further = {0x10, 0x20, 0x30, 0x40, 0x50, 0x68};
    const readings::Bssid otherVendor = {0x14, 0x20, 0x30, 0x40, 0x50, 0x60};
    EXPECT_THAT(devicesOf({networkAt(A), networkAt(nearby)}), ElementsAre("1?", "1?"));
    EXPECT_THAT(devicesOf({networkAt(A), networkAt(local)}), ElementsAre("1?", "1?"));
    EXPECT_THAT(devicesOf({networkAt(A), networkAt(further)}), ElementsAre("0", "0"));
    EXPECT_THAT(devicesOf({networkAt(A), networkAt(otherVendor)}), ElementsAre("0", "0"));
    EXPECT_THAT(devicesOf({networkAt(FAR_AWAY), networkAt(nearby), networkAt(A)}),
                ElementsAre("0", "1?", "1?"));
}

TEST(NetworksOfOneDevice, AreSurelyThoseThatSaySo) {
    Network a = networkAt(A);
    Network b = networkAt(FAR_AWAY, 5180);
    a.traces.colocated = {FAR_AWAY};
    EXPECT_THAT(devicesOf({a, b}), ElementsAre("1", "1"));
    EXPECT_THAT(devicesOf({b, a}), ElementsAre("1", "1"));
    a.traces = {};
    a.traces.uuid = b.traces.uuid = {{1, 2, 3}};
    EXPECT_THAT(devicesOf({a, b}), ElementsAre("1", "1"));
    b.traces.uuid = {{1, 2, 4}};
    EXPECT_THAT(devicesOf({a, b}), ElementsAre("0", "0"));
    a.traces.multiLink = b.traces.multiLink = A;
    EXPECT_THAT(devicesOf({a, b}), ElementsAre("1", "1"));
}

TEST(NetworksOfOneDevice, AreTheNamesOfOneBeacon) {
    Network sender = networkAt({0x10, 0x20, 0x30, 0x40, 0x50, 0x60});
    sender.traces.nameBits = 4;
    const readings::Bssid name = {0x10, 0x20, 0x30, 0x40, 0x50, 0x6F};
    EXPECT_THAT(devicesOf({sender, networkAt(name)}), ElementsAre("1", "1"));
    EXPECT_THAT(devicesOf({networkAt(name), sender}), ElementsAre("1", "1"));
    EXPECT_THAT(devicesOf({sender, networkAt(name, 5180)}), ElementsAre("0", "0"))
        << "another radio";
}

TEST(NetworksOfOneDevice, AreAGuessWhereOneLinkIs) {
    Network a = networkAt(A);
    Network b = networkAt({0x10, 0x20, 0x30, 0x40, 0x50, 0x61});
    Network c = networkAt(FAR_AWAY);
    a.traces.multiLink = c.traces.multiLink = A;
    EXPECT_THAT(devicesOf({a, b, c}), ElementsAre("1?", "1?", "1?"));
    EXPECT_THAT(devicesOf({a, c}), ElementsAre("1", "1"));
}

Network lab(const std::string& name = "Lab") {
    Network network = networkAt({0x02, 0, 0, 0, 1, 0}, 5180);
    network.name = name;
    network.dbm = -61;
    network.percent = 78;
    network.age = std::chrono::milliseconds(1499);
    network.width = 80;
    network.security = "WPA2/WPA3";
    network.device = 1;
    return network;
}

TEST(NetworkTable, HasALineForEachNetwork) {
    Network unknown;
    unknown.security = OPEN;
    EXPECT_THAT(
        tableOf({lab(), unknown}, 0),
        ElementsAre("dBm   %  Age/s  GHz  Ch  MHz  Security   BSSID              Dev  Name",
                    "-61  78      1    5  36   80  WPA2/WPA3  02:00:00:00:01:00  1?   Lab",
                    "  -   0      -    -   -    -  Open       00:00:00:00:00:00       (hidden)"));
}

TEST(NetworkTable, FitsIntoTheTerminal) {
    Network wide = lab("無線ネットワークの長い名前です");
    wide.security = "WPA2/WPA3 Enterprise";
    for (const std::size_t columns : {200U, 120U, 80U, 79U, 60U, 40U, 30U}) {
        for (const std::string& line : tableOf({lab(), wide}, columns)) {
            EXPECT_LT(mrl::columnsOf(line), columns) << line;
        }
    }
    EXPECT_THAT(tableOf({wide}, 200).at(1), HasSubstr(wide.name));
    EXPECT_THAT(tableOf({wide}, 80).at(1), HasSubstr("…"));
    EXPECT_THAT(tableOf({wide}, 80).at(1),
                testing::AllOf(HasSubstr(" WPA2/WPA3 Ente…  02:00:00:00:01:00  1? "),
                               testing::StartsWith("-61    5  36   80 ")));
    EXPECT_THAT(tableOf({lab()}, 80).at(1), HasSubstr("02:00:00:00:01:00"));
    EXPECT_THAT(tableOf({lab()}, 30).at(1), Not(HasSubstr("02:00:00:00:01:00")));
    EXPECT_THAT(tableOf({lab()}, 30).at(1), HasSubstr("-61"));
    EXPECT_EQ(tableOf({lab()}, 1).size(), 2U) << "too narrow for anything";
}

TEST(NetworkTable, MakesHostileNamesHarmless) {
    const std::pair<std::string, const char*> names[] = {
        {"\x1b[2J\x1b]0;x\x07", "\\x1B[2J\\x1B]0;x\\x07"},
        {"a\r\nb", "a\\r\\nb"},
        {std::string("a\0b", 3), "a\\x00b"},
        {"\xE2\x80\xAE"
         "daB",
         "\\u202EdaB"},
        {"\xC2\x9B"
         "2J",
         "\\x9B2J"},
        {"B\xFCro", "hex:42fc726f"},
        {std::string(32, '\xFF'),
         "hex:ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff"},
    };
    for (const auto& [name, shown] : names) {
        const std::string line = tableOf({lab(name)}, 0).at(1);
        EXPECT_TRUE(line.ends_with(std::string("  ") + shown)) << line;
        EXPECT_EQ(test::findUnsafe(line), "");
    }
}

TEST(NetworkRecords, HaveEveryMember) {
    EXPECT_EQ(recordOf(lab(), "Card").dump(),
              R"({"name":"Lab","nameHex":"4c6162","bssid":"02:00:00:00:01:00","dbm":-61,)"
              R"("percent":78,"ageSeconds":1.499,"band":"5","channel":36,"mhz":5180,)"
              R"("widthMhz":80,"security":"WPA2/WPA3","device":1,"deviceIsSure":false,)"
              R"("adapter":"Card"})");
}

TEST(NetworkRecords, HaveNullForWhatIsNotKnown) {
    Network unknown;
    unknown.name = "B\xFCro";
    unknown.security = OPEN;
    EXPECT_EQ(recordOf(unknown, "Card").dump(),
              R"({"name":null,"nameHex":"42fc726f","bssid":"00:00:00:00:00:00","dbm":null,)"
              R"("percent":0,"ageSeconds":null,"band":null,"channel":null,"mhz":null,)"
              R"("widthMhz":null,"security":"Open","device":null,"deviceIsSure":null,)"
              R"("adapter":"Card"})");
}

} // namespace
} // namespace networks
