#include "Host.h"

#include "SystemFiles.h"

#include <charconv>
#include <cstdio>
#include <fstream>
#include <string_view>

namespace nativewifi::linux_radio {

namespace {

namespace fs = std::filesystem;

constexpr unsigned FLAG_UP = 1;

// The last part of where a link leads; empty without one.
std::string linkedName(const fs::path& link) {
    std::error_code error;
    return fs::read_symlink(link, error).filename().string();
}

std::optional<unsigned> hexNumber(std::string_view text) {
    if (text.starts_with("0x")) {
        text.remove_prefix(2);
    }
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return error == std::errc() && end != text.data() ? std::optional(number) : std::nullopt;
}

// The names in udev's database: "E:ID_MODEL_FROM_DATABASE=Wireless-AC 9260".
std::string databaseNames(const fs::path& file) {
    constexpr std::string_view VENDOR = "E:ID_VENDOR_FROM_DATABASE=";
    constexpr std::string_view MODEL = "E:ID_MODEL_FROM_DATABASE=";
    std::string vendor;
    std::string model;
    std::ifstream database(file);
    for (std::string line; std::getline(database, line);) {
        if (line.starts_with(VENDOR)) {
            vendor = line.substr(VENDOR.size());
        } else if (line.starts_with(MODEL)) {
            model = line.substr(MODEL.size());
        }
    }
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
    char text[20];
    std::snprintf(text, sizeof text, "%04x:%04x", *vendor, *product);
    return text;
}

} // namespace

std::optional<MacAddress> Host::permanentAddress(const std::string& interface) const {
    const std::string line = lineOf(radioFolder(m_root, interface) / "macaddress");
    MacAddress address{};
    int used = 0;
    if (std::sscanf(line.c_str(), "%2hhx:%2hhx:%2hhx:%2hhx:%2hhx:%2hhx%n", &address[0], &address[1],
                    &address[2], &address[3], &address[4], &address[5], &used) != 6 ||
        static_cast<std::size_t>(used) != line.size() || address == MacAddress{}) {
        return std::nullopt;
    }
    return address;
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
