#include "View.h"

#include "Elements.h"
#include "Random.h"

#include <nativewifi/Block.h>
#include <nativewifi/LinkQuality.h>
#include <nativewifi/LinuxRadio.h>
#include <nativewifi/Ssid.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace radiosim {

using nativewifi::blockOf;
using nativewifi::levelOfQuality;
using nativewifi::listBlock;
using nativewifi::place;
using nativewifi::toSsid;

namespace {

constexpr std::uint16_t CAPABILITY_ESS = 0x0001;
constexpr std::uint16_t CAPABILITY_IBSS = 0x0002;
constexpr std::uint16_t CAPABILITY_PRIVACY = 0x0010;
constexpr std::int32_t STATE_OFF = 2;

template <std::size_t size>
void copyText(WCHAR (&target)[size], std::string_view utf8) {
    const mrl::CharString text = mrl::toUtf16(utf8);
    std::copy_n(text.c_str(), std::min(text.size(), size - 1), target);
}

DOT11_SSID shownSsid(const AccessPoint& accessPoint) {
    DOT11_SSID ssid = toSsid(accessPoint.hidden ? std::string_view() : accessPoint.ssid);
    ssid.uSSIDLength = accessPoint.ssidLength.value_or(ssid.uSSIDLength);
    return ssid;
}

// In kHz, from the channel's number.
ULONG centreFrequency(std::uint32_t channel) {
    if (channel == 14) {
        return 2484000;
    }
    return channel < 14 ? 2407000 + 5000 * channel : 5000000 + 5000 * channel;
}

bool isOff(const Phy& phy) {
    return phy.software == STATE_OFF || phy.hardware == STATE_OFF;
}

// Both lists of pairs are a count and the pairs, whatever array a header declares for them.
Bytes pairList(const std::vector<AuthCipherPair>& pairs) {
    std::vector<DOT11_AUTH_CIPHER_PAIR> items(pairs.size());
    std::transform(pairs.begin(), pairs.end(), items.begin(), [](const AuthCipherPair& pair) {
        return DOT11_AUTH_CIPHER_PAIR{static_cast<DOT11_AUTH_ALGORITHM>(pair.auth),
                                      static_cast<DOT11_CIPHER_ALGORITHM>(pair.cipher)};
    });
    return listBlock(0, sizeof(DWORD), items);
}

// The block of a list that is declared with one item: three bytes an item, ending on a DWORD.
Bytes countryList(const std::vector<std::string>& countries) {
    constexpr std::size_t FIRST = sizeof(DWORD);
    constexpr std::size_t LENGTH = sizeof(DOT11_COUNTRY_OR_REGION_STRING);
    const std::size_t used = FIRST + countries.size() * LENGTH;
    Bytes block((used + FIRST - 1) / FIRST * FIRST);
    place(block, 0, static_cast<DWORD>(countries.size()));
    for (std::size_t i = 0; i < countries.size(); ++i) {
        std::memcpy(block.data() + FIRST + i * LENGTH, countries[i].data(),
                    std::min(countries[i].size(), LENGTH));
    }
    return block;
}

View::Answer plain(Bytes block) {
    return {ERROR_SUCCESS, std::move(block)};
}

View::Answer counted(Bytes block, std::size_t offset) {
    return {ERROR_SUCCESS, std::move(block), offset, true};
}

nativewifi::ChainLevels chainLevels(const Bss& bss, LONG level, const DOT11_MAC_ADDRESS& bssid) {
    nativewifi::ChainLevels levels{};
    std::copy(std::begin(bssid), std::end(bssid), levels.bssid);
    for (std::size_t i = 0; i < std::min(bss.chains.size(), nativewifi::MAX_CHAINS); ++i) {
        if (bss.chains[i]) {
            levels.chains |= 1U << i;
            levels.levels[i] = level + *bss.chains[i];
        }
    }
    return levels;
}

// An empty block says that the driver reports no chain.
View::Answer chains(Bytes block) {
    return block.empty() ? View::Answer{ERROR_NOT_SUPPORTED} : plain(std::move(block));
}

} // namespace

