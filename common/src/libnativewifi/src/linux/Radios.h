// The machine's wireless interfaces as one client sees them: what the kernel, its files and its
// switches say of each.
#pragma once

#include "Adapters.h"
#include "Host.h"
#include "Nl80211.h"
#include "Rfkill.h"

#include <nativewifi/WlanTypes.h>

#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nativewifi::linux_radio {

/// Any thread; questions to the kernel come one after the other. Failure of every operation but
/// the switches' state: throws CallError.
class Radios {
public:
    explicit Radios(Kernel& kernel);

    /// Every adapter there is now.
    std::vector<Adapter> adapters();
    /// As it is now; ERROR_NOT_FOUND when it is not there.
    Adapter find(const GUID& guid);

    /// UTF-8.
    std::string description(const Adapter& adapter) const;
    /// In software off with the interface down too: it can do nothing then. In hardware on, where
    /// there is no switch.
    WLAN_PHY_RADIO_STATE radio(const Adapter& adapter) const;
    WLAN_INTERFACE_STATE state(const Adapter& adapter);

    /// What it heard in the last 15 s, and what it is connected to: the kernel lists for 30 s what
    /// may be gone. 15 s leave room for two scans with pauses of 7 s.
    /// Failure: also ERROR_NDIS_DOT11_POWER_STATE_INVALID when the radio is off or the interface
    /// down
    std::vector<Bss> heard(const Adapter& adapter);
    /// The same, and starts a scan when nothing was heard in the last 5 s: Windows' service scans
    /// by itself, and clients that wait for a network read its list only. Without the permission
    /// to scan, the list is what others' scans leave.
    std::vector<Bss> heardOfLate(const Adapter& adapter);
    std::uint64_t bootTimeNs() { return m_kernel.bootTimeNs(); }

    struct Connection {
        Station accessPoint;
        std::optional<Bss> bss; ///< absent when the kernel does not list it
    };
    /// Failure: also ERROR_INVALID_STATE without a connection
    Connection connection(const Adapter& adapter);
    /// Its access point alone; nothing without a connection.
    std::optional<Station> accessPoint(const Adapter& adapter);

    /// A bit for each receive antenna; nothing when the driver does not report them.
    std::optional<std::uint32_t> receiveAntennas(const Adapter& adapter);

    /// Starts a scan; one that runs already on the same radio counts as ours.
    /// \param ssid empty asks all
    void scan(const Adapter& adapter, std::span<const std::uint8_t> ssid,
              std::optional<std::uint32_t> frequencyMhz);
    /// The adapters for which a scan has ended, by the event of its end.
    std::vector<GUID> scanEnded(const Event& event);

    /// Switches the radio in software. Its interfaces go down with it and come up again; so does
    /// one that was down while the radio was on.
    /// Failure: also ERROR_INVALID_STATE when it is blocked in hardware
    void switchRadio(const Adapter& adapter, bool on);

private:
    const std::vector<Adapter>& refresh();
    void requireOn(const Adapter& adapter) const;
    std::vector<Bss> heardLocked(const Adapter& adapter);

    Kernel& m_kernel;
    const Host m_host;
    const Rfkill m_rfkill;
    std::mutex m_mutex; ///< of all below
    Nl80211 m_nl80211;
    std::vector<Adapter> m_adapters;
    std::map<std::uint32_t, std::uint64_t> m_refreshedNs; ///< the last scan of heardOfLate()
    std::vector<Interface> m_awaiting; ///< a scan's end that another interface may announce
    std::map<std::uint32_t, std::vector<std::string>> m_broughtDown; ///< by wiphy
};

} // namespace nativewifi::linux_radio
