#include <networks/Listing.h>

#include <networks/Devices.h>
#include <networks/SecurityWords.h>
#include <readings/DriverNumbers.h>
#include <readings/Query.h>
#include <readings/ScanRequest.h>

#include <nativewifi/ChannelWidth.h>
#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <algorithm>
#include <atomic>
#include <set>
#include <span>
#include <tuple>

namespace networks {

namespace {

using mrl::Clock;
using nativewifi::api;

constexpr std::chrono::milliseconds STOP_PAUSE{100};
constexpr ULONG MOST_PERCENT = 100;

// The end of a scan, which the service announces on a thread of its own.
class ScanEnd {
public:
    /// Failure: without a registration the wait lasts until the deadline
    ScanEnd(HANDLE client, const GUID& guid) : m_client(client), m_guid(guid) {
        DWORD before = 0;
        api().WlanRegisterNotification(client, WLAN_NOTIFICATION_SOURCE_ACM, TRUE, &onNotification,
                                       this, nullptr, &before);
    }
    ScanEnd(const ScanEnd&) = delete;
    ScanEnd& operator=(const ScanEnd&) = delete;
    // Waits for a callback that runs.
    ~ScanEnd() {
        DWORD before = 0;
        api().WlanRegisterNotification(m_client, WLAN_NOTIFICATION_SOURCE_NONE, TRUE, nullptr,
                                       nullptr, nullptr, &before);
    }

    /// \return whether the scan ended well, or its end was not announced until `deadline`; false
    /// also when `stop` ended the wait
    bool wait(Clock::Duration deadline, const std::function<bool()>& stop) {
        Clock& clock = Clock::current();
        while (!stop()) {
            if (m_code != 0 || clock.now() >= deadline) {
                return m_code != wlan_notification_acm_scan_fail;
            }
            clock.sleep(STOP_PAUSE);
        }
        return false;
    }

private:
    static void CALLBACK onNotification(WLAN_NOTIFICATION_DATA* notification, void* context) {
        const DWORD code = notification->NotificationCode;
        ScanEnd& end = *static_cast<ScanEnd*>(context);
        if (notification->NotificationSource == WLAN_NOTIFICATION_SOURCE_ACM &&
            nativewifi::sameGuid(notification->InterfaceGuid, end.m_guid) &&
            (code == wlan_notification_acm_scan_complete ||
             code == wlan_notification_acm_scan_fail)) {
            end.m_code = code;
        }
    }

