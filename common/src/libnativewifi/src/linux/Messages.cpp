#include "Messages.h"

#include <nativewifi/Elements.h>
#include <nativewifi/LinuxRadio.h>

#include <linux/netlink.h>
#include <linux/nl80211.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace nativewifi::linux_radio {

namespace {

constexpr std::size_t MAX_SSID = 32;

// Calls `use` with the type and the body of each attribute; a length that does not fit ends the
// walk.
template <typename Use>
void forEach(Attributes attributes, Use use) {
    nlattr head;
    while (attributes.size() >= sizeof head) {
        std::memcpy(&head, attributes.data(), sizeof head);
        if (head.nla_len < sizeof head || head.nla_len > attributes.size()) {
            return;
        }
        use(head.nla_type & NLA_TYPE_MASK,
            attributes.subspan(sizeof head, head.nla_len - sizeof head));
        const std::size_t padded = NLA_ALIGN(std::size_t{head.nla_len});
        attributes = attributes.subspan(std::min(padded, attributes.size()));
    }
}

template <typename Number>
std::optional<Number> number(Attributes body) {
    Number value;
    if (body.size() < sizeof value) {
        return std::nullopt;
    }
    std::memcpy(&value, body.data(), sizeof value);
    return value;
}

// Sets `target` unless the body is too short.
template <typename Number, typename Target>
void set(Target& target, Attributes body) {
    if (const std::optional<Number> value = number<Number>(body)) {
        target = *value;
    }
}

void set(MacAddress& target, Attributes body) {
    if (body.size() >= target.size()) {
        std::copy_n(body.begin(), target.size(), target.begin());
    }
}

void setAddress(std::optional<MacAddress>& target, Attributes body) {
    if (body.size() >= std::tuple_size_v<MacAddress>) {
        set(target.emplace(), body);
    }
}

void setName(std::string& target, Attributes body) {
    target.assign(body.begin(), std::find(body.begin(), body.end(), 0));
}

void setSsid(Bytes& target, Attributes body) {
    if (body.size() <= MAX_SSID) {
        target.assign(body.begin(), body.end());
    }
}

// Drivers without a measurement leave 0 or the least number.
std::optional<std::int32_t> level(Attributes body) {
    const std::optional<std::int8_t> value = number<std::int8_t>(body);
    return value && *value < 0 && *value > INT8_MIN ? std::optional<std::int32_t>(*value)
                                                    : std::nullopt;
}

std::optional<std::int32_t> signalMbm(Attributes body) {
    const std::optional<std::int32_t> value = number<std::int32_t>(body);
    return value && *value <= -100 && *value > 100 * INT8_MIN ? value : std::nullopt;
}

std::vector<std::optional<std::int32_t>> readChains(Attributes chains) {
    std::vector<std::optional<std::int32_t>> levels;
    forEach(chains, [&levels](unsigned chain, Attributes body) {
        const std::optional<std::int8_t> reported = number<std::int8_t>(body);
        if (reported && chain < MAX_CHAINS) {
            levels.resize(std::max<std::size_t>(levels.size(), chain + 1));
            levels[chain] = chainLevel(*reported);
        }
    });
    return levels;
}

// The 32-bit number: the 16-bit one ends at 6.5 Gbit/s.
std::optional<std::uint32_t> readRate(Attributes rate) {
    std::optional<std::uint32_t> narrow;
    std::optional<std::uint32_t> wide;
    forEach(rate, [&](unsigned type, Attributes body) {
        if (type == NL80211_RATE_INFO_BITRATE) {
            set<std::uint16_t>(narrow, body);
        } else if (type == NL80211_RATE_INFO_BITRATE32) {
            set<std::uint32_t>(wide, body);
        }
    });
    const std::optional<std::uint32_t> value = wide ? wide : narrow;
    return value == 0U ? std::nullopt : value;
}

Channel readChannel(Attributes frequency) {
    Channel channel;
    forEach(frequency, [&channel](unsigned type, Attributes body) {
        switch (type) {
        case NL80211_FREQUENCY_ATTR_FREQ:
            set<std::uint32_t>(channel.frequencyMhz, body);
            break;
        case NL80211_FREQUENCY_ATTR_DISABLED:
            channel.disabled = true;
            break;
        case NL80211_FREQUENCY_ATTR_NO_IR:
            channel.noInitiatedRadiation = true;
            break;
        default:
            break;
        }
    });
    return channel;
}

void readBand(std::vector<Channel>& channels, Attributes band) {
    forEach(band, [&channels](unsigned type, Attributes frequencies) {
        if (type != NL80211_BAND_ATTR_FREQS) {
            return;
        }
        forEach(frequencies, [&channels](unsigned /*number*/, Attributes frequency) {
            const Channel channel = readChannel(frequency);
            if (channel.frequencyMhz != 0) {
                channels.push_back(channel);
            }
        });
    });
}

std::optional<BssStatus> readStatus(Attributes body) {
    switch (number<std::uint32_t>(body).value_or(UINT32_MAX)) {
    case NL80211_BSS_STATUS_AUTHENTICATED:
        return BssStatus::AUTHENTICATED;
    case NL80211_BSS_STATUS_ASSOCIATED:
        return BssStatus::ASSOCIATED;
    case NL80211_BSS_STATUS_IBSS_JOINED:
        return BssStatus::IBSS_JOINED;
    default:
        return std::nullopt;
    }
}

// What may be missing, or comes from either of two attributes, until all are read.
struct BssParts {
    Bss bss;
    std::optional<MacAddress> bssid;
    std::optional<std::uint64_t> beaconTimestamp;
    Attributes elements;
    Attributes beaconElements;

