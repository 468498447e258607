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

// The stations of one network, ordered by BSSID.
struct Network {
    std::span<const Heard> stations;
    bool connected = false;
    ULONG quality = 0; // of the strongest

    explicit Network(std::span<const Heard> all) : stations(all) {
        for (const Heard& station : stations) {
            connected |= isConnected(*station.bss);
            quality = std::max(quality, linkQuality(levelOf(*station.bss).value_or(SILENT)));
        }
    }
    bool isListedBefore(const Network& other) const {
        return std::tuple(connected, quality) > std::tuple(other.connected, other.quality);
    }
};

void setPhyTypes(WLAN_AVAILABLE_NETWORK& entry, std::span<const Heard> stations) {
    ULONG heard = 0; // a bit for each
    for (const Heard& station : stations) {
        heard |= 1U << static_cast<unsigned>(station.phyType);
    }
    for (unsigned type = 0; type <= dot11_phy_type_eht; ++type) {
        if ((heard >> type & 1U) == 0) {
            continue;
        }
        if (entry.uNumberOfPhyTypes == WLAN_MAX_PHY_TYPE_NUMBER) {
            entry.bMorePhyTypes = TRUE;
            break;
        }
        entry.dot11PhyTypes[entry.uNumberOfPhyTypes++] = static_cast<DOT11_PHY_TYPE>(type);
    }
}

WLAN_AVAILABLE_NETWORK entryOf(const Network& network) {
    const Heard& one = network.stations.front();
    WLAN_AVAILABLE_NETWORK entry{};
    entry.dot11Ssid = toSsid(one.name);
    entry.dot11BssType = one.type;
    entry.uNumberOfBssids = 1;
    for (std::size_t i = 1; i < network.stations.size(); ++i) {
        entry.uNumberOfBssids +=
            network.stations[i].bss->bssid == network.stations[i - 1].bss->bssid ? 0 : 1;
    }
    const bool known = one.security.authentication != DOT11_AUTH_ALGO_IHV_START &&
                       one.security.cipher != DOT11_CIPHER_ALGO_IHV_START;
    entry.bNetworkConnectable = known ? TRUE : FALSE;
    entry.wlanNotConnectableReason = known ? 0 : REASON_NOT_COMPATIBLE;
    setPhyTypes(entry, network.stations);
    entry.wlanSignalQuality = network.quality;
    entry.bSecurityEnabled = one.security.enabled ? TRUE : FALSE;
    entry.dot11DefaultAuthAlgorithm = one.security.authentication;
    entry.dot11DefaultCipherAlgorithm = one.security.cipher;
    entry.dwFlags = network.connected ? WLAN_AVAILABLE_NETWORK_CONNECTED : 0;
    return entry;
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
    std::vector<Network> networks;
    for (auto first = stations.begin(); first != stations.end();) {
        const auto last = std::find_if(first, stations.end(), [first](const Heard& station) {
            return station.network() != first->network();
        });
        networks.emplace_back(std::span(first, last));
        first = last;
    }
    std::ranges::stable_sort(networks, &Network::isListedBefore);
    std::vector<WLAN_AVAILABLE_NETWORK> entries(networks.size());
    std::ranges::transform(networks, entries.begin(), &entryOf);
    return listBlock(offsetof(WLAN_AVAILABLE_NETWORK_LIST, dwNumberOfItems),
                     offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network), entries);
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