bool Interface::*flagOf(DWORD opcode) {
    switch (opcode) {
    case wlan_intf_opcode_autoconf_enabled:
        return &Interface::autoconf;
    case wlan_intf_opcode_background_scan_enabled:
        return &Interface::backgroundScan;
    case wlan_intf_opcode_media_streaming_mode:
        return &Interface::mediaStreaming;
    default:
        return nullptr;
    }
}

void overwrite(Bytes& block, std::size_t offset, DWORD value) {
    if (offset + sizeof value <= block.size()) {
        place(block, offset, value);
    }
}

bool View::radioOff() const {
    return !m_facts.phys.empty() && std::all_of(m_facts.phys.begin(), m_facts.phys.end(), isOff);
}

std::int32_t View::state() const {
    const bool online = m_facts.connection && !radioOff();
    return m_facts.state.value_or(online ? wlan_interface_state_connected
                                         : wlan_interface_state_disconnected);
}

bool View::connected() const {
    const std::int32_t now = state();
    return m_facts.connection && !radioOff() &&
           (now == wlan_interface_state_connected ||
            now == wlan_interface_state_ad_hoc_network_formed);
}

WLAN_INTERFACE_INFO View::info(const GUID& guid) const {
    WLAN_INTERFACE_INFO info{};
    info.InterfaceGuid = guid;
    copyText(info.strInterfaceDescription, m_facts.description);
    info.isState = static_cast<WLAN_INTERFACE_STATE>(state());
    return info;
}

bool View::visible(const AccessPoint& accessPoint) const {
    if ((accessPoint.from && m_elapsed < *accessPoint.from) ||
        (accessPoint.to && m_elapsed >= *accessPoint.to)) {
        return false;
    }
    const bool scanned = m_endedScans >= accessPoint.scans;
    return accessPoint.visible == Visible::ALWAYS ||
           scanned == (accessPoint.visible == Visible::AFTER_SCAN);
}

std::uint32_t View::signal(const AccessPoint& accessPoint) const {
    return accessPoint.signal.at(m_elapsed);
}

const AccessPoint* View::named(const std::string& ssid) const {
    const auto found =
        std::find_if(m_facts.accessPoints.begin(), m_facts.accessPoints.end(),
                     [&ssid](const AccessPoint& accessPoint) { return accessPoint.ssid == ssid; });
    return found == m_facts.accessPoints.end() ? nullptr : &*found;
}

std::string View::connectedProfile() const {
    if (m_facts.connection->profile) {
        return *m_facts.connection->profile;
    }
    for (const AccessPoint& accessPoint : m_facts.accessPoints) {
        if (accessPoint.ssid == m_facts.connection->ssid && !accessPoint.profile.empty()) {
            return accessPoint.profile;
        }
    }
    return {};
}

std::uint32_t View::connectionQuality() const {
    if (m_facts.connection->quality) {
        return m_facts.connection->quality->at(m_elapsed);
    }
    const AccessPoint* const accessPoint = named(m_facts.connection->ssid);
    return accessPoint == nullptr ? 0 : signal(*accessPoint);
}

