#include "Networks.h"

#include <nativewifi/Ssid.h>

#include <algorithm>
#include <tuple>

namespace nativewifi::linux_radio {

namespace {

constexpr std::uint16_t CAPABILITY_ESS = 0x0001;
constexpr std::uint16_t CAPABILITY_IBSS = 0x0002;
// "The network is not compatible": it wants what no one knows here.
constexpr WLAN_REASON_CODE REASON_NOT_COMPATIBLE = 0x00020001;
constexpr LONG SILENT = -100;
constexpr std::uint64_t NS_PER_MS = 1'000'000;
constexpr std::uint64_t NS_PER_FILE_TIME = 100;
constexpr ULONG KHZ_PER_MHZ = 1000;

std::string_view nameIn(const Elements& elements) {
    const ByteSpan name = elements.ssid;
    const bool hidden = std::ranges::all_of(name, [](std::uint8_t byte) { return byte == 0; });
    if (hidden || name.size() > DOT11_SSID_MAX_LENGTH) {
        return {};
    }
    return {reinterpret_cast<const char*>(name.data()), name.size()};
}

// How long ago the kernel heard of it; a driver that does not say has just heard it.
std::uint64_t ageNs(const Bss& bss, std::uint64_t bootTimeNs) {
    if (bss.lastSeenNs) {
        return bootTimeNs - std::min(*bss.lastSeenNs, bootTimeNs);
    }
    return bss.ageMs.value_or(0) * NS_PER_MS;
}

bool isConnected(const Bss& bss) {
    return bss.status == BssStatus::ASSOCIATED || bss.status == BssStatus::IBSS_JOINED;
}

// A BSS with what the lists need of its elements. The name lies in the record.
struct Heard {
    const Bss* bss;
    std::string_view name;
    DOT11_BSS_TYPE type;
    Security security;
    DOT11_PHY_TYPE phyType;

