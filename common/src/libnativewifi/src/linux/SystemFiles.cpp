#include "SystemFiles.h"

namespace nativewifi::linux_radio {

std::filesystem::path interfaceFolder(const std::filesystem::path& root,
                                      const std::string& interface) {
    // The kernel allows no name with a slash, nor "." and "..".
    const bool plain =
        !interface.empty() && interface.find('/') == std::string::npos && interface.front() != '.';
    return root / "sys/class/net" / (plain ? interface : "-");
}

std::filesystem::path radioFolder(const std::filesystem::path& root, const std::string& interface) {
    return interfaceFolder(root, interface) / "phy80211";
}

} // namespace nativewifi::linux_radio
