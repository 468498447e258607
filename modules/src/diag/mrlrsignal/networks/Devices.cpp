#include <networks/Devices.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <numeric>

namespace networks {

namespace {

using readings::Bssid;

// From one radio to the next vendors count up the last byte.
constexpr int NEIGHBOURHOOD = 7;
constexpr UCHAR GIVEN_LOCALLY = 0x02;

bool isOneOfItsNames(const Network& sender, const Network& other) {
    const unsigned mask = 0xFFU << sender.traces.nameBits;
    return sender.traces.nameBits > 0 && sender.mhz == other.mhz &&
           std::equal(sender.bssid.begin(), sender.bssid.end() - 1, other.bssid.begin()) &&
           ((sender.bssid.back() ^ other.bssid.back()) & mask & 0xFFU) == 0;
}

bool names(const Network& network, const Bssid& bssid) {
    return std::ranges::find(network.traces.colocated, bssid) != network.traces.colocated.end();
}

bool areSurelyOne(const Network& a, const Network& b) {
    return (a.traces.uuid && a.traces.uuid == b.traces.uuid) ||
           (a.traces.multiLink && a.traces.multiLink == b.traces.multiLink) || names(a, b.bssid) ||
           names(b, a.bssid) || isOneOfItsNames(a, b) || isOneOfItsNames(b, a);
}

bool areProbablyOne(const Network& a, const Network& b) {
    const bool local = ((a.bssid.front() | b.bssid.front()) & GIVEN_LOCALLY) != 0;
    return (local || a.bssid.front() == b.bssid.front()) &&
           std::equal(a.bssid.begin() + 1, a.bssid.end() - 1, b.bssid.begin() + 1) &&
           std::abs(a.bssid.back() - b.bssid.back()) <= NEIGHBOURHOOD;
}

// Sets of networks; each has the place of its first one for a name.
class Sets {
public:
    explicit Sets(std::size_t size) : m_parents(size) {
        std::iota(m_parents.begin(), m_parents.end(), std::size_t{0});
    }
    std::size_t of(std::size_t place) const {
        while (m_parents[place] != place) {
            place = m_parents[place];
        }
        return place;
    }
    void join(std::size_t a, std::size_t b) {
        const auto [first, second] = std::minmax({of(a), of(b)});
        m_parents[second] = first;
    }

private:
    std::vector<std::size_t> m_parents;
};

template <typename AreOne>
void joinWhere(Sets& sets, const std::vector<Network>& networks, AreOne areOne) {
    for (std::size_t a = 0; a < networks.size(); ++a) {
        for (std::size_t b = a + 1; b < networks.size(); ++b) {
            if (areOne(networks[a], networks[b])) {
                sets.join(a, b);
            }
        }
    }
}

} // namespace

void numberDevices(std::vector<Network>& networks) {
    Sets sure(networks.size());
    joinWhere(sure, networks, &areSurelyOne);
    Sets all = sure;
    joinWhere(all, networks, &areProbablyOne);

    struct Device {
        std::size_t networks = 0;
        std::size_t sureSets = 0;
        std::size_t number = 0;
    };
    std::map<std::size_t, Device> devices; // by the place of their first network
    for (std::size_t place = 0; place < networks.size(); ++place) {
        Device& device = devices[all.of(place)];
        ++device.networks;
        device.sureSets += sure.of(place) == place ? 1 : 0;
    }
    std::size_t last = 0;
    for (auto& [place, device] : devices) {
        device.number = device.networks > 1 ? ++last : 0;
    }
    for (std::size_t place = 0; place < networks.size(); ++place) {
        const Device& device = devices[all.of(place)];
        networks[place].device = device.number;
        networks[place].deviceIsSure = device.number != 0 && device.sureSets == 1;
    }
}

} // namespace networks