    auto network() const {
        return std::tuple(name, type, security.authentication, security.cipher);
    }
};

Heard heardOf(const Bss& bss) {
    const Elements elements = readElements(bss.elements);
    return {.bss = &bss,
            .name = nameIn(elements),
            .type = typeOf(bss),
            .security = securityOf(elements, bss.capability),
            .phyType = phyTypeOf(elements, bss.frequencyMhz)};
}

// `first` to `last` are the stations of one network, ordered by BSSID.
template <typename Iterator>
WLAN_AVAILABLE_NETWORK networkOf(Iterator first, Iterator last) {
    WLAN_AVAILABLE_NETWORK network{};
    network.dot11Ssid = toSsid(first->name);
    network.dot11BssType = first->type;
    network.bSecurityEnabled = first->security.enabled ? TRUE : FALSE;
    network.dot11DefaultAuthAlgorithm = first->security.authentication;
    network.dot11DefaultCipherAlgorithm = first->security.cipher;
    const bool known = first->security.authentication != DOT11_AUTH_ALGO_IHV_START &&
                       first->security.cipher != DOT11_CIPHER_ALGO_IHV_START;
    network.bNetworkConnectable = known ? TRUE : FALSE;
    network.wlanNotConnectableReason = known ? 0 : REASON_NOT_COMPATIBLE;
    ULONG phyTypes = 0; // a bit for each
    for (auto station = first; station != last; ++station) {
        if (station == first || station->bss->bssid != std::prev(station)->bss->bssid) {
            ++network.uNumberOfBssids;
        }
        network.wlanSignalQuality = std::max(network.wlanSignalQuality,
                                             linkQuality(levelOf(*station->bss).value_or(SILENT)));
        phyTypes |= 1U << static_cast<unsigned>(station->phyType);
        if (isConnected(*station->bss)) {
            network.dwFlags |= WLAN_AVAILABLE_NETWORK_CONNECTED;
        }
    }
    for (unsigned type = 0; type <= dot11_phy_type_eht; ++type) {
        if ((phyTypes >> type & 1U) == 0) {
            continue;
        }
        if (network.uNumberOfPhyTypes == WLAN_MAX_PHY_TYPE_NUMBER) {
            network.bMorePhyTypes = TRUE;
            break;
        }
        network.dot11PhyTypes[network.uNumberOfPhyTypes++] = static_cast<DOT11_PHY_TYPE>(type);
    }
    return network;
}

// The connected one first, then by falling quality.
bool isListedBefore(const WLAN_AVAILABLE_NETWORK& a, const WLAN_AVAILABLE_NETWORK& b) {
    return std::tuple(a.dwFlags, a.wlanSignalQuality) > std::tuple(b.dwFlags, b.wlanSignalQuality);
}

} // namespace

Bytes ssidOf(const Bss& bss) {
    const std::string_view name = nameIn(readElements(bss.elements));
    return {name.begin(), name.end()};
}

Security securityOf(const Bss& bss) {
    return securityOf(readElements(bss.elements), bss.capability);
}

DOT11_PHY_TYPE phyTypeOf(const Bss& bss) {
    return phyTypeOf(readElements(bss.elements), bss.frequencyMhz);
}

// An access point in the 60 GHz band sets both bits.
DOT11_BSS_TYPE typeOf(const Bss& bss) {
    return (bss.capability & (CAPABILITY_ESS | CAPABILITY_IBSS)) == CAPABILITY_IBSS
               ? dot11_BSS_type_independent
               : dot11_BSS_type_infrastructure;
}

std::optional<LONG> levelOf(const Bss& bss) {
    if (bss.signalMbm) {
        return (*bss.signalMbm - 50) / 100; // rounded; levels are negative
    }
    if (bss.signalPercent) {
        return levelOfQuality(*bss.signalPercent);
    }
    return std::nullopt;
}

bool isFresh(const Bss& bss, std::uint64_t bootTimeNs, std::uint32_t freshMs) {
    return isConnected(bss) || ageNs(bss, bootTimeNs) <= freshMs * NS_PER_MS;
}

Block availableNetworkList(const std::vector<Bss>& heard) {
    std::vector<Heard> stations;
    stations.reserve(heard.size());
    for (const Bss& bss : heard) {
        stations.push_back(heardOf(bss));
    }
    std::ranges::sort(stations, [](const Heard& a, const Heard& b) {
        return std::tuple(a.network(), a.bss->bssid) < std::tuple(b.network(), b.bss->bssid);
    });
    std::vector<WLAN_AVAILABLE_NETWORK> networks;
    for (auto first = stations.begin(); first != stations.end();) {
        const auto last = std::find_if(first, stations.end(), [first](const Heard& station) {
            return station.network() != first->network();
        });
        networks.push_back(networkOf(first, last));
        first = last;
    }
    std::ranges::stable_sort(networks, isListedBefore);
    return listBlock(offsetof(WLAN_AVAILABLE_NETWORK_LIST, dwNumberOfItems),
                     offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network), networks);
}

Block bssList(const std::vector<Bss>& heard, const DOT11_SSID* ssid, DOT11_BSS_TYPE type,
              bool secured, std::uint64_t bootTimeNs, std::uint64_t nowFileTime) {
    std::vector<BssWithElements> stations;
    stations.reserve(heard.size());
    for (const Bss& bss : heard) {
        const Elements elements = readElements(bss.elements);
        const std::string_view name = nameIn(elements);
        if (ssid != nullptr && (name != ssidBytes(*ssid) || typeOf(bss) != type ||
                                securityOf(elements, bss.capability).enabled != secured)) {
            continue;
        }
        WLAN_BSS_ENTRY entry{};
        entry.dot11Ssid = toSsid(name);
        std::ranges::copy(bss.bssid, entry.dot11Bssid);
        entry.dot11BssType = typeOf(bss);
        entry.dot11BssPhyType = phyTypeOf(elements, bss.frequencyMhz);
        entry.lRssi = levelOf(bss).value_or(SILENT);
        entry.uLinkQuality = linkQuality(entry.lRssi);
        entry.bInRegDomain = 1;
        entry.usBeaconPeriod = bss.beaconInterval;
        entry.ullTimestamp = bss.timestamp;
        entry.ullHostTimestamp =
            nowFileTime - std::min(ageNs(bss, bootTimeNs) / NS_PER_FILE_TIME, nowFileTime);
        entry.usCapabilityInformation = bss.capability;
        entry.ulChCenterFrequency = bss.frequencyMhz * KHZ_PER_MHZ;
        entry.wlanRateSet = ratesOf(elements);
        stations.push_back({entry, bss.elements});
    }
    return bssListBlock(stations);
}

} // namespace nativewifi::linux_radio
