// What the system's files say of a network interface and of its radio: sysfs, and the names of
// devices in udev's database.
#pragma once

#include "Records.h"

#include <filesystem>
#include <optional>
#include <string>

namespace nativewifi::linux_radio {

/// Reads afresh with each question: interfaces and their radios come and go. Any thread.
class Host {
public:
    /// \param root the folder that has sys, dev and run
    explicit Host(std::filesystem::path root) : m_root(std::move(root)) {}

    /// The hardware's own address, whatever address the interface uses. Nothing when the radio has
    /// none.
    std::optional<MacAddress> permanentAddress(const std::string& interface) const;

    /// The names of vendor and device where the system knows them, else the driver and the
    /// device's numbers; then the interface's name in brackets. UTF-8.
    std::string description(const std::string& interface) const;

    /// Whether the interface is set up; true when the system does not say.
    bool isUp(const std::string& interface) const;

private:
    std::filesystem::path m_root;
};

} // namespace nativewifi::linux_radio
