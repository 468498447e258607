// The scenarios that come with the simulator, and scenarios as files.
#include "Client.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace radiosim {
namespace {

using namespace std::chrono_literals;

std::vector<std::filesystem::path> scenarioFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(RADIOSIM_SCENARIOS)) {
        files.push_back(entry.path());
    }
    return files;
}

TEST(ScenarioFiles, AreAllTakenByTheEngine) {
    const std::vector<std::filesystem::path> files = scenarioFiles();
    EXPECT_GE(files.size(), 8U);
    for (const std::filesystem::path& file : files) {
        EXPECT_NO_THROW(Engine(Scenario::fromFile(file))) << file;
    }
}

TEST(ScenarioFiles, ThatCannotBeReadAreRefusedWithoutAPlace) {
    for (const std::filesystem::path& file : {std::filesystem::path("no/such/scenario.json"),
                                              std::filesystem::path(RADIOSIM_SCENARIOS)}) {
        try {
            Scenario::fromFile(file);
            ADD_FAILURE() << file << " was taken";
        } catch (const ScenarioError& error) {
            EXPECT_EQ(error.place(), "");
            EXPECT_STREQ(error.what(), "the file cannot be read");
        }
    }
}

class Office : public WithEngine {
protected:
    void SetUp() override { start(Scenario::builtIn()); }

    WLAN_AVAILABLE_NETWORK network(const std::string& name) {
        for (const WLAN_AVAILABLE_NETWORK& network : networks()) {
            if (ssidText(network.dot11Ssid) == name) {
                return network;
            }
        }
        ADD_FAILURE() << name << " is not there";
        return {};
    }
};

TEST_F(Office, ShowsLabWithASignalThatPassesAtAllTimes) {
    for (int second = 0; second < 600; ++second) {
        const ULONG quality = network("Lab").wlanSignalQuality;
        ASSERT_GE(quality, 62U) << "after " << second << " s";
        ASSERT_LE(quality, 78U) << "after " << second << " s";
        clock().sleep(1s);
    }
}

TEST_F(Office, ShowsLabBeforeTheNetworkWhoseNameBeginsLikeIt) {
    const std::vector<std::string> all = names();
    const auto lab = std::find(all.begin(), all.end(), "Lab");
    const auto lab5 = std::find(all.begin(), all.end(), "Lab-5G");
    ASSERT_NE(lab5, all.end());
    EXPECT_LT(lab, lab5);
}

TEST_F(Office, HasADozenNetworksOfEveryKind) {
    const std::vector<std::string> all = names();
    EXPECT_GE(all.size(), 12U);
    EXPECT_EQ(std::count(all.begin(), all.end(), ""), 1) << "a hidden one";
    EXPECT_EQ(std::count(all.begin(), all.end(), "Nordwind"), 2) << "with a profile and without";
    EXPECT_EQ(std::count(all.begin(), all.end(), "Caf\xE9"), 1) << "a name in eight bits";
    EXPECT_EQ(network("Projector").dot11BssType, dot11_BSS_type_independent);
    EXPECT_EQ(network("Printer-WEP").bNetworkConnectable, FALSE);
}

TEST_F(Office, IsConnectedToAnotherNetworkThanLab) {
    const auto attributes =
        queried<WLAN_CONNECTION_ATTRIBUTES>(wlan_intf_opcode_current_connection);
    EXPECT_EQ(ssidText(attributes.wlanAssociationAttributes.dot11Ssid), "Nordwind");
    EXPECT_NE(network("Nordwind").dwFlags & WLAN_AVAILABLE_NETWORK_CONNECTED, 0U);
    EXPECT_EQ(network("Lab").dwFlags & WLAN_AVAILABLE_NETWORK_CONNECTED, 0U);
}

TEST_F(Office, IsTheScenarioFileItself) {
    std::ifstream stream(std::filesystem::path(RADIOSIM_SCENARIOS) / "office.json",
                         std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(Scenario::builtInText(), text);
}

} // namespace
} // namespace radiosim
