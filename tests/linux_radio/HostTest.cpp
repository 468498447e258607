// What the system's files say of an interface, and the GUIDs made of it.
#include "FakeKernel.h"

#include <Adapters.h>
#include <Host.h>
#include <Rfkill.h>

#include <nativewifi/Guid.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>

namespace nativewifi::linux_radio {
namespace {

namespace fs = std::filesystem;

class HostFiles : public testing::Test {
protected:
    HostFiles() { m_kernel.add({}); }

    const fs::path& root() const { return m_kernel.root(); }
    static void write(const fs::path& path, const std::string& content) {
        fs::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }
    /// A device of wlan0's radio, as the kernel links it.
    fs::path device(const std::string& bus, const std::string& place) {
        fs::path device = root() / "sys/devices" / place;
        fs::create_directories(device);
        fs::create_directories(root() / "sys/bus" / bus);
        fs::create_directories(root() / "sys/drivers/iwlwifi");
        fs::create_directory_symlink(root() / "sys/bus" / bus, device / "subsystem");
        fs::create_directory_symlink(root() / "sys/drivers/iwlwifi", device / "driver");
        fs::create_directory_symlink(device, root() / "sys/class/ieee80211/phy0/device");
        return device;
    }
    std::string description() const { return Host(root()).description("wlan0"); }

