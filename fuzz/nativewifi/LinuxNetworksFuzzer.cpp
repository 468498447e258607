// Information elements of any number of stations: the lists that are made of them are whole, and
// hold together what was heard.
#include <support/Require.h>

#include <Networks.h>

#include <nativewifi/ChannelWidth.h>
#include <nativewifi/DeviceTraces.h>
#include <nativewifi/Ssid.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <tuple>

namespace {

using namespace nativewifi;
using namespace nativewifi::linux_radio;
using fuzz::require;

constexpr std::uint64_t BOOT_TIME = 1'000'000'000'000;
constexpr std::uint64_t NOW = 133'000'000'000'000'000;
constexpr std::uint32_t FRESH_MS = 15'000;

// A station: 8 bytes, of which the last two are the length of its elements, and the elements.
std::vector<Bss> readStations(ByteSpan bytes) {
    constexpr std::size_t HEAD = 8;
    constexpr std::uint32_t frequencies[] = {2412, 2484, 5180, 5955, 58320, 0xFFFFFFFF};
    std::vector<Bss> heard;
    while (bytes.size() >= HEAD) {
        Bss& bss = heard.emplace_back();
        bss.bssid[5] = bytes[0];
        bss.frequencyMhz = frequencies[bytes[1] % std::size(frequencies)];
        if (bytes[2] != 0) {
            bss.signalMbm = -50 * bytes[2] - 100;
        } else {
            bss.signalPercent = static_cast<std::uint8_t>(bytes[3] % 101);
        }
        bss.status = static_cast<BssStatus>(bytes[3] % 4);
        bss.capability = bytes[4];
        if (bytes[5] != 0) {
            bss.lastSeenNs = BOOT_TIME * bytes[5] / 250;
        }
        const std::size_t length =
            std::min(bytes[6] + std::size_t{256} * bytes[7], bytes.size() - HEAD);
        const ByteSpan elements = bytes.subspan(HEAD, length);
        bss.elements.assign(elements.begin(), elements.end());
        bytes = bytes.subspan(HEAD + length);
    }
    return heard;
}

template <typename Item>
Item itemAt(const Block& block, std::size_t offset) {
    require(offset + sizeof(Item) <= block.size(), "an item lies in its block");
    Item item;
    std::memcpy(&item, block.data() + offset, sizeof item);
    return item;
}

void checkNetworks(const std::vector<Bss>& heard) {
    const Block block = availableNetworkList(heard);
    const auto count = itemAt<DWORD>(block, 0);
    constexpr std::size_t FIRST = offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network);
    require(block.size() == FIRST + count * sizeof(WLAN_AVAILABLE_NETWORK), "a list is whole");
    std::set<std::tuple<std::string, int, int, int>> networks;
    std::size_t stations = 0;
    std::tuple<DWORD, ULONG> previous(WLAN_AVAILABLE_NETWORK_CONNECTED, 100);
    for (std::size_t i = 0; i < count; ++i) {
        const auto network =
            itemAt<WLAN_AVAILABLE_NETWORK>(block, FIRST + i * sizeof(WLAN_AVAILABLE_NETWORK));
        require(network.dot11Ssid.uSSIDLength <= DOT11_SSID_MAX_LENGTH, "a name has 32 bytes");
        require(network.uNumberOfPhyTypes > 0 &&
                    network.uNumberOfPhyTypes <= WLAN_MAX_PHY_TYPE_NUMBER,
                "a network has one PHY type to eight");
        require((network.bNetworkConnectable != FALSE) == (network.wlanNotConnectableReason == 0),
                "there is a reason or none is needed");
        const std::tuple place(network.dwFlags, network.wlanSignalQuality);
        require(place <= previous, "the connected one is first, then the strongest");
        previous = place;
        require(networks
                    .emplace(ssidBytes(network.dot11Ssid), network.dot11BssType,
                             network.dot11DefaultAuthAlgorithm, network.dot11DefaultCipherAlgorithm)
                    .second,
                "a network is listed once");
        require(network.uNumberOfBssids > 0, "a network has a station");
        stations += network.uNumberOfBssids;
    }
    require(stations <= heard.size(), "a station is in one network");
}

// Returns how many stations are listed.
std::size_t checkStations(const std::vector<Bss>& heard, const DOT11_SSID* ssid) {
    const Block block = bssList(heard, ssid, dot11_BSS_type_infrastructure, true, BOOT_TIME, NOW);
    require(itemAt<DWORD>(block, 0) == block.size(), "a list says its size");
    const auto count = itemAt<DWORD>(block, sizeof(DWORD));
    require(ssid != nullptr || count == heard.size(), "each station is listed");
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t offset =
            offsetof(WLAN_BSS_LIST, wlanBssEntries) + i * sizeof(WLAN_BSS_ENTRY);
        const auto entry = itemAt<WLAN_BSS_ENTRY>(block, offset);
        require(entry.lRssi < 0 && entry.uLinkQuality <= 100, "a level is one");
        require(entry.ullHostTimestamp <= NOW, "it was heard before now");
        require(entry.wlanRateSet.uRateSetLength <= sizeof entry.wlanRateSet.usRateSet,
                "the rates have room");
        require(offset + entry.ulIeOffset + entry.ulIeSize <= block.size(),
                "the elements lie in the block");
        if (ssid == nullptr) {
            require(
                heard[i].elements.size() == entry.ulIeSize &&
                    (entry.ulIeSize == 0 ||
                     std::memcmp(heard[i].elements.data(), block.data() + offset + entry.ulIeOffset,
                                 entry.ulIeSize) == 0),
                "the elements are those that were heard");
        } else {
            require(ssidBytes(entry.dot11Ssid) == ssidBytes(*ssid), "only the name asked for");
        }
    }
    return count;
}

// What is read of the elements for people.
void checkAnnounced(const Bss& bss) {
    const Elements elements = readElements(bss.elements);
    const std::uint32_t width = widthOf(elements);
    require(width == 0 || (width >= 20 && width <= 320 && width % 20 == 0), "a width is one");
    const std::vector<DOT11_AUTH_ALGORITHM> offered = authenticationsOf(elements, bss.capability);
    require(!offered.empty() && std::set(offered.begin(), offered.end()).size() == offered.size(),
            "each way to join is listed once");
    require(elements.rsn.data() == nullptr ||
                std::ranges::find(offered, securityOf(bss).authentication) != offered.end(),
            "the strongest way to join is offered");
    const DeviceTraces traces = deviceTracesOf(elements);
    require(traces.nameBits <= 8, "an address has 8 lowest bits");
    require(traces.colocated.size() <= 255, "each radio of a device has bytes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<Bss> heard = readStations(ByteSpan(data, size));
    std::erase_if(heard, [](const Bss& bss) { return !isFresh(bss, BOOT_TIME, FRESH_MS); });
    checkNetworks(heard);
    std::ranges::for_each(heard, &checkAnnounced);
    checkStations(heard, nullptr);
    if (!heard.empty()) {
        const Bytes name = ssidOf(heard.front());
        const DOT11_SSID ssid = toSsid({reinterpret_cast<const char*>(name.data()), name.size()});
        const bool listed = typeOf(heard.front()) == dot11_BSS_type_infrastructure &&
                            securityOf(heard.front()).enabled;
        require(checkStations(heard, &ssid) > 0 || !listed, "a station is found by its name");
    }
    return 0;
}