WLAN_AVAILABLE_NETWORK View::network(const AccessPoint& accessPoint) const {
    WLAN_AVAILABLE_NETWORK network{};
    copyText(network.strProfileName, accessPoint.profile);
    network.dot11Ssid = shownSsid(accessPoint);
    network.dot11BssType = static_cast<DOT11_BSS_TYPE>(accessPoint.bssType);
    const std::size_t ownBssids = accessPoint.bss ? accessPoint.bss->size() : 1;
    network.uNumberOfBssids =
        accessPoint.bssidCount.value_or(static_cast<std::uint32_t>(ownBssids));
    network.bNetworkConnectable = accessPoint.connectable ? TRUE : FALSE;
    network.wlanNotConnectableReason = accessPoint.connectable ? 0 : accessPoint.reason;
    const std::size_t phyTypes =
        std::min<std::size_t>(accessPoint.phyTypes.size(), WLAN_MAX_PHY_TYPE_NUMBER);
    network.uNumberOfPhyTypes = static_cast<ULONG>(phyTypes);
    for (std::size_t i = 0; i < phyTypes; ++i) {
        network.dot11PhyTypes[i] = static_cast<DOT11_PHY_TYPE>(accessPoint.phyTypes[i]);
    }
    network.bMorePhyTypes = accessPoint.phyTypes.size() > phyTypes ? TRUE : FALSE;
    network.wlanSignalQuality = signal(accessPoint);
    network.bSecurityEnabled = accessPoint.secured ? TRUE : FALSE;
    network.dot11DefaultAuthAlgorithm = static_cast<DOT11_AUTH_ALGORITHM>(accessPoint.auth);
    network.dot11DefaultCipherAlgorithm = static_cast<DOT11_CIPHER_ALGORITHM>(accessPoint.cipher);
    const bool ours = connected() && !accessPoint.ssid.empty() &&
                      accessPoint.ssid == m_facts.connection->ssid &&
                      accessPoint.profile == connectedProfile();
    if (accessPoint.connected.value_or(ours)) {
        network.dwFlags |= WLAN_AVAILABLE_NETWORK_CONNECTED;
    }
    if (!accessPoint.profile.empty()) {
        network.dwFlags |= WLAN_AVAILABLE_NETWORK_HAS_PROFILE;
    }
    return network;
}

Bytes View::networkList() const {
    std::vector<WLAN_AVAILABLE_NETWORK> networks;
    for (const AccessPoint& accessPoint : m_facts.accessPoints) {
        if (accessPoint.inNetworkList && visible(accessPoint)) {
            networks.push_back(network(accessPoint));
        }
    }
    return listBlock(offsetof(WLAN_AVAILABLE_NETWORK_LIST, dwNumberOfItems),
                     offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network), networks);
}

// When the adapter heard the BSS for the last time.
Milliseconds View::lastHeard(const Bss& bss) const {
    const Milliseconds until = std::min(m_elapsed, bss.heardUntil.value_or(m_elapsed));
    return bss.heardEvery.count() == 0 ? until : countOf(until, bss.heardEvery) * bss.heardEvery;
}

WLAN_BSS_ENTRY View::bssEntry(const AccessPoint& accessPoint, std::size_t place, const Bss& bss,
                              std::size_t number) const {
    WLAN_BSS_ENTRY entry{};
    entry.dot11Ssid = shownSsid(accessPoint);
    if (bss.bssid.empty()) {
        // Locally administered, and different for each radio of a scenario.
        const std::uint8_t madeUp[] = {0x02,
                                       0x00,
                                       static_cast<std::uint8_t>(m_index),
                                       static_cast<std::uint8_t>(place >> 8U),
                                       static_cast<std::uint8_t>(place),
                                       static_cast<std::uint8_t>(number)};
        std::copy(std::begin(madeUp), std::end(madeUp), entry.dot11Bssid);
    } else {
        std::copy_n(bss.bssid.begin(), std::min(bss.bssid.size(), sizeof entry.dot11Bssid),
                    entry.dot11Bssid);
    }
    entry.dot11BssType = static_cast<DOT11_BSS_TYPE>(accessPoint.bssType);
    entry.dot11BssPhyType = static_cast<DOT11_PHY_TYPE>(bss.phyType);
    const Milliseconds heard = lastHeard(bss);
    entry.uLinkQuality =
        bss.linkQuality ? bss.linkQuality->at(heard) : accessPoint.signal.at(heard);
    entry.lRssi = bss.rssi ? bss.rssi->at(heard) : levelOfQuality(entry.uLinkQuality);
    entry.bInRegDomain = 1;
    entry.usBeaconPeriod = 100;
    entry.ullTimestamp = static_cast<ULONGLONG>(heard.count()) * 1000;
    entry.ullHostTimestamp = static_cast<ULONGLONG>(heard.count()) * 10000;
    entry.usCapabilityInformation = static_cast<USHORT>(
        (accessPoint.bssType == dot11_BSS_type_independent ? CAPABILITY_IBSS : CAPABILITY_ESS) |
        (accessPoint.secured ? CAPABILITY_PRIVACY : 0));
    entry.ulChCenterFrequency = centreFrequency(bss.channel);
    // 6, 12 and 24 Mbit/s as mandatory rates, in units of 500 kbit/s with the top bit set.
    const USHORT rates[] = {0x800C, 0x8018, 0x8030};
    entry.wlanRateSet.uRateSetLength = sizeof rates;
    std::copy(std::begin(rates), std::end(rates), entry.wlanRateSet.usRateSet);
    return entry;
}

