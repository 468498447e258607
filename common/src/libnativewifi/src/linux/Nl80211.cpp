#include "Nl80211.h"

#include "AttributeWriter.h"
#include "CallError.h"

#include <linux/nl80211.h>

#include <algorithm>
#include <cerrno>
#include <tuple>

namespace nativewifi::linux_radio {

namespace {

// A dump that was interrupted is taken again; where the list never rests, the last one counts: it
// can lack entries, and has no wrong ones.
constexpr int DUMPS = 5;

AttributeWriter of(std::uint32_t interface) {
    AttributeWriter attributes;
    attributes.addNumber(NL80211_ATTR_IFINDEX, interface);
    return attributes;
}

bool isStation(const Interface& interface) {
    return interface.type == NL80211_IFTYPE_STATION;
}

} // namespace

template <typename Record>
std::vector<Record> Nl80211::list(std::uint8_t command, std::optional<std::uint32_t> interface,
                                  std::optional<Record> (*read)(Attributes)) {
    const AttributeWriter attributes = interface ? of(*interface) : AttributeWriter();
    std::vector<Record> records;
    for (int dump = 0; dump < DUMPS; ++dump) {
        records.clear();
        const Outcome outcome =
            m_transport->dump(command, attributes.bytes(), [&](Attributes answer) {
                if (std::optional<Record> record = read(answer)) {
                    records.push_back(std::move(*record));
                }
            });
        check(outcome.error);
        if (!outcome.interrupted) {
            break;
        }
    }
    return records;
}

std::vector<Interface> Nl80211::interfaces() {
    std::vector<Interface> all = list(NL80211_CMD_GET_INTERFACE, std::nullopt, &readInterface);
    std::erase_if(all, [](const Interface& interface) { return !isStation(interface); });
    std::ranges::sort(all, [](const Interface& a, const Interface& b) {
        return std::tuple(a.wiphy, a.index) < std::tuple(b.wiphy, b.index);
    });
    return all;
}

std::optional<Interface> Nl80211::interface(std::uint32_t index) {
    std::optional<Interface> found;
    const Outcome outcome =
        m_transport->request(NL80211_CMD_GET_INTERFACE, of(index).bytes(),
                             [&found](Attributes answer) { found = readInterface(answer); });
    if (outcome.error == ENODEV || (found && !isStation(*found))) {
        return std::nullopt;
    }
    check(outcome.error);
    return found;
}

std::vector<Bss> Nl80211::heard(std::uint32_t interface) {
    return list(NL80211_CMD_GET_SCAN, interface, &readBss);
}

std::optional<Station> Nl80211::accessPoint(std::uint32_t interface) {
    try {
        // Peers of direct links are listed behind the access point.
        std::vector<Station> stations = list(NL80211_CMD_GET_STATION, interface, &readStation);
        return stations.empty() ? std::nullopt : std::optional(std::move(stations.front()));
    } catch (const CallError& error) {
        if (error.code() != ERROR_NOT_SUPPORTED) {
            throw;
        }
    }
    // Some drivers list no stations.
    for (const Bss& bss : heard(interface)) {
        if (bss.status == BssStatus::ASSOCIATED) {
            return station(interface, bss.bssid);
        }
    }
    return std::nullopt;
}

std::optional<std::uint32_t> Nl80211::receiveAntennas(std::uint32_t interface) {
    std::optional<Wiphy> found;
    const Outcome outcome =
        m_transport->request(NL80211_CMD_GET_WIPHY, of(interface).bytes(),
                             [&found](Attributes answer) { found = readWiphy(answer); });
    check(outcome.error);
    if (!found) {
        return std::nullopt;
    }
    return found->receiveAntennas ? found->receiveAntennas : found->availableReceiveAntennas;
}

// With the address alone when the driver knows nothing of it; nothing when it has gone.
std::optional<Station> Nl80211::station(std::uint32_t interface, const MacAddress& address) {
    AttributeWriter attributes = of(interface);
    attributes.add(NL80211_ATTR_MAC, address);
    std::optional<Station> found;
    const Outcome outcome =
        m_transport->request(NL80211_CMD_GET_STATION, attributes.bytes(),
                             [&found](Attributes answer) { found = readStation(answer); });
    if (outcome.error == ENOENT) {
        return std::nullopt;
    }
    if (outcome.error != EOPNOTSUPP) {
        check(outcome.error);
    }
    if (!found) {
        found.emplace().address = address;
    }
    return found;
}

Nl80211::Scan Nl80211::scan(std::uint32_t interface, std::span<const std::uint8_t> ssid,
                            std::optional<std::uint32_t> frequencyMhz) {
    AttributeWriter attributes = of(interface);
    attributes.addNested(NL80211_ATTR_SCAN_SSIDS, AttributeWriter().add(1, ssid));
    if (frequencyMhz) {
        attributes.addNested(NL80211_ATTR_SCAN_FREQUENCIES,
                             AttributeWriter().addNumber(1, *frequencyMhz));
    }
    const Outcome outcome =
        m_transport->request(NL80211_CMD_TRIGGER_SCAN, attributes.bytes(), [](Attributes) {});
    if (outcome.error == EBUSY) {
        return Scan::RUNNING_ALREADY;
    }
    check(outcome.error);
    return Scan::STARTED;
}

} // namespace nativewifi::linux_radio
