#include "Client.h"

#include "CallError.h"
#include "Chains.h"
#include "Networks.h"

#include <nativewifi/Channels.h>
#include <nativewifi/LinuxRadio.h>
#include <nativewifi/Ssid.h>

#include <mrl/Clock.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <chrono>
#include <cstring>

namespace nativewifi::linux_radio {

namespace {

constexpr ULONG STATION_MODE = 1;
constexpr ULONG KBIT_PER_UNIT = 100; // rates of records

// From 1601 to 1970, in 100 ns.
constexpr std::uint64_t FILE_TIME_OF_UNIX_EPOCH = 116'444'736'000'000'000;

std::uint64_t fileTimeNow() {
    using FileTime = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    const auto sinceEpoch = mrl::Clock::current().utcNow().time_since_epoch();
    return FILE_TIME_OF_UNIX_EPOCH +
           static_cast<std::uint64_t>(std::chrono::duration_cast<FileTime>(sinceEpoch).count());
}

template <std::size_t SIZE>
void copyText(WCHAR (&target)[SIZE], const std::string& utf8) {
    const mrl::CharString text = mrl::toUtf16(utf8);
    std::copy_n(text.begin(), std::min(text.size(), SIZE - 1), target);
}

LONG levelOf(const Radios::Connection& connection) {
    const Station& station = connection.accessPoint;
    if (station.signalDbm) {
        return *station.signalDbm;
    }
    if (station.averageDbm) {
        return *station.averageDbm;
    }
    const std::optional<LONG> level =
        connection.bss ? linux_radio::levelOf(*connection.bss) : std::nullopt;
    if (!level) {
        throw CallError(ERROR_NOT_SUPPORTED);
    }
    return *level;
}

// --- WlanQueryInterface ---

Block radioState(Radios& radios, const Adapter& adapter) {
    WLAN_RADIO_STATE state{};
    state.dwNumberOfPhys = 1;
    state.PhyRadioState[0] = radios.radio(adapter);
    return blockOf(state);
}

Block bssType(Radios& /*radios*/, const Adapter& /*adapter*/) {
    return blockOf(dot11_BSS_type_infrastructure);
}

Block interfaceState(Radios& radios, const Adapter& adapter) {
    return blockOf(radios.state(adapter));
}

Block currentConnection(Radios& radios, const Adapter& adapter) {
    const Radios::Connection connection = radios.connection(adapter);
    const Bss& bss = connection.bss ? *connection.bss : Bss{};
    WLAN_CONNECTION_ATTRIBUTES attributes{};
    attributes.isState = wlan_interface_state_connected;
    attributes.wlanConnectionMode = wlan_connection_mode_profile;
    WLAN_ASSOCIATION_ATTRIBUTES& association = attributes.wlanAssociationAttributes;
    const Bytes name = adapter.interface.ssid.empty() ? ssidOf(bss) : adapter.interface.ssid;
    association.dot11Ssid = toSsid({reinterpret_cast<const char*>(name.data()), name.size()});
    association.dot11BssType = dot11_BSS_type_infrastructure;
    std::ranges::copy(connection.bss ? bss.bssid : connection.accessPoint.address,
                      association.dot11Bssid);
    association.dot11PhyType = phyTypeOf(bss);
    association.wlanSignalQuality = linkQuality(levelOf(connection));
    association.ulRxRate = connection.accessPoint.receiveRate.value_or(0) * KBIT_PER_UNIT;
    association.ulTxRate = connection.accessPoint.transmitRate.value_or(0) * KBIT_PER_UNIT;
    const Security security = securityOf(bss);
    WLAN_SECURITY_ATTRIBUTES& secured = attributes.wlanSecurityAttributes;
    secured.bSecurityEnabled = security.enabled ? TRUE : FALSE;
    secured.bOneXEnabled = security.oneX ? TRUE : FALSE;
    secured.dot11AuthAlgorithm = security.authentication;
    secured.dot11CipherAlgorithm = security.cipher;
    return blockOf(attributes);
}

Block channelNumber(Radios& radios, const Adapter& adapter) {
    const Radios::Connection connection = radios.connection(adapter);
    const std::uint32_t ofBss = connection.bss ? connection.bss->frequencyMhz : 0;
    return blockOf(channelOf(adapter.interface.frequencyMhz.value_or(ofBss)));
}

Block rssi(Radios& radios, const Adapter& adapter) {
    return blockOf(levelOf(radios.connection(adapter)));
}

Block operationMode(Radios& /*radios*/, const Adapter& /*adapter*/) {
    return blockOf(STATION_MODE);
}

// Of the connection; zeroes without one.
Block statistics(Radios& radios, const Adapter& adapter) {
    WLAN_STATISTICS statistics{};
    statistics.dwNumberOfPhys = 1;
    if (const std::optional<Station> station = radios.accessPoint(adapter)) {
        WLAN_MAC_FRAME_STATISTICS& frames = statistics.MacUcastCounters;
        frames.ullTransmittedFrameCount = station->transmittedPackets.value_or(0);
        frames.ullReceivedFrameCount = station->receivedPackets.value_or(0);
        WLAN_PHY_FRAME_STATISTICS& phy = statistics.PhyCounters[0];
        phy.ullTransmittedFrameCount = frames.ullTransmittedFrameCount;
        phy.ullReceivedFrameCount = frames.ullReceivedFrameCount;
        phy.ullRetryCount = station->transmitRetries.value_or(0);
        phy.ullFailedCount = station->transmitFailures.value_or(0);
    }
    return blockOf(statistics);
}

// An empty block says that the driver does not report it.
Block supported(Block block) {
    if (block.empty()) {
        throw CallError(ERROR_NOT_SUPPORTED);
    }
    return block;
}

Block chainsOfConnection(Radios& radios, const Adapter& adapter) {
    return supported(connectionChains(radios.connection(adapter).accessPoint));
}

Block chainsOfBss(Radios& radios, const Adapter& adapter) {
    return supported(bssChains(radios.heard(adapter)));
}

Block receiveAntennas(Radios& radios, const Adapter& adapter) {
    const std::optional<std::uint32_t> antennas = radios.receiveAntennas(adapter);
    return supported(antennas ? blockOf<ULONG>(*antennas) : Block());
}

constexpr struct {
    WLAN_INTF_OPCODE opcode;
    Block (*answer)(Radios& radios, const Adapter& adapter);
} answers[] = {
    {wlan_intf_opcode_radio_state, &radioState},
    {wlan_intf_opcode_bss_type, &bssType},
    {wlan_intf_opcode_interface_state, &interfaceState},
    {wlan_intf_opcode_current_connection, &currentConnection},
    {wlan_intf_opcode_channel_number, &channelNumber},
    {wlan_intf_opcode_current_operation_mode, &operationMode},
    {wlan_intf_opcode_statistics, &statistics},
    {wlan_intf_opcode_rssi, &rssi},
    {wlan_intf_opcode_connection_chains, &chainsOfConnection},
    {wlan_intf_opcode_bss_chains, &chainsOfBss},
    {wlan_intf_opcode_receive_antennas, &receiveAntennas},
};

// --- WlanSetInterface ---

template <typename Structure>
Structure structureIn(std::span<const std::byte> data) {
    Structure structure{};
    if (data.size() != sizeof structure) {
        throw CallError(ERROR_INVALID_PARAMETER);
    }
    std::memcpy(&structure, data.data(), sizeof structure);
    return structure;
}

std::span<const std::uint8_t> nameIn(const DOT11_SSID& ssid) {
    if (ssid.uSSIDLength > DOT11_SSID_MAX_LENGTH) {
        throw CallError(ERROR_INVALID_PARAMETER);
    }
    return {ssid.ucSSID, ssid.uSSIDLength};
}

void setRadioState(Radios& radios, const Adapter& adapter, std::span<const std::byte> data) {
    const auto state = structureIn<WLAN_PHY_RADIO_STATE>(data);
    const bool on = state.dot11SoftwareRadioState == dot11_radio_state_on;
    if (state.dwPhyIndex != 0 || (!on && state.dot11SoftwareRadioState != dot11_radio_state_off)) {
        throw CallError(ERROR_INVALID_PARAMETER);
    }
    radios.switchRadio(adapter, on);
}

void scanChannel(Radios& radios, const Adapter& adapter, std::span<const std::byte> data) {
    const auto request = structureIn<ChannelScan>(data);
    radios.scan(adapter, nameIn(request.ssid), request.frequencyMhz);
}

constexpr struct {
    WLAN_INTF_OPCODE opcode;
    void (*set)(Radios& radios, const Adapter& adapter, std::span<const std::byte> data);
} changes[] = {
    {wlan_intf_opcode_radio_state, &setRadioState},
    {wlan_intf_opcode_scan_channel, &scanChannel},
};

template <typename Row, std::size_t ROWS>
const Row& rowOf(const Row (&rows)[ROWS], DWORD opcode) {
    for (const Row& row : rows) {
        if (static_cast<DWORD>(row.opcode) == opcode) {
            return row;
        }
    }
    throw CallError(ERROR_NOT_SUPPORTED);
}

} // namespace

Client::Client(Kernel& kernel)
    : m_kernel(kernel), m_radios(std::make_shared<Radios>(kernel)),
      m_fileTimeOfBoot(fileTimeNow() - m_radios->bootTimeNs() / NS_PER_FILE_TIME) {}

Block Client::interfaceList() {
    std::vector<WLAN_INTERFACE_INFO> list;
    for (const Adapter& adapter : m_radios->adapters()) {
        WLAN_INTERFACE_INFO info{};
        info.InterfaceGuid = adapter.guid;
        copyText(info.strInterfaceDescription, m_radios->description(adapter));
        try {
            info.isState = m_radios->state(adapter);
        } catch (const CallError& error) {
            if (error.code() == ERROR_NOT_FOUND) {
                continue; // gone meanwhile
            }
            throw;
        }
        list.push_back(info);
    }
    return listBlock(offsetof(WLAN_INTERFACE_INFO_LIST, dwNumberOfItems),
                     offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo), list);
}

