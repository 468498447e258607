#include <networkadapters/MachineCheck.h>

#include "Machine.h"

#include <nativewifi/LinuxFiles.h>

#include <mrl/System.h>

#include <algorithm>
#include <set>

namespace networkadapters {

namespace {

using nativewifi::hexNumber;
using nativewifi::lineOf;
using nativewifi::linkedName;
using nativewifi::valueIn;
using std::filesystem::path;
using tesk5::Finding;
using tesk5::Findings;

// A device on a bus that is a radio, whether it works or not.
struct BusDevice {
    path folder;
    std::string name;
};

// Whether a driver has made a network interface or a radio of the device, or of one that stands
// below it: some cards are a bus of their own.
bool isInUse(const path& device, int depth = 2) {
    if (isThere(device / "ieee80211") || isThere(device / "net")) {
        return true;
    }
    if (depth == 0) {
        return false;
    }
    const std::vector<path> entries = entriesOf(device);
    return std::any_of(entries.begin(), entries.end(), [depth](const path& entry) {
        std::error_code failure;
        return std::filesystem::symlink_status(entry, failure).type() ==
                   std::filesystem::file_type::directory &&
               isInUse(entry, depth - 1);
    });
}

// "8086:2725" of files such as "vendor" and "device", which have "0x8086".
std::string idsIn(const path& folder, const char* vendor, const char* device) {
    const auto id = [&folder](const char* file) {
        const std::string text = lineOf(folder / file);
        return text.starts_with("0x") ? text.substr(2) : text;
    };
    return id(vendor) + ":" + id(device);
}

// "PCI 0000:02:00.0 [8086:2725]"
std::string nameOf(const char* bus, const std::string& place, const std::string& ids) {
    return std::string(bus).append(" ").append(place).append(" [").append(ids).append("]");
}

void addPci(std::vector<BusDevice>& found) {
    constexpr std::string_view NETWORK_CONTROLLER_OF_OTHER_KIND = "0x0280";
    for (const path& folder : entriesOf(systemPath("sys/bus/pci/devices"))) {
        if (lineOf(folder / "class").starts_with(NETWORK_CONTROLLER_OF_OTHER_KIND)) {
            found.push_back({folder, nameOf("PCI", folder.filename().string(),
                                            idsIn(folder, "vendor", "device"))});
        }
    }
}

// Wireless adapters for USB have no class of their own: their names say what they are.
bool namesAWirelessAdapter(std::string product) {
    std::transform(product.begin(), product.end(), product.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    constexpr std::string_view WORDS[] = {"802.11", "wlan", "wi-fi", "wifi", "wireless lan"};
    return std::any_of(std::begin(WORDS), std::end(WORDS), [&product](std::string_view word) {
        return product.find(word) != std::string::npos;
    });
}

void addUsb(std::vector<BusDevice>& found) {
    // Of a card that is Bluetooth too, the interfaces of that class are the other half.
    constexpr std::string_view VENDOR_SPECIFIC = "ff";
    const path devices = systemPath("sys/bus/usb/devices");
    for (const path& folder : entriesOf(devices)) {
        const std::string interface = folder.filename().string(); // "1-4:1.0" of the device "1-4"
        const std::size_t colon = interface.find(':');
        if (colon == std::string::npos || lineOf(folder / "bInterfaceClass") != VENDOR_SPECIFIC) {
            continue;
        }
        const path device = devices / interface.substr(0, colon);
        const std::string product = lineOf(device / "product");
        // An adapter whose radio works may have further interfaces without a driver.
        if (namesAWirelessAdapter(product) && !isInUse(device)) {
            found.push_back(
                {folder, nameOf("USB", interface, idsIn(device, "idVendor", "idProduct"))
                             .append(" ")
                             .append(product)});
        }
    }
}

void addSdio(std::vector<BusDevice>& found) {
    constexpr std::string_view WIRELESS_LAN = "0x07";
    for (const path& folder : entriesOf(systemPath("sys/bus/sdio/devices"))) {
        if (lineOf(folder / "class") == WIRELESS_LAN) {
            found.push_back({folder, nameOf("SDIO", folder.filename().string(),
                                            idsIn(folder, "vendor", "device"))});
        }
    }
}

void addDevices(Findings& findings) {
    std::vector<BusDevice> devices;
    addPci(devices);
    addUsb(devices);
    addSdio(devices);
    for (const BusDevice& device : devices) {
        const std::string driver = linkedName(device.folder / "driver");
        if (driver.empty()) {
            findings.push_back({"DOCTOR_NO_DRIVER", false, {{"Device", device.name}}});
        } else if (!isInUse(device.folder)) {
            findings.push_back(
                {"DOCTOR_NO_FIRMWARE", false, {{"Device", device.name}, {"Driver", driver}}});
        }
    }
}

// The folders of the network interfaces that belong to a radio.
std::vector<path> wirelessInterfaceFolders() {
    std::vector<path> interfaces = entriesOf(systemPath("sys/class/net"));
    std::erase_if(interfaces,
                  [](const path& interface) { return !isThere(interface / "phy80211"); });
    return interfaces;
}

// By a switch of the radio: the kernel takes its interfaces down with it.
bool isBlocked(const path& interface) {
    const std::vector<path> entries = entriesOf(interface / "phy80211");
    return std::any_of(entries.begin(), entries.end(), [](const path& entry) {
        return entry.filename().string().starts_with("rfkill") &&
               (lineOf(entry / "soft") == "1" || lineOf(entry / "hard") == "1");
    });
}

void addInterfacesThatAreDown(const std::vector<path>& interfaces, Findings& findings) {
    constexpr std::uint64_t UP = 1; // IFF_UP
    for (const path& interface : interfaces) {
        const std::optional<std::uint64_t> flags = hexNumber(lineOf(interface / "flags"));
        if (flags && (*flags & UP) == 0 && !isBlocked(interface)) {
            findings.push_back(
                {INTERFACE_DOWN, false, {{"Interface", interface.filename().string()}}});
        }
    }
}

Finding capabilityMissing() {
    const std::u8string program = mrl::System::executable().u8string();
    return {"DOCTOR_CAPABILITY_MISSING",
            false,
            {{"Program", std::string(program.begin(), program.end())}}};
}

// By the effective set of this process.
bool lacksCapability() {
    constexpr int NET_ADMIN = 12; // CAP_NET_ADMIN
    const std::optional<std::uint64_t> effective =
        hexNumber(valueIn(systemPath("proc/self/status"), "CapEff:\t"));
    return effective && (*effective >> NET_ADMIN & 1) == 0;
}

// Without a country a radio may use what is allowed in the whole world; some then leave out 5 GHz.
void addRadiosWithoutCountry(Findings& findings) {
    constexpr std::string_view WHOLE_WORLD = "00";
    for (const nativewifi::RadioChannels& radio : machineRadios()) {
        if (radio.country == WHOLE_WORLD && radio.channels5Ghz != 0 && radio.usable5Ghz == 0) {
            findings.push_back({"DOCTOR_COUNTRY_UNSET", false, {{"Radio", radio.radio}}});
        }
    }
}

// What configures radios, by the names of their processes.
void addScanners(Findings& findings) {
    constexpr std::string_view SCANNERS[] = {"NetworkManager", "connmand", "iwd", "wpa_supplicant"};
    std::set<std::string> running;
    for (const path& process : entriesOf(systemPath("proc"))) {
        const std::string id = process.filename().string();
        if (id.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        const std::string name = lineOf(process / "comm");
        if (std::find(std::begin(SCANNERS), std::end(SCANNERS), name) != std::end(SCANNERS)) {
            running.insert(name);
        }
    }
    if (!running.empty()) {
        std::string names;
        for (const std::string& name : running) {
            names += (names.empty() ? "" : ", ") + name;
        }
        findings.push_back({"DOCTOR_OTHER_SCANNERS", true, {{"Programs", names}}});
    }
}

} // namespace

Findings checkMachine() {
    Findings findings;
    if (systemPath("").empty()) {
        return findings;
    }
    addDevices(findings);
    const std::vector<path> interfaces = wirelessInterfaceFolders();
    if (interfaces.empty()) {
        return findings; // what follows is about the use of a radio
    }
    addInterfacesThatAreDown(interfaces, findings);
    addRadiosWithoutCountry(findings);
    if (lacksCapability()) {
        findings.push_back(capabilityMissing());
    }
    addScanners(findings);
    return findings;
}

// The same for each device and function: the process lacks the capability.
Finding accessDenied(const tesk5::TeskString& /*device*/, const char* /*function*/,
                     DWORD /*error*/) {
    return capabilityMissing();
}

} // namespace networkadapters