    test::FakeKernel m_kernel;
};

TEST_F(HostFiles, DescribeAnInterfaceByTheNamesThatTheSystemKnows) {
    const fs::path folder = device("pci", "pci0000:00/0000:03:00.0");
    write(folder / "vendor", "0x8086\n");
    write(folder / "device", "0x2526\n");
    EXPECT_EQ(description(), "iwlwifi 8086:2526 (wlan0)");
    const fs::path database = root() / "run/udev/data/+pci:0000:03:00.0";
    write(database, "I:123\nE:ID_MODEL_FROM_DATABASE=Wireless-AC 9260\n");
    EXPECT_EQ(description(), "Wireless-AC 9260 (wlan0)");
    write(database, "E:ID_VENDOR_FROM_DATABASE=Intel Corporation\n"
                    "E:ID_MODEL_FROM_DATABASE=Wireless-AC 9260\n");
    EXPECT_EQ(description(), "Intel Corporation Wireless-AC 9260 (wlan0)");
}

TEST_F(HostFiles, DescribeAUsbInterfaceByItsOwnNames) {
    const fs::path function = device("usb", "usb1/1-4/1-4:1.0");
    write(function / "../idVendor", "0bda\n");
    write(function / "../idProduct", "8812\n");
    EXPECT_EQ(description(), "iwlwifi 0bda:8812 (wlan0)");
    write(function / "../product", "802.11ac NIC\n");
    EXPECT_EQ(description(), "802.11ac NIC (wlan0)");
    write(function / "../manufacturer", "Realtek\n");
    EXPECT_EQ(description(), "Realtek 802.11ac NIC (wlan0)");
}

TEST_F(HostFiles, DescribeAnInterfaceWithoutADeviceByItsName) {
    EXPECT_EQ(description(), "wlan0");
    device("virtual", "virtual/hwsim0");
    EXPECT_EQ(description(), "iwlwifi (wlan0)");
}

TEST_F(HostFiles, GiveThePermanentAddressOfTheRadio) {
    const Host host(root());
    EXPECT_EQ(host.permanentAddress("wlan0"), (MacAddress{2, 0, 0, 0, 0, 3}));
    const fs::path file = root() / "sys/class/ieee80211/phy0/macaddress";
    for (const char* const wrong :
         {"", "02:00:00", "02:00:00:00:00:03:04", "00:00:00:00:00:00", "address", "2:0:0:0:0:g"}) {
        write(file, wrong);
        EXPECT_EQ(host.permanentAddress("wlan0"), std::nullopt) << wrong;
    }
    EXPECT_EQ(host.permanentAddress("wlan1"), std::nullopt);
}

TEST_F(HostFiles, AreNotLookedForOutsideOfTheirFolder) {
    write(root() / "sys/class/flags", "0x1002\n");
    const Host host(root());
    for (const char* const name : {"..", "../net/wlan0", "", "."}) {
        EXPECT_TRUE(host.isUp(name)) << name;
        EXPECT_EQ(host.permanentAddress(name), std::nullopt) << name;
        EXPECT_EQ(Rfkill(root()).state(name), std::nullopt) << name;
    }
}

TEST_F(HostFiles, SayWhetherAnInterfaceIsUp) {
    const Host host(root());
    EXPECT_TRUE(host.isUp("wlan0"));
    m_kernel.setUp("wlan0", false);
    EXPECT_FALSE(host.isUp("wlan0"));
    write(root() / "sys/class/net/wlan0/flags", "?");
    EXPECT_TRUE(host.isUp("wlan0")) << "the kernel will say";
}

TEST_F(HostFiles, HaveTheSwitchesOfTheRadioAlone) {
    const fs::path radio = root() / "sys/class/ieee80211/phy0";
    fs::create_directories(radio / "rfkillx");
    write(radio / "rfkill12/soft", "0\n");
    write(radio / "rfkill12/hard", "1\n");
    const Rfkill rfkill(root());
    EXPECT_EQ(rfkill.state("wlan0"), (Rfkill::State{.soft = false, .hard = true}));
    write(radio / "rfkill12/soft", "1\n");
    write(radio / "rfkill12/hard", "0\n");
    EXPECT_EQ(rfkill.state("wlan0"), (Rfkill::State{.soft = true, .hard = false}));
    EXPECT_EQ(rfkill.block("wlan0", true), 0);
    EXPECT_EQ(m_kernel.writtenToRfkill().size(), 16U) << "both";
    EXPECT_EQ(rfkill.block("wlan1", true), EOPNOTSUPP);
    fs::remove(root() / "dev/rfkill");
    fs::create_directory(root() / "dev/rfkill");
    EXPECT_EQ(rfkill.block("wlan0", true), EISDIR);
}

TEST_F(HostFiles, HaveOtherSwitchesWhenTheRadioIsAnother) {
    const fs::path radio = root() / "sys/class/ieee80211/phy0";
    const Rfkill rfkill(root());
    EXPECT_EQ(rfkill.state("wlan0"), Rfkill::State{});
    fs::remove_all(radio / "rfkill0");
    EXPECT_EQ(rfkill.state("wlan0"), std::nullopt);
    write(radio / "rfkill3/soft", "0\n");
    write(radio / "rfkill3/hard", "1\n");
    EXPECT_EQ(rfkill.state("wlan0"), (Rfkill::State{.soft = false, .hard = true}));
}

// --- GUIDs ---

Interface interfaceOf(std::uint32_t index, const std::string& name, std::uint32_t wiphy = 0) {
    Interface interface;
    interface.index = index;
    interface.wiphy = wiphy;
    interface.name = name;
    interface.address = {9, 9, 9, 9, 9, static_cast<std::uint8_t>(index)};
    return interface;
}

TEST_F(HostFiles, MakeGuidsOfThePermanentAddressAndANumber) {
    m_kernel.add({.index = 4, .name = "wlan1"}); // of the same radio
    m_kernel.add(
        {.index = 5, .wiphy = 1, .name = "wlan2", .permanentAddress = "00:00:00:00:00:00"});
    const std::vector<Adapter> adapters =
        adaptersOf({interfaceOf(3, "wlan0"), interfaceOf(4, "wlan1"), interfaceOf(5, "wlan2", 1)},
                   {}, Host(root()));
    ASSERT_EQ(adapters.size(), 3U);
    EXPECT_EQ(guidText(adapters[0].guid), "6d726c72-6c78-8000-8000-020000000003");
    EXPECT_EQ(guidText(adapters[1].guid), "6d726c72-6c78-8001-8000-020000000003");
    EXPECT_EQ(guidText(adapters[2].guid), "6d726c72-6c78-8000-8000-090909090905")
        << "the address in use, where the radio has none of its own";
}

TEST_F(HostFiles, KeepTheGuidOfAnInterfaceThatIsKnown) {
    m_kernel.add({.index = 4, .name = "wlan1"});
    const Host host(root());
    const std::vector<Adapter> both =
        adaptersOf({interfaceOf(3, "wlan0"), interfaceOf(4, "wlan1")}, {}, host);
    const std::vector<Adapter> later =
        adaptersOf({interfaceOf(4, "wlan1"), interfaceOf(7, "wlan0")}, both, host);
    EXPECT_TRUE(sameGuid(later[0].guid, both[1].guid));
    EXPECT_TRUE(sameGuid(later[1].guid, both[0].guid)) << "the number is free again";
    const std::vector<Adapter> moved = adaptersOf({interfaceOf(4, "wlan1", 1)}, both, host);
    EXPECT_TRUE(sameGuid(moved[0].guid, both[0].guid)) << "on another radio it is another";
    EXPECT_EQ(findByIndex(later, 3), nullptr);
    EXPECT_EQ(findByGuid(later, both[1].guid), later.data());
}

} // namespace
} // namespace nativewifi::linux_radio
