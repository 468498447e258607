// The network interfaces that stand for hardware, from /sys/class/net. The loopback interface and
// virtual ones (bridges, tunnels, containers) have no device there.
#include <networkadapters/NetworkAdapters.h>

#include "Machine.h"

#include <nativewifi/Guid.h>
#include <nativewifi/LinuxFiles.h>

namespace networkadapters {

namespace {

// A radio's interface can have a random address; that of its radio is permanent.
GUID guidOf(const std::filesystem::path& interface) {
    for (const char* const file : {"phy80211/macaddress", "address"}) {
        if (const auto address =
                nativewifi::hardwareAddress(nativewifi::lineOf(interface / file))) {
            return nativewifi::guidOfAddress(*address);
        }
    }
    return {};
}

// "eth0 (e1000e)": the names that people and other programs know it by.
std::string nameOf(const std::filesystem::path& interface) {
    const std::string driver = nativewifi::linkedName(interface / "device" / "driver");
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
            adapters.push_back({.name = mrl::String(nameOf(interface)),
                                .guid = guidOf(interface),
                                .mobileBroadband = isMobileBroadband(interface)});
        }
    }
    return adapters;
}

} // namespace networkadapters
