// The requests to nl80211, as calls with records.
#pragma once

#include "Transport.h"

#include <nativewifi/WlanTypes.h>

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace nativewifi::linux_radio {

/// One thread at a time. Failure of every call: throws CallError.
class Nl80211 {
public:
    explicit Nl80211(std::unique_ptr<Transport> transport) : m_transport(std::move(transport)) {}

    /// Every station interface, by wiphy and index.
    std::vector<Interface> interfaces();
    /// Nothing when there is no station interface with that index any more.
    std::optional<Interface> interface(std::uint32_t index);
    /// The scan result.
    std::vector<Bss> heard(std::uint32_t interface);
    /// The access point that the interface is connected to; nothing without a connection.
    std::optional<Station> accessPoint(std::uint32_t interface);

    /// A bit for each receive antenna in use; nothing when the driver does not report them.
    std::optional<std::uint32_t> receiveAntennas(std::uint32_t interface);

    enum class Scan : std::uint8_t { STARTED, RUNNING_ALREADY };
    /// Starts a scan and returns at once.
    /// \param ssid of a directed probe; empty asks all
    /// \param frequencyMhz the only one to be scanned, if any
    Scan scan(std::uint32_t interface, std::span<const std::uint8_t> ssid,
              std::optional<std::uint32_t> frequencyMhz);

private:
    std::optional<Station> station(std::uint32_t interface, const MacAddress& address);
    template <typename Record>
    std::vector<Record> list(std::uint8_t command, std::optional<std::uint32_t> interface,
                             std::optional<Record> (*read)(Attributes));

    std::unique_ptr<Transport> m_transport;
};

} // namespace nativewifi::linux_radio
