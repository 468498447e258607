// The network interfaces that stand for hardware, from /sys/class/net. The loopback interface and
// virtual ones (bridges, tunnels, containers) have no device there.
#include <networkadapters/NetworkAdapters.h>

#include "Machine.h"

#include <nativewifi/Guid.h>
#include <nativewifi/LinuxFiles.h>

namespace networkadapters {

namespace {

// A radio's interface can have a random address; that of its radio is permanent.
std::string addressOf(const std::filesystem::path& interface) {
    for (const char* const file : {"phy80211/macaddress", "address"}) {
        std::string line = nativewifi::lineOf(interface / file);
        if (nativewifi::hardwareAddress(line)) {
            return line;
        }
    }
    return {};
}

GUID guidOf(const std::string& address) {
    const auto bytes = nativewifi::hardwareAddress(address);
    return bytes ? nativewifi::guidOfAddress(*bytes) : GUID{};
}

std::string driverOf(const std::filesystem::path& interface) {
    return nativewifi::linkedName(interface / "device" / "driver");
}

// "eth0 (e1000e)": the names that people and other programs know it by.
std::string nameOf(const std::filesystem::path& interface) {
    const std::string driver = driverOf(interface);
    const std::string name = interface.filename().string();
    return driver.empty() ? name : name + " (" + driver + ")";
}

bool isMobileBroadband(const std::filesystem::path& interface) {
    return nativewifi::valueIn(interface / "uevent", "DEVTYPE=") == "wwan";
}

} // namespace

std::vector<NetworkAdapter> systemNetworkAdapters() {
    std::vector<NetworkAdapter> adapters;
    for (const std::filesystem::path& interface : entriesOf(systemPath("sys/class/net"))) {
        if (isThere(interface / "device")) {
            const std::string address = addressOf(interface);
            adapters.push_back(
                {.name = mrl::String(nameOf(interface)),
                 .guid = guidOf(address),
                 .mobileBroadband = isMobileBroadband(interface),
                 .wireless = isThere(interface / "phy80211"),
                 .driver = driverOf(interface),
                 .version = nativewifi::lineOf(interface / "device/driver/module/version"),
                 .address = address});
        }
    }
    return adapters;
}

} // namespace networkadapters
