// What Linux says of its devices in its files, on small trees made for the test.
#include <networkadapters/MachineCheck.h>
#include <networkadapters/NetworkAdapters.h>

#include <support/TemporaryFolder.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

#include <nativewifi/Guid.h>

#include <mrl/System.h>

#include <gmock/gmock.h>

namespace test {

namespace {

namespace fs = std::filesystem;

using networkadapters::checkMachine;
using networkadapters::NetworkAdapter;
using networkadapters::ScopedMachine;
using networkadapters::systemNetworkAdapters;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* PCI = "sys/bus/pci/devices/0000:02:00.0/";
constexpr const char* NO_CAPABILITIES = "Name:\tx\nCapEff:\t0000000000000000\nCapBnd:\t0\n";
constexpr const char* ALL_CAPABILITIES = "Name:\tx\nCapEff:\t000001ffffffffff\nCapBnd:\t0\n";

class LinuxMachine : public testing::Test {
protected:
    LinuxMachine() { tesk5::Language::current().set("en"); }

    void file(const std::string& path, const std::string& content) {
        fs::create_directories((m_folder.path() / path).parent_path());
        std::ofstream(m_folder.path() / path) << content;
    }
    void folder(const std::string& path) { fs::create_directories(m_folder.path() / path); }
    void link(const std::string& path, const std::string& target) {
        fs::create_directories((m_folder.path() / path).parent_path());
        fs::create_symlink(target, m_folder.path() / path);
    }
    const fs::path& root() const { return m_folder.path(); }
    void readNothing() {
        m_machine.reset();
        m_machine.emplace(fs::path());
    }
    void setChannels(std::vector<nativewifi::RadioChannels> radios) {
        m_machine.reset();
        m_machine.emplace(m_folder.path(), std::move(radios));
    }
    // A network interface of a device with a driver.
    void interface(const std::string& name, const std::string& address, const std::string& uevent) {
        const std::string folder = "sys/class/net/" + name;
        file(folder + "/address", address + "\n");
        file(folder + "/uevent", uevent);
        link(folder + "/device/driver", "../../../bus/pci/drivers/e1000e");
    }
    // One of a radio, as its kernel shows it when all is well.
    void radio(const std::string& name, const std::string& flags = "0x1003") {
        interface(name, "12:34:56:78:9a:bc", "DEVTYPE=wlan\nINTERFACE=" + name + "\n");
        file("sys/class/net/" + name + "/phy80211/macaddress", "02:00:5e:00:53:01\n");
        file("sys/class/net/" + name + "/flags", flags + "\n");
    }
    void wirelessCard(const std::string& driver) {
        file(PCI + std::string("class"), "0x028000\n");
        file(PCI + std::string("vendor"), "0x8086\n");
        file(PCI + std::string("device"), "0x2725\n");
        if (!driver.empty()) {
            link(PCI + std::string("driver"), "../../drivers/" + driver);
        }
    }
    // The findings' keys, with a mark for problems, and their texts.
    static std::vector<std::string> found() {
        std::vector<std::string> lines;
        for (const tesk5::Finding& finding : checkMachine()) {
            lines.push_back((finding.good ? "" : "! ") + message(finding));
        }
        return lines;
    }

private:
    TemporaryFolder m_folder;
    std::optional<ScopedMachine> m_machine{m_folder.path()};
};

std::vector<std::string> names(const std::vector<NetworkAdapter>& adapters) {
    std::vector<std::string> all;
    all.reserve(adapters.size());
    for (const NetworkAdapter& adapter : adapters) {
        all.push_back(adapter.name.getUTF8String().bytes());
    }
    return all;
}

TEST_F(LinuxMachine, HasTheAdaptersThatStandForHardware) {
    interface("enp3s0", "00:11:22:33:44:55", "INTERFACE=enp3s0\nIFINDEX=2\n");
    file("sys/class/net/lo/address", "00:00:00:00:00:00\n");
    file("sys/class/net/docker0/address", "02:42:00:00:00:01\n");
    radio("wlp2s0");
    interface("wwan0", "", "DEVTYPE=wwan\nINTERFACE=wwan0\n");
    const std::vector<NetworkAdapter> adapters = systemNetworkAdapters();
    ASSERT_THAT(names(adapters),
                ElementsAre("enp3s0 (e1000e)", "wlp2s0 (e1000e)", "wwan0 (e1000e)"));
    EXPECT_TRUE(nativewifi::sameGuid(adapters[0].guid,
                                     nativewifi::guidOfAddress({0, 0x11, 0x22, 0x33, 0x44, 0x55})));
    EXPECT_TRUE(nativewifi::sameGuid(adapters[1].guid,
                                     nativewifi::guidOfAddress({0x02, 0, 0x5E, 0, 0x53, 0x01})))
        << "the radio's own address, as the interface's may be random";
    EXPECT_TRUE(nativewifi::sameGuid(adapters[2].guid, GUID{}));
    EXPECT_FALSE(adapters[0].wireless);
    EXPECT_TRUE(adapters[1].wireless);
    EXPECT_EQ(adapters[1].address, "02:00:5e:00:53:01");
    EXPECT_EQ(adapters[1].driver, "e1000e");
    EXPECT_FALSE(adapters[0].mobileBroadband);
    EXPECT_TRUE(adapters[2].mobileBroadband);
}

TEST_F(LinuxMachine, IsNotReadWhenNothingStandsForItsRoot) {
    wirelessCard("");
    readNothing();
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(systemNetworkAdapters(), IsEmpty());
}

TEST_F(LinuxMachine, WithoutARadioHasNothingToSayOfTheUseOfOne) {
    interface("enp3s0", "00:11:22:33:44:55", "");
    file("proc/self/status", NO_CAPABILITIES);
    file("proc/7/comm", "NetworkManager\n");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxMachine, NamesACardWithoutADriver) {
    wirelessCard("");
    EXPECT_THAT(found(),
                ElementsAre(testing::StartsWith(
                    "! The wireless device PCI 0000:02:00.0 [8086:2725] has no driver. ")));
}

TEST_F(LinuxMachine, NamesACardWhoseDriverMadeNoRadio) {
    wirelessCard("iwlwifi");
    EXPECT_THAT(found(), ElementsAre(testing::StartsWith(
                             "! The wireless device PCI 0000:02:00.0 [8086:2725] has the driver "
                             "iwlwifi, but no radio. ")));
    folder(PCI + std::string("ieee80211/phy0"));
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxMachine, LooksForTheRadioOfACardThatIsABusOfItsOwn) {
    wirelessCard("bcma-pci-bridge");
    folder(PCI + std::string("bcma0:1/ieee80211/phy0"));
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxMachine, LeavesOtherCardsAlone) {
    file(PCI + std::string("class"), "0x020000\n");
    file("sys/bus/sdio/devices/mmc0:0001:1/class", "0x00\n");
    file("sys/bus/usb/devices/1-4/product", "Wireless Mouse\n");
    file("sys/bus/usb/devices/1-4:1.0/bInterfaceClass", "ff\n");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxMachine, KnowsAWirelessAdapterForUsbByItsNameAndLeavesItsBluetoothOut) {
    file("sys/bus/usb/devices/1-4/product", "802.11ac NIC\n");
    file("sys/bus/usb/devices/1-4/idVendor", "0bda\n");
    file("sys/bus/usb/devices/1-4/idProduct", "c811\n");
    file("sys/bus/usb/devices/1-4:1.0/bInterfaceClass", "e0\n");
    file("sys/bus/usb/devices/1-4:1.2/bInterfaceClass", "ff\n");
    EXPECT_THAT(found(),
                ElementsAre(testing::StartsWith(
                    "! The wireless device USB 1-4:1.2 [0bda:c811] 802.11ac NIC has no driver. ")));
}

TEST_F(LinuxMachine, IsContentWithOneInterfaceOfAnAdapterForUsb) {
    file("sys/bus/usb/devices/1-4/product", "Wireless LAN Adapter\n");
    file("sys/bus/usb/devices/1-4:1.1/bInterfaceClass", "ff\n");
    EXPECT_EQ(found().size(), 1U);
    folder("sys/bus/usb/devices/1-4/1-4:1.0/ieee80211/phy0");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxMachine, KnowsAWirelessAdapterForSdioByItsClass) {
    file("sys/bus/sdio/devices/mmc1:0001:1/class", "0x07\n");
    file("sys/bus/sdio/devices/mmc1:0001:1/vendor", "0x02d0\n");
    file("sys/bus/sdio/devices/mmc1:0001:1/device", "0xa9a6\n");
    EXPECT_THAT(found(),
                ElementsAre(testing::StartsWith(
                    "! The wireless device SDIO mmc1:0001:1 [02d0:a9a6] has no driver. ")));
}

TEST_F(LinuxMachine, NamesAnInterfaceThatIsDown) {
    radio("wlp2s0", "0x1002");
    radio("wlp3s0", "0x1003");
    radio("wlp4s0", "what");
    EXPECT_THAT(found(), ElementsAre("! The interface wlp2s0 is down, and its radio does not scan. "
                                     "Type \"sudo ip link set wlp2s0 up\", after unblocking the "
                                     "radio if it is blocked."));
}

TEST_F(LinuxMachine, LeavesOutAnInterfaceThatIsDownBecauseItsRadioIsBlocked) {
    radio("wlp2s0", "0x1002");
    file("sys/class/net/wlp2s0/phy80211/rfkill0/soft", "1\n");
    radio("wlp3s0", "0x1002");
    file("sys/class/net/wlp3s0/phy80211/rfkill1/soft", "0\n");
    file("sys/class/net/wlp3s0/phy80211/rfkill1/hard", "1\n");
    EXPECT_THAT(found(), testing::IsEmpty());
    file("sys/class/net/wlp3s0/phy80211/rfkill1/hard", "0\n");
    EXPECT_EQ(found().size(), 1U);
}

TEST_F(LinuxMachine, NamesARadioThatUsesNoChannelOf5GhzBecauseItHasNoCountry) {
    radio("wlp2s0");
    setChannels({{"phy0", "00", 25, 0},
                 {"phy1", "00", 25, 1},
                 {"phy2", "DE", 25, 0},
                 {"phy3", "00", 0, 0},
                 {"phy4", "", 25, 0}});
    EXPECT_THAT(found(), ElementsAre("! The radio phy0 has no country set, and without one it uses "
                                     "no channel of 5 GHz. Type \"sudo iw reg set DE\" with the "
                                     "code of your country, and install the package "
                                     "wireless-regdb."));
}

TEST_F(LinuxMachine, SaysThatScanningNeedsACapabilityAndHowToGetIt) {
    radio("wlp2s0");
    file("proc/self/status", ALL_CAPABILITIES);
    EXPECT_THAT(found(), IsEmpty());
    file("proc/self/status", NO_CAPABILITIES);
    const std::string program = mrl::System::executable().string();
    EXPECT_THAT(found(), ElementsAre(testing::AllOf(
                             testing::StartsWith("! To scan for networks, the program needs the "
                                                 "capability CAP_NET_ADMIN. Start it with sudo, "),
                             testing::HasSubstr("sudo setcap cap_net_admin+ep " + program + "\""),
                             testing::HasSubstr("sudo dpkg-reconfigure"))));
    EXPECT_EQ(message(networkadapters::accessDenied("Card", "WlanScan", 5)),
              message(checkMachine().at(0)))
        << "a refusal has the same words";
}

TEST_F(LinuxMachine, NamesWhatScansTooEachOnce) {
    radio("wlp2s0");
    file("proc/41/comm", "wpa_supplicant\n");
    file("proc/42/comm", "wpa_supplicant\n");
    file("proc/17/comm", "NetworkManager\n");
    file("proc/18/comm", "bash\n");
    file("proc/self/comm", "iwd\n");
    EXPECT_THAT(found(),
                ElementsAre("These programs use the radio too, and scan now and then: "
                            "NetworkManager, wpa_supplicant. The tests work beside them."));
}

TEST_F(LinuxMachine, MayHaveAnythingInItsFiles) {
    radio("wlp2s0", "");
    wirelessCard("");
    file(PCI + std::string("vendor"), std::string(100, '\xff'));
    fs::remove(root() / PCI / "device");
    for (const char* const status : {"", "CapEff:", "CapEff:\t", "CapEff:\tzz", "CapEff:\t0 0"}) {
        file("proc/self/status", status);
        EXPECT_EQ(found().size(), 1U) << status;
    }
}

} // namespace

} // namespace test