    HANDLE m_client;
    GUID m_guid;
    std::atomic<DWORD> m_code = 0;
};

// A moment of the wall clock as drivers stamp it: in 100 ns since 1601.
ULONGLONG hostTime(Clock::UtcTime time) {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    constexpr Ticks UNTIL_1970 = std::chrono::seconds(11'644'473'600);
    const Ticks since1970 = std::chrono::duration_cast<Ticks>(time.time_since_epoch());
    return static_cast<ULONGLONG>((UNTIL_1970 + since1970).count());
}

Clock::Duration durationOf(ULONGLONG ticks) {
    return std::chrono::nanoseconds(static_cast<std::int64_t>(ticks) * 100);
}

// The moment from which ages count: now, where the driver's stamps follow the wall clock, else that
// of the newest entry.
ULONGLONG ageReference(std::span<const WLAN_BSS_ENTRY> entries) {
    constexpr ULONGLONG LONGEST_AGE = 600ULL * 10'000'000; // no driver keeps entries so long
    ULONGLONG newest = 0;
    for (const WLAN_BSS_ENTRY& entry : entries) {
        newest = std::max(newest, entry.ullHostTimestamp);
    }
    const ULONGLONG now = hostTime(Clock::current().utcNow());
    return now >= newest && now - newest <= LONGEST_AGE ? now : newest;
}

nativewifi::ByteSpan elementsOf(const WLAN_BSS_ENTRY& entry, const WLAN_BSS_LIST& list) {
    const auto* const begin = reinterpret_cast<const std::uint8_t*>(&entry);
    const auto* const end = reinterpret_cast<const std::uint8_t*>(&list) + list.dwTotalSize;
    const auto room = static_cast<std::size_t>(std::max<std::ptrdiff_t>(end - begin, 0));
    if (entry.ulIeOffset > room || entry.ulIeSize > room - entry.ulIeOffset) {
        return {};
    }
    return {begin + entry.ulIeOffset, entry.ulIeSize};
}

bool isZeros(std::string_view name) {
    return std::ranges::all_of(name, [](char byte) { return byte == 0; });
}

Network networkOf(const WLAN_BSS_ENTRY& entry, nativewifi::ByteSpan bytes, ULONGLONG reference) {
    const nativewifi::Elements elements = nativewifi::readElements(bytes);
    Network network;
    network.name = std::string(nativewifi::ssidBytes(entry.dot11Ssid));
    if (isZeros(network.name)) {
        network.name.clear(); // hidden networks send zeros, or nothing
    }
    network.bssid = readings::bssidOf(entry.dot11Bssid);
    if (readings::isLevelInDbm(entry.lRssi)) {
        network.dbm = entry.lRssi;
    }
    network.percent = std::min(entry.uLinkQuality, MOST_PERCENT);
    if (entry.ullHostTimestamp != 0 && entry.ullHostTimestamp <= reference) {
        network.age = durationOf(reference - entry.ullHostTimestamp);
    }
    network.mhz = readings::mhzOf(entry.ulChCenterFrequency);
    network.width = nativewifi::widthOf(elements);
    network.security =
        securityWords(nativewifi::authenticationsOf(elements, entry.usCapabilityInformation));
    network.traces = nativewifi::deviceTracesOf(elements);
    return network;
}

// The strongest first; those without a level last.
bool goesBefore(const Network& a, const Network& b) {
    const auto place = [](const Network& network) {
        return std::tuple(!network.dbm, -network.dbm.value_or(0), network.bssid, network.name);
    };
    return place(a) < place(b);
}

// Hidden networks have two entries: their beacons', and the named one of an answer to a probe.
void dropNamelessTwins(std::vector<Network>& networks) {
    std::set<readings::Bssid> named;
    for (const Network& network : networks) {
        if (!network.name.empty()) {
            named.insert(network.bssid);
        }
    }
    std::erase_if(networks, [&named](const Network& network) {
        return network.name.empty() && named.contains(network.bssid);
    });
}

void readList(Listing& listing, HANDLE client, const GUID& guid, const readings::Target& target) {
    nativewifi::WlanMemory<WLAN_BSS_LIST> list;
    listing.error = api().WlanGetNetworkBssList(client, &guid, nullptr, dot11_BSS_type_any, FALSE,
                                                nullptr, out(list));
    if (listing.error != ERROR_SUCCESS || !list) {
        listing.function = "WlanGetNetworkBssList";
        return;
    }
    const std::span<const WLAN_BSS_ENTRY> entries(list->wlanBssEntries, list->dwNumberOfItems);
    const ULONGLONG reference = ageReference(entries);
    std::vector<Network>& networks = listing.networks;
    for (const WLAN_BSS_ENTRY& entry : entries) {
        networks.push_back(networkOf(entry, elementsOf(entry, *list), reference));
    }
    dropNamelessTwins(networks);
    listing.others = std::erase_if(networks, [&target](const Network& network) {
        return !target.matches(network.name, network.bssid, network.mhz);
    });
    std::ranges::sort(networks, &goesBefore);
    numberDevices(networks);
}

} // namespace

Listing listNetworks(const GUID& interfaceGuid, const readings::Target& target,
                     const std::function<bool()>& stop) {
    Listing listing;
    nativewifi::ClientHandle client;
    listing.error = readings::openClient(client);
    if (listing.error != ERROR_SUCCESS) {
        listing.function = "WlanOpenHandle";
        return listing;
    }
    ScanEnd end(client.get(), interfaceGuid);
    const Clock::Duration deadline = Clock::current().now() + readings::longestScan();
    listing.scanError = readings::requestScan(client.get(), interfaceGuid, 0);
    // Another program's scan does as well.
    if (listing.scanError == ERROR_SUCCESS || listing.scanError == ERROR_BUSY) {
        listing.scanError = ERROR_SUCCESS;
        listing.scanFailed = !end.wait(deadline, stop);
    }
    listing.interrupted = stop();
    if (!listing.interrupted) {
        readList(listing, client.get(), interfaceGuid, target);
    }
    return listing;
}

} // namespace networks