std::vector<View::HeardBss> View::heardBss(const std::optional<BssFilter>& filter) const {
    std::vector<HeardBss> all;
    for (std::size_t i = 0; i < m_facts.accessPoints.size(); ++i) {
        const AccessPoint& accessPoint = m_facts.accessPoints[i];
        const bool wanted = !filter || (!accessPoint.hidden && accessPoint.ssid == filter->ssid &&
                                        accessPoint.bssType == filter->bssType &&
                                        accessPoint.secured == filter->secured);
        if (!wanted || !visible(accessPoint)) {
            continue;
        }
        const std::vector<Bss> radios = accessPoint.bss.value_or(std::vector<Bss>(1));
        for (std::size_t number = 0; number < radios.size(); ++number) {
            all.push_back(
                {bssEntry(accessPoint, i, radios[number], number), radios[number], &accessPoint});
        }
    }
    return all;
}

Bytes View::bssList(const std::optional<BssFilter>& filter) const {
    const std::vector<HeardBss> entries = heardBss(filter);
    std::vector<std::vector<std::uint8_t>> elements(entries.size());
    std::vector<nativewifi::BssWithElements> stations(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        elements[i] =
            elementsOf(*entries[i].accessPoint, entries[i].bss, entries[i].entry.dot11Ssid);
        stations[i] = {entries[i].entry, elements[i]};
    }
    return nativewifi::bssListBlock(stations);
}

WLAN_CONNECTION_ATTRIBUTES View::connectionAttributes() const {
    const Connection& connection = *m_facts.connection;
    WLAN_CONNECTION_ATTRIBUTES attributes{};
    attributes.isState = static_cast<WLAN_INTERFACE_STATE>(state());
    attributes.wlanConnectionMode = wlan_connection_mode_profile;
    copyText(attributes.strProfileName, connectedProfile());
    WLAN_ASSOCIATION_ATTRIBUTES& association = attributes.wlanAssociationAttributes;
    association.dot11Ssid = toSsid(connection.ssid);
    association.uDot11PhyIndex = connection.phyIndex;
    association.wlanSignalQuality = connectionQuality();
    association.ulRxRate = connection.rxRate;
    association.ulTxRate = connection.txRate;
    const AccessPoint* const accessPoint = named(connection.ssid);
    const AccessPoint& network = accessPoint == nullptr ? AccessPoint{} : *accessPoint;
    const auto position = accessPoint == nullptr ? 0 : accessPoint - m_facts.accessPoints.data();
    const Bss radio = network.bss && !network.bss->empty() ? network.bss->front() : Bss{};
    const WLAN_BSS_ENTRY entry = bssEntry(network, static_cast<std::size_t>(position), radio, 0);
    association.dot11BssType = entry.dot11BssType;
    std::copy(std::begin(entry.dot11Bssid), std::end(entry.dot11Bssid), association.dot11Bssid);
    association.dot11PhyType = entry.dot11BssPhyType;
    attributes.wlanSecurityAttributes.bSecurityEnabled = network.secured ? TRUE : FALSE;
    attributes.wlanSecurityAttributes.dot11AuthAlgorithm =
        static_cast<DOT11_AUTH_ALGORITHM>(network.auth);
    attributes.wlanSecurityAttributes.dot11CipherAlgorithm =
        static_cast<DOT11_CIPHER_ALGORITHM>(network.cipher);
    return attributes;
}

