// From the messages of a scan result to the list of networks, compared with libnl's parse of the
// same bytes alone.
#include <support/Netlink.h>

#include <Messages.h>
#include <Networks.h>

#include <benchmark/benchmark.h>

#include <netlink/attr.h>

namespace {

using namespace test::netlink;
namespace linux_radio = nativewifi::linux_radio;

constexpr unsigned NETWORKS = 64;
constexpr std::uint64_t BOOT_TIME = 1'000'000'000'000;
constexpr std::uint32_t FRESH_MS = 15'000;

// The elements of an access point for 2.4 GHz of today: 24 of them, 330 bytes.
Bytes elementsOf(unsigned number) {
    return join({
        name("network number " + std::to_string(number)),
        element(1, {0x82, 0x84, 0x8B, 0x96, 0x24, 0x30, 0x48, 0x6C}),
        element(3, {6}),
        element(5, {0, 3, 0, 0}),
        element(7, Bytes(6, 0x20)),
        element(11, Bytes(5)),
        element(42, {0}),
        element(45, Bytes(26)),
        element(50, {0x0C, 0x12, 0x18, 0x60}),
        rsn({.authentications = {2, 8}, .capabilities = 0x80}),
        element(61, Bytes(22)),
        element(70, Bytes(5)),
        element(74, Bytes(14)),
        element(127, Bytes(10)),
        element(191, Bytes(12)),
        element(192, Bytes(5)),
        element(195, Bytes(4)),
        element(244, {0x20}),
        element(255, join({{35}, Bytes(28)})),
        element(255, join({{36}, Bytes(9)})),
        element(255, join({{38}, Bytes(13)})),
        element(221, join({{0x00, 0x50, 0xF2, 2}, Bytes(20)})),
        element(221, join({{0x00, 0x10, 0x18, 2}, Bytes(6)})),
        element(221, join({{0x50, 0x6F, 0x9A, 0x16}, Bytes(3)})),
    });
}

std::vector<Bytes> scanResult() {
    std::vector<Bytes> messages;
    for (unsigned i = 0; i < NETWORKS; ++i) {
        const Bytes elements = elementsOf(i);
        HeardBss heard{.bssid = {2, 0, 0, 0, 0, static_cast<std::uint8_t>(i)},
                       .signalMbm = -4000 - 50 * static_cast<int>(i),
                       .capability = 0x1431,
                       .lastSeenNs = BOOT_TIME,
                       .ageMs = 10,
                       .chains = {-60, -61},
                       .elements = elements};
        Parts parts = bssParts(heard);
        parts.push_back(u64(NL80211_BSS_BEACON_TSF, heard.timestamp));
        parts.push_back(attribute(NL80211_BSS_BEACON_IES, elements));
        parts.push_back(u32(NL80211_BSS_CHAN_WIDTH, 0));
        messages.push_back(join({u32(NL80211_ATTR_GENERATION, 7), u32(NL80211_ATTR_IFINDEX, 3),
                                 u64(NL80211_ATTR_WDEV, 1), nested(NL80211_ATTR_BSS, parts)}));
    }
    return messages;
}

void parseAndList(benchmark::State& state) {
    const std::vector<Bytes> messages = scanResult();
    std::size_t size = 0;
    for ([[maybe_unused]] auto iteration : state) {
        std::vector<linux_radio::Bss> heard;
        for (const Bytes& message : messages) {
            if (std::optional<linux_radio::Bss> bss = linux_radio::readBss(message)) {
                if (linux_radio::isFresh(*bss, BOOT_TIME, FRESH_MS)) {
                    heard.push_back(std::move(*bss));
                }
            }
        }
        size = linux_radio::availableNetworkList(heard).size();
        benchmark::DoNotOptimize(size);
    }
    if (size != 8 + NETWORKS * sizeof(WLAN_AVAILABLE_NETWORK)) {
        state.SkipWithError("not every network was listed");
    }
}
BENCHMARK(parseAndList)->Name("scan_result/figure")->Unit(benchmark::kMicrosecond);

// What any program does with these messages: an index of the attributes, and another of the
// entry's.
void parse(benchmark::State& state) {
    std::vector<Bytes> messages = scanResult();
    std::size_t entries = 0;
    for ([[maybe_unused]] auto iteration : state) {
        entries = 0;
        for (Bytes& message : messages) {
            nlattr* attributes[NL80211_ATTR_MAX + 1];
            nlattr* parts[NL80211_BSS_MAX + 1];
            nla_policy policy[NL80211_BSS_MAX + 1] = {};
            policy[NL80211_BSS_FREQUENCY].type = NLA_U32;
            policy[NL80211_BSS_SIGNAL_MBM].type = NLA_U32;
            if (nla_parse(attributes, NL80211_ATTR_MAX, reinterpret_cast<nlattr*>(message.data()),
                          static_cast<int>(message.size()), nullptr) == 0 &&
                nla_parse_nested(parts, NL80211_BSS_MAX, attributes[NL80211_ATTR_BSS], policy) ==
                    0 &&
                parts[NL80211_BSS_BSSID] != nullptr) {
                ++entries;
            }
        }
        benchmark::DoNotOptimize(entries);
    }
    if (entries != NETWORKS) {
        state.SkipWithError("not every entry was parsed");
    }
}
BENCHMARK(parse)->Name("scan_result/floor")->Unit(benchmark::kMicrosecond);

} // namespace