Block Client::query(const GUID& guid, DWORD opcode) {
    const Adapter adapter = m_radios->find(guid);
    return rowOf(answers, opcode).answer(*m_radios, adapter);
}

void Client::set(const GUID& guid, DWORD opcode, std::span<const std::byte> data) {
    const Adapter adapter = m_radios->find(guid);
    rowOf(changes, opcode).set(*m_radios, adapter, data);
}

Block Client::networkList(const GUID& guid) {
    const Adapter adapter = m_radios->find(guid);
    return availableNetworkList(m_radios->heardOfLate(adapter));
}

Block Client::bssList(const GUID& guid, const DOT11_SSID* ssid, DOT11_BSS_TYPE type, bool secured) {
    const Adapter adapter = m_radios->find(guid);
    const std::uint64_t bootTime = m_radios->bootTimeNs();
    return linux_radio::bssList(m_radios->heard(adapter), ssid, type, secured, bootTime,
                                m_fileTimeOfBoot + bootTime / NS_PER_FILE_TIME);
}

void Client::scan(const GUID& guid, const DOT11_SSID* ssid) {
    const Adapter adapter = m_radios->find(guid);
    m_radios->scan(adapter, ssid == nullptr ? std::span<const std::uint8_t>() : nameIn(*ssid),
                   std::nullopt);
}

DWORD Client::registerNotification(const Registration& registration) {
    std::unique_lock lock(m_mutex);
    const DWORD previous =
        m_notifications ? m_notifications->registration().source : WLAN_NOTIFICATION_SOURCE_NONE;
    if (registration.source == WLAN_NOTIFICATION_SOURCE_NONE) {
        endNotifications(lock);
    } else if (m_closed) {
        throw CallError(ERROR_INVALID_HANDLE);
    } else if (m_notifications) {
        m_notifications->replace(registration);
    } else {
        m_notifications = Notifications::start(m_radios, m_kernel.listen(), registration);
    }
    return previous;
}

void Client::close() {
    std::unique_lock lock(m_mutex);
    m_closed = true;
    endNotifications(lock);
}

void Client::endNotifications(std::unique_lock<std::mutex>& lock) {
    if (m_notifications) {
        m_stopping.push_back(std::move(m_notifications));
    }
    const std::vector<std::shared_ptr<Notifications>> stopping = m_stopping;
    lock.unlock();
    for (const std::shared_ptr<Notifications>& each : stopping) {
        each->stop();
    }
    lock.lock();
    std::erase_if(m_stopping, [](const auto& each) { return each->ended(); });
}

} // namespace nativewifi::linux_radio