Bytes View::radioState() const {
    WLAN_RADIO_STATE state{};
    const std::size_t count = std::min<std::size_t>(m_facts.phys.size(), WLAN_MAX_PHY_INDEX);
    state.dwNumberOfPhys = static_cast<DWORD>(count);
    for (std::size_t i = 0; i < count; ++i) {
        state.PhyRadioState[i] = {static_cast<DWORD>(i),
                                  static_cast<DOT11_RADIO_STATE>(m_facts.phys[i].software),
                                  static_cast<DOT11_RADIO_STATE>(m_facts.phys[i].hardware)};
    }
    return blockOf(state);
}

Bytes View::statistics() const {
    constexpr std::size_t FIRST = offsetof(WLAN_STATISTICS, PhyCounters);
    Bytes block(FIRST + m_facts.phys.size() * sizeof(WLAN_PHY_FRAME_STATISTICS));
    const Milliseconds heard =
        connected() ? std::min(m_elapsed, m_facts.connection->heardUntil.value_or(m_elapsed))
                    : Milliseconds(0);
    const auto frames = static_cast<ULONGLONG>(heard.count() / 10);
    WLAN_MAC_FRAME_STATISTICS frameCounters{};
    frameCounters.ullTransmittedFrameCount = frames;
    frameCounters.ullReceivedFrameCount = frames * 2;
    frameCounters.ullDecryptSuccessCount = frames * 2;
    place(block, offsetof(WLAN_STATISTICS, MacUcastCounters), frameCounters);
    place(block, offsetof(WLAN_STATISTICS, dwNumberOfPhys),
          static_cast<DWORD>(m_facts.phys.size()));
    for (std::size_t i = 0; i < m_facts.phys.size(); ++i) {
        WLAN_PHY_FRAME_STATISTICS counters{};
        counters.ullTransmittedFrameCount = i == 0 ? frames : 0;
        counters.ullReceivedFrameCount = i == 0 ? frames * 2 : 0;
        place(block, FIRST + i * sizeof counters, counters);
    }
    return block;
}

LONG View::connectionLevel() const {
    return m_facts.rssi ? m_facts.rssi->at(m_elapsed)
                        : levelOfQuality(connected() ? connectionQuality() : 0);
}

Bytes View::linkQualities() const {
    const Connection& connection = *m_facts.connection;
    std::vector<WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO> links;
    const auto add = [&](std::uint32_t channel, LONG level) {
        WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO& link = links.emplace_back();
        const ULONG kHz = centreFrequency(channel);
        link.ucLinkID = static_cast<UCHAR>(links.size() - 1);
        link.ulChannelCenterFrequencyMhz = connection.linkFrequencyInKhz ? kHz : kHz / 1000;
        link.ulBandwidth = 20;
        link.lRssi = level;
    };
    add(connection.channel, connectionLevel());
    for (const Connection::Link& other : connection.otherLinks) {
        add(other.channel, other.rssi);
    }
    Bytes block = listBlock(offsetof(WLAN_REALTIME_CONNECTION_QUALITY, ulNumLinks),
                            offsetof(WLAN_REALTIME_CONNECTION_QUALITY, linksInfo), links);
    using Quality = WLAN_REALTIME_CONNECTION_QUALITY;
    place(block, offsetof(Quality, dot11PhyType),
          static_cast<DWORD>(connectionAttributes().wlanAssociationAttributes.dot11PhyType));
    place(block, offsetof(Quality, ulLinkQuality), connectionQuality());
    place(block, offsetof(Quality, ulRxRate), connection.rxRate);
    place(block, offsetof(Quality, ulTxRate), connection.txRate);
    place(block, offsetof(Quality, bIsMLOConnection), DWORD{links.size() > 1 ? 1U : 0U});
    return block;
}

