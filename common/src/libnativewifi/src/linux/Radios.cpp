#include "Radios.h"

#include "CallError.h"
#include "Networks.h"

#include <algorithm>
#include <utility>

namespace nativewifi::linux_radio {

namespace {

constexpr std::uint32_t FRESH_MS = 15000;
// A scan takes up to 5 s: with it, what is still there is heard again before it counts as old.
constexpr std::uint32_t LATE_MS = 5000;

DOT11_RADIO_STATE stateOf(bool blocked) {
    return blocked ? dot11_radio_state_off : dot11_radio_state_on;
}

} // namespace

Radios::Radios(Kernel& kernel)
    : m_kernel(kernel), m_host(kernel.root()), m_rfkill(kernel.root()),
      m_nl80211(kernel.connect()) {}

// Under the mutex.
const std::vector<Adapter>& Radios::refresh() {
    return m_adapters = adaptersOf(m_nl80211.interfaces(), m_adapters, m_host);
}

std::vector<Adapter> Radios::adapters() {
    const std::lock_guard lock(m_mutex);
    return refresh();
}

Adapter Radios::find(const GUID& guid) {
    const std::lock_guard lock(m_mutex);
    if (const Adapter* const known = findByGuid(m_adapters, guid)) {
        if (std::optional<Interface> now = m_nl80211.interface(known->interface.index)) {
            return {guid, std::move(*now)};
        }
    }
    const Adapter* const found = findByGuid(refresh(), guid);
    if (found == nullptr) {
        throw CallError(ERROR_NOT_FOUND);
    }
    return *found;
}

std::string Radios::description(const Adapter& adapter) const {
    return m_host.description(adapter.interface.name);
}

WLAN_PHY_RADIO_STATE Radios::radio(const Adapter& adapter) const {
    const Rfkill::State state = m_rfkill.state(adapter.interface.name).value_or(Rfkill::State{});
    return {0, stateOf(state.soft || !m_host.isUp(adapter.interface.name)), stateOf(state.hard)};
}

void Radios::requireOn(const Adapter& adapter) const {
    const Rfkill::State state = m_rfkill.state(adapter.interface.name).value_or(Rfkill::State{});
    if (state.isOff() || !m_host.isUp(adapter.interface.name)) {
        throw CallError(ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    }
}

WLAN_INTERFACE_STATE Radios::state(const Adapter& adapter) {
    const std::optional<Rfkill::State> radio = m_rfkill.state(adapter.interface.name);
    if (radio && radio->isOff()) {
        return wlan_interface_state_disconnected;
    }
    if (!m_host.isUp(adapter.interface.name)) {
        return wlan_interface_state_not_ready;
    }
    if (accessPoint(adapter)) {
        return wlan_interface_state_connected;
    }
    return adapter.interface.ssid.empty() ? wlan_interface_state_disconnected
                                          : wlan_interface_state_associating;
}

std::vector<Bss> Radios::heard(const Adapter& adapter) {
    requireOn(adapter);
    const std::lock_guard lock(m_mutex);
    return heardLocked(adapter);
}

std::vector<Bss> Radios::heardOfLate(const Adapter& adapter) {
    requireOn(adapter);
    const std::lock_guard lock(m_mutex);
    std::vector<Bss> heard = heardLocked(adapter);
    const std::uint64_t now = m_kernel.bootTimeNs();
    const auto last = m_refreshedNs.find(adapter.interface.index);
    const bool refreshed = last != m_refreshedNs.end() && now < last->second + LATE_MS * NS_PER_MS;
    // The access point of a connection is heard without a scan.
    if (!refreshed && std::ranges::none_of(heard, [now](const Bss& bss) {
            return bss.status == BssStatus::NONE && isFresh(bss, now, LATE_MS);
        })) {
        m_refreshedNs[adapter.interface.index] = now;
        try {
            m_nl80211.scan(adapter.interface.index, {}, std::nullopt);
        } catch (const CallError&) { // NOLINT(bugprone-empty-catch): the list is what it is
        }
    }
    return heard;
}

std::vector<Bss> Radios::heardLocked(const Adapter& adapter) {
    std::vector<Bss> heard = m_nl80211.heard(adapter.interface.index);
    const std::uint64_t now = m_kernel.bootTimeNs();
    std::erase_if(heard, [now](const Bss& bss) { return !isFresh(bss, now, FRESH_MS); });
    return heard;
}

std::optional<Station> Radios::accessPoint(const Adapter& adapter) {
    const std::lock_guard lock(m_mutex);
    return m_nl80211.accessPoint(adapter.interface.index);
}

std::optional<std::uint32_t> Radios::receiveAntennas(const Adapter& adapter) {
    const std::lock_guard lock(m_mutex);
    return m_nl80211.receiveAntennas(adapter.interface.index);
}

Radios::Connection Radios::connection(const Adapter& adapter) {
    std::optional<Station> station = accessPoint(adapter);
    if (!station) {
        throw CallError(ERROR_INVALID_STATE);
    }
    Connection connection{std::move(*station), std::nullopt};
    const std::lock_guard lock(m_mutex);
    for (Bss& bss : m_nl80211.heard(adapter.interface.index)) {
        if (bss.status == BssStatus::ASSOCIATED ||
            (!connection.bss && bss.bssid == connection.accessPoint.address)) {
            connection.bss = std::move(bss);
        }
    }
    return connection;
}

void Radios::scan(const Adapter& adapter, std::span<const std::uint8_t> ssid,
                  std::optional<std::uint32_t> frequencyMhz) {
    requireOn(adapter);
    // scanEnded() waits for the mutex: the end of a scan that runs is not seen before it is noted.
    const std::lock_guard lock(m_mutex);
    if (m_nl80211.scan(adapter.interface.index, ssid, frequencyMhz) ==
        Nl80211::Scan::RUNNING_ALREADY) {
        m_awaiting.push_back(adapter.interface);
    }
}

std::vector<GUID> Radios::scanEnded(const Event& event) {
    const std::lock_guard lock(m_mutex);
    std::vector<std::uint32_t> indices;
    if (event.interface) {
        indices.push_back(*event.interface);
    }
    std::erase_if(m_awaiting, [&](const Interface& waiting) {
        const bool ended = event.wiphy == waiting.wiphy || event.interface == waiting.index;
        if (ended && std::ranges::find(indices, waiting.index) == indices.end()) {
            indices.push_back(waiting.index);
        }
        return ended;
    });
    std::vector<GUID> ended;
    for (const std::uint32_t index : indices) {
        const Adapter* adapter = findByIndex(m_adapters, index);
        if (adapter == nullptr) {
            adapter = findByIndex(refresh(), index);
        }
        if (adapter != nullptr) {
            ended.push_back(adapter->guid);
        }
    }
    return ended;
}

void Radios::switchRadio(const Adapter& adapter, bool on) {
    const std::optional<Rfkill::State> state = m_rfkill.state(adapter.interface.name);
    if (!state) {
        throw CallError(ERROR_NOT_SUPPORTED);
    }
    if (state->hard) {
        throw CallError(ERROR_INVALID_STATE);
    }
    const std::lock_guard lock(m_mutex);
    if (state->soft != on) {
        if (on && !m_host.isUp(adapter.interface.name)) {
            check(m_kernel.bringUp(adapter.interface.name));
        }
        return;
    }
    std::vector<std::string>& broughtDown = m_broughtDown[adapter.interface.wiphy];
    if (!on) {
        broughtDown.clear();
        for (const Adapter& other : refresh()) {
            if (other.interface.wiphy == adapter.interface.wiphy &&
                m_host.isUp(other.interface.name)) {
                broughtDown.push_back(other.interface.name);
            }
        }
    }
    check(m_rfkill.block(adapter.interface.name, !on));
    if (on) {
        // The kernel takes interfaces down with their radio, and leaves them so. Without the
        // permission to set them up, a network manager does it.
        if (broughtDown.empty()) {
            broughtDown.push_back(adapter.interface.name);
        }
        for (const std::string& interface : broughtDown) {
            m_kernel.bringUp(interface);
        }
        broughtDown.clear();
    }
}

} // namespace nativewifi::linux_radio