    void read(unsigned type, Attributes body);
};

void BssParts::read(unsigned type, Attributes body) {
    switch (type) {
    case NL80211_BSS_BSSID:
        setAddress(bssid, body);
        break;
    case NL80211_BSS_FREQUENCY:
        set<std::uint32_t>(bss.frequencyMhz, body);
        break;
    case NL80211_BSS_TSF:
        set<std::uint64_t>(bss.timestamp, body);
        break;
    case NL80211_BSS_BEACON_TSF:
        set<std::uint64_t>(beaconTimestamp, body);
        break;
    case NL80211_BSS_BEACON_INTERVAL:
        set<std::uint16_t>(bss.beaconInterval, body);
        break;
    case NL80211_BSS_CAPABILITY:
        set<std::uint16_t>(bss.capability, body);
        break;
    case NL80211_BSS_INFORMATION_ELEMENTS:
        elements = body;
        break;
    case NL80211_BSS_BEACON_IES:
        beaconElements = body;
        break;
    case NL80211_BSS_SIGNAL_MBM:
        bss.signalMbm = signalMbm(body);
        break;
    case NL80211_BSS_SIGNAL_UNSPEC:
        bss.signalPercent = number<std::uint8_t>(body);
        break;
    case NL80211_BSS_STATUS:
        bss.status = readStatus(body).value_or(BssStatus::NONE);
        break;
    case NL80211_BSS_SEEN_MS_AGO:
        set<std::uint32_t>(bss.ageMs, body);
        break;
    case NL80211_BSS_LAST_SEEN_BOOTTIME:
        set<std::uint64_t>(bss.lastSeenNs, body);
        break;
    case NL80211_BSS_CHAIN_SIGNAL:
        bss.chainsDbm = readChains(body);
        break;
    default:
        break;
    }
}

void readStationInfo(Station& station, unsigned type, Attributes body) {
    switch (type) {
    case NL80211_STA_INFO_SIGNAL:
        station.signalDbm = level(body);
        break;
    case NL80211_STA_INFO_SIGNAL_AVG:
        station.averageDbm = level(body);
        break;
    case NL80211_STA_INFO_CHAIN_SIGNAL:
        station.chainsDbm = readChains(body);
        break;
    case NL80211_STA_INFO_CHAIN_SIGNAL_AVG:
        station.averageChainsDbm = readChains(body);
        break;
    case NL80211_STA_INFO_RX_BITRATE:
        station.receiveRate = readRate(body);
        break;
    case NL80211_STA_INFO_TX_BITRATE:
        station.transmitRate = readRate(body);
        break;
    case NL80211_STA_INFO_RX_PACKETS:
        set<std::uint32_t>(station.receivedPackets, body);
        break;
    case NL80211_STA_INFO_TX_PACKETS:
        set<std::uint32_t>(station.transmittedPackets, body);
        break;
    case NL80211_STA_INFO_TX_RETRIES:
        set<std::uint32_t>(station.transmitRetries, body);
        break;
    case NL80211_STA_INFO_TX_FAILED:
        set<std::uint32_t>(station.transmitFailures, body);
        break;
    case NL80211_STA_INFO_RX_DROP_MISC:
        set<std::uint64_t>(station.receiveDrops, body);
        break;
    default:
        break;
    }
}

constexpr struct {
    std::uint8_t command;
    Event::Kind kind;
} eventKinds[] = {
    {NL80211_CMD_TRIGGER_SCAN, Event::Kind::SCAN_STARTED},
    {NL80211_CMD_NEW_SCAN_RESULTS, Event::Kind::SCAN_COMPLETED},
    {NL80211_CMD_SCAN_ABORTED, Event::Kind::SCAN_ABORTED},
    {NL80211_CMD_CONNECT, Event::Kind::CONNECTED},
    {NL80211_CMD_ROAM, Event::Kind::CONNECTED},
    {NL80211_CMD_JOIN_IBSS, Event::Kind::CONNECTED},
    {NL80211_CMD_DISCONNECT, Event::Kind::DISCONNECTED},
    {NL80211_CMD_NEW_INTERFACE, Event::Kind::INTERFACE_ADDED},
    {NL80211_CMD_DEL_INTERFACE, Event::Kind::INTERFACE_REMOVED},
};

} // namespace

