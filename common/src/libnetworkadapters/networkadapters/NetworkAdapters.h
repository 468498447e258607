// The network adapters of this PC, whatever their kind.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/String.h>

#include <functional>
#include <string>
#include <vector>

namespace networkadapters {

/// One adapter as the system's IP layer knows it.
struct NetworkAdapter {
    mrl::String name; ///< the description that the system shows for it; of Linux "eth0 (e1000e)"
    GUID guid = {};   ///< of Linux by nativewifi::guidOfAddress()
    bool mobileBroadband = false;
    bool wireless = false;    ///< by Wi-Fi
    std::string driver = {};  ///< its name; of Windows the description that it gives itself
    std::string version = {}; ///< of the driver; empty for one of the Linux kernel's own
    std::string address = {}; ///< "02:00:5e:00:53:01", of Linux that of the radio if it has one
};

/// Every adapter but loopback, tunnels and, on Linux, other virtual ones, in the system's order or,
/// on Linux, in that of their names. Empty when the system gives none. Any thread.
/// Platform: GetAdaptersAddresses, RegGetValueW; /sys/class/net
std::vector<NetworkAdapter> systemNetworkAdapters();

/// The list in force: the system's, unless a ScopedAdapters has replaced it.
std::vector<NetworkAdapter> networkAdapters();

/// Puts another list in force while it lives. One at a time. Threads: that of the run
class ScopedAdapters {
public:
    using Source = std::function<std::vector<NetworkAdapter>()>;

    explicit ScopedAdapters(Source source);
    ScopedAdapters(const ScopedAdapters&) = delete;
    ScopedAdapters& operator=(const ScopedAdapters&) = delete;
    ~ScopedAdapters();
};

} // namespace networkadapters
