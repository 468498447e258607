// Makes the bytes of nl80211's messages: as the kernel does, and, from the same pieces, as it
// should not. Linux only.
#pragma once

#include <support/ElementBytes.h>

#include <linux/netlink.h>
#include <linux/nl80211.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace test::netlink {

using namespace test::elements;

/// An attribute that says `length` of itself, whatever it has, with its padding.
inline Bytes attributeOfLength(unsigned type, std::size_t length, const Bytes& body) {
    const nlattr head{static_cast<std::uint16_t>(length), static_cast<std::uint16_t>(type)};
    Bytes bytes(sizeof head);
    std::memcpy(bytes.data(), &head, sizeof head);
    bytes.insert(bytes.end(), body.begin(), body.end());
    bytes.resize(NLA_ALIGN(bytes.size()));
    return bytes;
}

inline Bytes attribute(unsigned type, const Bytes& body) {
    return attributeOfLength(type, sizeof(nlattr) + body.size(), body);
}

inline Bytes nested(unsigned type, const Parts& parts) {
    return attribute(type | NLA_F_NESTED, join(parts));
}

inline Bytes flag(unsigned type) {
    return attribute(type, {});
}

/// A number in the byte order of this machine, as netlink has them.
template <typename Number>
Bytes number(unsigned type, Number value) {
    Bytes body(sizeof value);
    std::memcpy(body.data(), &value, sizeof value);
    return attribute(type, body);
}

inline Bytes u8(unsigned type, unsigned value) {
    return number(type, static_cast<std::uint8_t>(value));
}
inline Bytes u16(unsigned type, unsigned value) {
    return number(type, static_cast<std::uint16_t>(value));
}
inline Bytes u32(unsigned type, std::uint32_t value) {
    return number(type, value);
}
inline Bytes u64(unsigned type, std::uint64_t value) {
    return number(type, value);
}
inline Bytes s8(unsigned type, int value) {
    return number(type, static_cast<std::int8_t>(value));
}
inline Bytes s32(unsigned type, std::int32_t value) {
    return number(type, value);
}

/// A text with its terminator.
inline Bytes text(unsigned type, std::string_view value) {
    Bytes body = bytesOf(value);
    body.push_back(0);
    return attribute(type, body);
}

/// The levels of receive chains, by chain number.
inline Bytes chains(unsigned type, const std::vector<int>& levels) {
    Parts parts;
    for (unsigned chain = 0; chain < levels.size(); ++chain) {
        parts.push_back(s8(chain, levels[chain]));
    }
    return nested(type, parts);
}

/// A scan result's entry; what has no value is left out.
struct HeardBss {
    std::array<std::uint8_t, 6> bssid = {2, 0, 0, 0, 0, 1};
    std::uint32_t frequencyMhz = 2412;
    std::optional<std::int32_t> signalMbm = -6000;
    std::optional<std::uint8_t> signalPercent = {};
    std::uint16_t capability = 0x0401; // an access point, without privacy
    std::uint16_t beaconInterval = 100;
    std::uint64_t timestamp = 0x123456789;
    std::optional<std::uint64_t> lastSeenNs = {};
    std::optional<std::uint32_t> ageMs = {};
    std::optional<std::uint32_t> status = {}; ///< NL80211_BSS_STATUS_...
    std::vector<int> chains = {};
    Bytes elements = {};
};

/// What NL80211_ATTR_BSS has inside.
inline Parts bssParts(const HeardBss& heard) {
    Parts parts = {
        attribute(NL80211_BSS_BSSID, {heard.bssid.begin(), heard.bssid.end()}),
        u64(NL80211_BSS_TSF, heard.timestamp),
        attribute(NL80211_BSS_INFORMATION_ELEMENTS, heard.elements),
        u16(NL80211_BSS_BEACON_INTERVAL, heard.beaconInterval),
        u16(NL80211_BSS_CAPABILITY, heard.capability),
        u32(NL80211_BSS_FREQUENCY, heard.frequencyMhz),
    };
    if (heard.ageMs) {
        parts.push_back(u32(NL80211_BSS_SEEN_MS_AGO, *heard.ageMs));
    }
    if (heard.lastSeenNs) {
        parts.push_back(u64(NL80211_BSS_LAST_SEEN_BOOTTIME, *heard.lastSeenNs));
    }
    if (heard.signalMbm) {
        parts.push_back(s32(NL80211_BSS_SIGNAL_MBM, *heard.signalMbm));
    }
    if (heard.signalPercent) {
        parts.push_back(u8(NL80211_BSS_SIGNAL_UNSPEC, *heard.signalPercent));
    }
    if (heard.status) {
        parts.push_back(u32(NL80211_BSS_STATUS, *heard.status));
    }
    if (!heard.chains.empty()) {
        parts.push_back(netlink::chains(NL80211_BSS_CHAIN_SIGNAL, heard.chains));
    }
    return parts;
}

/// The attributes of one message of a dump of NL80211_CMD_GET_SCAN.
inline Bytes bssMessage(const HeardBss& heard, std::uint32_t interface = 3) {
    return join({u32(NL80211_ATTR_GENERATION, 7), u32(NL80211_ATTR_IFINDEX, interface),
                 nested(NL80211_ATTR_BSS, bssParts(heard))});
}

} // namespace test::netlink