Bytes View::connectionChains() const {
    const AccessPoint* const network = named(m_facts.connection->ssid);
    if (network == nullptr || !network->bss || network->bss->empty() ||
        network->bss->front().chains.empty()) {
        return {};
    }
    nativewifi::ChainLevels levels =
        chainLevels(network->bss->front(), connectionLevel(),
                    connectionAttributes().wlanAssociationAttributes.dot11Bssid);
    levels.averagedChains = levels.chains;
    std::copy(std::begin(levels.levels), std::end(levels.levels), levels.averages);
    return blockOf(levels);
}

Bytes View::bssChains() const {
    std::vector<nativewifi::ChainLevels> all;
    for (const HeardBss& heard : heardBss({})) {
        if (!heard.bss.chains.empty()) {
            all.push_back(chainLevels(heard.bss, heard.entry.lRssi, heard.entry.dot11Bssid));
        }
    }
    return all.empty() ? Bytes()
                       : listBlock(offsetof(nativewifi::ChainLevelsList, dwNumberOfItems),
                                   offsetof(nativewifi::ChainLevelsList, items), all);
}

View::Answer View::query(DWORD opcode) const {
    if (bool Interface::*const flag = flagOf(opcode)) {
        return plain(blockOf<BOOL>(m_facts.*flag ? TRUE : FALSE));
    }
    switch (opcode) {
    case wlan_intf_opcode_radio_state:
        return counted(radioState(), 0);
    case wlan_intf_opcode_bss_type:
        return plain(blockOf(static_cast<DOT11_BSS_TYPE>(m_facts.bssType)));
    case wlan_intf_opcode_interface_state:
        return plain(blockOf(static_cast<WLAN_INTERFACE_STATE>(state())));
    case wlan_intf_opcode_current_connection:
        if (!connected()) {
            return {ERROR_INVALID_STATE};
        }
        return plain(blockOf(connectionAttributes()));
    case wlan_intf_opcode_channel_number:
        return plain(blockOf<ULONG>(connected() ? m_facts.connection->channel : 0));
    case wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs:
        return counted(pairList(m_facts.infrastructurePairs), 0);
    case wlan_intf_opcode_supported_adhoc_auth_cipher_pairs:
        return counted(pairList(m_facts.adhocPairs), 0);
    case wlan_intf_opcode_supported_country_or_region_string_list:
        return counted(countryList(m_facts.countries), 0);
    case wlan_intf_opcode_current_operation_mode:
        return plain(blockOf<ULONG>(1)); // an extensible station
    case wlan_intf_opcode_statistics:
        return counted(statistics(), offsetof(WLAN_STATISTICS, dwNumberOfPhys));
    case wlan_intf_opcode_rssi:
        return plain(blockOf(connectionLevel()));
    case wlan_intf_opcode_realtime_connection_quality:
        if (!m_facts.connection || !m_facts.connection->links) {
            return {ERROR_INVALID_PARAMETER}; // as of a system that does not know the opcode
        }
        return connected() ? plain(linkQualities()) : Answer{ERROR_INVALID_STATE};
    case nativewifi::wlan_intf_opcode_connection_chains:
        return connected() ? chains(connectionChains()) : Answer{ERROR_INVALID_STATE};
    case nativewifi::wlan_intf_opcode_bss_chains:
        return chains(bssChains());
    case nativewifi::wlan_intf_opcode_receive_antennas:
        return m_facts.receiveAntennas ? plain(blockOf<ULONG>(*m_facts.receiveAntennas))
                                       : Answer{ERROR_NOT_SUPPORTED};
    default:
        return {ERROR_INVALID_PARAMETER};
    }
}

} // namespace radiosim
