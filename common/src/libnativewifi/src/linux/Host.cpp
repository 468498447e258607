#include "Host.h"

#include "SystemFiles.h"

#include <nativewifi/LinuxFiles.h>

#include <cinttypes>
#include <cstdio>

namespace nativewifi::linux_radio {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t FLAG_UP = 1;

// The names in udev's database: "E:ID_MODEL_FROM_DATABASE=Wireless-AC 9260".
std::string databaseNames(const fs::path& file) {
    const std::string vendor = valueIn(file, "E:ID_VENDOR_FROM_DATABASE=");
    const std::string model = valueIn(file, "E:ID_MODEL_FROM_DATABASE=");
    return model.empty() ? std::string() : vendor.empty() ? model : vendor + " " + model;
}

// The names that a USB device gives itself; `function` is the folder of its wireless function.
std::string usbNames(const fs::path& function) {
    const std::string vendor = lineOf(function / "../manufacturer");
    const std::string product = lineOf(function / "../product");
    return product.empty() ? std::string() : vendor.empty() ? product : vendor + " " + product;
}

// "8086:2526"; empty for a device without numbers.
std::string deviceNumbers(const fs::path& device) {
    auto vendor = hexNumber(lineOf(device / "vendor"));
    auto product = hexNumber(lineOf(device / "device"));
    if (!vendor || !product) {
        vendor = hexNumber(lineOf(device / "../idVendor"));
        product = hexNumber(lineOf(device / "../idProduct"));
    }
    if (!vendor || !product) {
        return {};
    }
    char text[40];
    std::snprintf(text, sizeof text, "%04" PRIx64 ":%04" PRIx64, *vendor, *product);
    return text;
}

} // namespace

std::optional<MacAddress> Host::permanentAddress(const std::string& interface) const {
    const std::optional<MacAddress> address =
        hardwareAddress(lineOf(radioFolder(m_root, interface) / "macaddress"));
    return address == MacAddress{} ? std::nullopt : address;
}

std::string Host::description(const std::string& interface) const {
    std::error_code error;
    const fs::path device = fs::canonical(radioFolder(m_root, interface) / "device", error);
    std::string text;
    if (!error) {
        const std::string bus = linkedName(device / "subsystem");
        text = databaseNames(m_root / "run/udev/data" /
                             ("+" + bus + ":" + device.filename().string()));
        if (text.empty()) {
            text = usbNames(device);
        }
        if (text.empty()) {
            text = linkedName(device / "driver");
            const std::string numbers = deviceNumbers(device);
            text += text.empty() || numbers.empty() ? numbers : " " + numbers;
        }
    }
    return text.empty() ? interface : text + " (" + interface + ")";
}

bool Host::isUp(const std::string& interface) const {
    const auto flags = hexNumber(lineOf(interfaceFolder(m_root, interface) / "flags"));
    return !flags || (*flags & FLAG_UP) != 0;
}

} // namespace nativewifi::linux_radio