std::optional<Wiphy> readWiphy(Attributes attributes) {
    Wiphy wiphy;
    std::optional<std::uint32_t> index;
    forEach(attributes, [&](unsigned type, Attributes body) {
        switch (type) {
        case NL80211_ATTR_WIPHY:
            set<std::uint32_t>(index, body);
            break;
        case NL80211_ATTR_WIPHY_NAME:
            setName(wiphy.name, body);
            break;
        case NL80211_ATTR_WIPHY_BANDS:
            forEach(body, [&wiphy](unsigned /*band*/, Attributes band) {
                readBand(wiphy.channels, band);
            });
            break;
        case NL80211_ATTR_WIPHY_ANTENNA_RX:
            set<std::uint32_t>(wiphy.receiveAntennas, body);
            break;
        case NL80211_ATTR_WIPHY_ANTENNA_AVAIL_RX:
            set<std::uint32_t>(wiphy.availableReceiveAntennas, body);
            break;
        default:
            break;
        }
    });
    if (!index) {
        return std::nullopt;
    }
    wiphy.index = *index;
    return wiphy;
}

void merge(std::vector<Wiphy>& wiphys, Wiphy part) {
    const auto known = std::find_if(wiphys.begin(), wiphys.end(), [&part](const Wiphy& wiphy) {
        return wiphy.index == part.index;
    });
    if (known == wiphys.end()) {
        wiphys.push_back(std::move(part));
        return;
    }
    if (!part.name.empty()) {
        known->name = std::move(part.name);
    }
    known->channels.insert(known->channels.end(), part.channels.begin(), part.channels.end());
    if (part.receiveAntennas) {
        known->receiveAntennas = part.receiveAntennas;
    }
    if (part.availableReceiveAntennas) {
        known->availableReceiveAntennas = part.availableReceiveAntennas;
    }
}

std::string readCountry(Attributes attributes) {
    constexpr std::size_t CHARACTERS = 2;
    std::string country;
    forEach(attributes, [&country](unsigned type, Attributes body) {
        if (type == NL80211_ATTR_REG_ALPHA2 && body.size() >= CHARACTERS) {
            country.assign(body.begin(), body.begin() + CHARACTERS);
        }
    });
    return country;
}

std::optional<Interface> readInterface(Attributes attributes) {
    Interface interface;
    std::optional<std::uint32_t> index;
    std::optional<std::uint32_t> wiphy;
    std::optional<std::uint32_t> interfaceType;
    forEach(attributes, [&](unsigned type, Attributes body) {
        switch (type) {
        case NL80211_ATTR_IFINDEX:
            set<std::uint32_t>(index, body);
            break;
        case NL80211_ATTR_WIPHY:
            set<std::uint32_t>(wiphy, body);
            break;
        case NL80211_ATTR_IFTYPE:
            set<std::uint32_t>(interfaceType, body);
            break;
        case NL80211_ATTR_IFNAME:
            setName(interface.name, body);
            break;
        case NL80211_ATTR_MAC:
            set(interface.address, body);
            break;
        case NL80211_ATTR_SSID:
            setSsid(interface.ssid, body);
            break;
        case NL80211_ATTR_WIPHY_FREQ:
            set<std::uint32_t>(interface.frequencyMhz, body);
            break;
        default:
            break;
        }
    });
    if (!index || !wiphy || !interfaceType) {
        return std::nullopt;
    }
    interface.index = *index;
    interface.wiphy = *wiphy;
    interface.type = *interfaceType;
    return interface;
}

std::optional<Bss> readBss(Attributes attributes) {
    BssParts parts;
    forEach(attributes, [&parts](unsigned outer, Attributes nested) {
        if (outer == NL80211_ATTR_BSS) {
            forEach(nested, [&parts](unsigned type, Attributes body) { parts.read(type, body); });
        }
    });
    if (!parts.bssid || parts.bss.frequencyMhz == 0) {
        return std::nullopt;
    }
    Bss bss = std::move(parts.bss);
    bss.bssid = *parts.bssid;
    if (bss.timestamp == 0) {
        bss.timestamp = parts.beaconTimestamp.value_or(0);
    }
    const Attributes elements = parts.elements.empty() ? parts.beaconElements : parts.elements;
    bss.elements.assign(elements.begin(), elements.end());
    if (bss.signalPercent > 100) {
        bss.signalPercent.reset();
    }
    return bss;
}

std::optional<Station> readStation(Attributes attributes) {
    Station station;
    std::optional<MacAddress> address;
    forEach(attributes, [&](unsigned outer, Attributes body) {
        if (outer == NL80211_ATTR_MAC) {
            setAddress(address, body);
        } else if (outer == NL80211_ATTR_STA_INFO) {
            forEach(body, [&station](unsigned type, Attributes value) {
                readStationInfo(station, type, value);
            });
        }
    });
    if (!address) {
        return std::nullopt;
    }
    station.address = *address;
    return station;
}

Event readEvent(std::uint8_t command, Attributes attributes) {
    Event event;
    for (const auto& [known, kind] : eventKinds) {
        if (known == command) {
            event.kind = kind;
        }
    }
    Attributes requestElements;
    forEach(attributes, [&](unsigned type, Attributes body) {
        switch (type) {
        case NL80211_ATTR_IFINDEX:
            set<std::uint32_t>(event.interface, body);
            break;
        case NL80211_ATTR_WIPHY:
            set<std::uint32_t>(event.wiphy, body);
            break;
        case NL80211_ATTR_STATUS_CODE:
            set<std::uint16_t>(event.statusCode, body);
            break;
        case NL80211_ATTR_SSID:
            setSsid(event.ssid, body);
            break;
        case NL80211_ATTR_MAC:
            set(event.bssid, body);
            break;
        case NL80211_ATTR_REQ_IE:
            requestElements = body;
            break;
        default:
            break;
        }
    });
    // A connection names its network in the request to join it alone.
    if (event.ssid.empty()) {
        setSsid(event.ssid, readElements(requestElements).ssid);
    }
    return event;
}

std::optional<std::int32_t> chainLevel(std::int8_t reported) {
    if (reported >= 0 || reported == -95 || reported <= -110) {
        return std::nullopt;
    }
    return reported;
}

} // namespace nativewifi::linux_radio
