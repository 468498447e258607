// The client functions of the Linux table on a kernel in memory, with an open client.
#pragma once

#include "FakeKernel.h"

#include <nativewifi/Handles.h>
#include <nativewifi/LinuxRadio.h>

#include <Service.h>
#include <Table.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// Puts the Linux table in force, on a kernel in memory.
class LinuxRadio {
public:
    LinuxRadio()
        : m_service(m_kernel), m_scopedService(m_service), m_table(wholeTable()), m_api(m_table) {}

    FakeKernel& kernel() { return m_kernel; }
    nativewifi::linux_radio::Service& service() { return m_service; }

private:
    static nativewifi::Api wholeTable() {
        nativewifi::Api table{};
        static_cast<nativewifi::WlanFunctions&>(table) = nativewifi::linux_radio::table();
        static_cast<nativewifi::RpcFunctions&>(table) = nativewifi::platformRpcFunctions();
        return table;
    }

    FakeKernel m_kernel;
    nativewifi::linux_radio::Service m_service;
    nativewifi::linux_radio::ScopedService m_scopedService;
    const nativewifi::Api m_table;
    nativewifi::ScopedApi m_api;
};

/// An access point that is heard.
inline netlink::HeardBss accessPoint(std::string_view name, std::uint8_t number = 1,
                                     std::int32_t mbm = -6000) {
    netlink::HeardBss heard;
    heard.bssid = {2, 0, 0, 0, 0, number};
    heard.signalMbm = mbm;
    heard.elements = netlink::name(name);
    return heard;
}

/// An interface that is connected to "Lab" on channel 6, with WPA2.
inline FakeInterface connectedInterface() {
    FakeInterface interface;
    netlink::HeardBss lab = accessPoint("Lab");
    lab.frequencyMhz = 2437;
    lab.capability = 0x0411;
    lab.status = NL80211_BSS_STATUS_ASSOCIATED;
    lab.elements = netlink::join({netlink::name("Lab"), netlink::rsn()});
    interface.heard = {lab, accessPoint("Yard", 2, -8000)};
    interface.ssid = "Lab";
    interface.frequencyMhz = 2437;
    interface.connection =
        netlink::Parts{netlink::s8(NL80211_STA_INFO_SIGNAL, -61),
                       netlink::chains(NL80211_STA_INFO_CHAIN_SIGNAL, {-62, -70}),
                       netlink::chains(NL80211_STA_INFO_CHAIN_SIGNAL_AVG, {-63, -71}),
                       netlink::nested(NL80211_STA_INFO_RX_BITRATE,
                                       {netlink::u32(NL80211_RATE_INFO_BITRATE32, 1300)}),
                       netlink::nested(NL80211_STA_INFO_TX_BITRATE,
                                       {netlink::u32(NL80211_RATE_INFO_BITRATE32, 1170)}),
                       netlink::u32(NL80211_STA_INFO_RX_PACKETS, 1000),
                       netlink::u32(NL80211_STA_INFO_TX_PACKETS, 700),
                       netlink::u32(NL80211_STA_INFO_TX_RETRIES, 20),
                       netlink::u32(NL80211_STA_INFO_TX_FAILED, 3)};
    return interface;
}

class LinuxRadioTest : public testing::Test {
protected:
    /// With these interfaces, and a client.
    void start(const std::vector<FakeInterface>& interfaces = {FakeInterface{}}) {
        for (const FakeInterface& each : interfaces) {
            kernel().add(each);
        }
        DWORD version = 0;
        ASSERT_EQ(nativewifi::api().WlanOpenHandle(2, nullptr, &version, out(m_client)),
                  ERROR_SUCCESS);
        nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
        ASSERT_EQ(nativewifi::api().WlanEnumInterfaces(client(), nullptr, out(list)),
                  ERROR_SUCCESS);
        ASSERT_EQ(list->dwNumberOfItems, interfaces.size());
        m_guids.clear();
        const WLAN_INTERFACE_INFO* const infos = list->InterfaceInfo;
        for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
            m_guids.push_back(infos[i].InterfaceGuid);
        }
    }

    FakeKernel& kernel() { return m_radio.kernel(); }
    nativewifi::linux_radio::Service& service() { return m_radio.service(); }
    HANDLE client() const { return m_client.get(); }
    nativewifi::ClientHandle& ownedClient() { return m_client; }
    const GUID* guid(std::size_t index = 0) const { return &m_guids.at(index); }

    DWORD enumerate(std::vector<WLAN_INTERFACE_INFO>& infos) const {
        nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
        const DWORD result = nativewifi::api().WlanEnumInterfaces(client(), nullptr, out(list));
        infos.clear();
        if (list) {
            const WLAN_INTERFACE_INFO* const first = list->InterfaceInfo;
            infos.assign(first, first + list->dwNumberOfItems);
        }
        return result;
    }
    DWORD scan(DOT11_SSID* ssid = nullptr) const {
        return nativewifi::api().WlanScan(client(), guid(), ssid, nullptr, nullptr);
    }
    DWORD networks(std::vector<std::string>* names = nullptr) const {
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
        const DWORD result =
            nativewifi::api().WlanGetAvailableNetworkList(client(), guid(), 0, nullptr, out(list));
        if (list && names != nullptr) {
            const WLAN_AVAILABLE_NETWORK* const first = list->Network;
            for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
                names->emplace_back(reinterpret_cast<const char*>(first[i].dot11Ssid.ucSSID),
                                    first[i].dot11Ssid.uSSIDLength);
            }
        }
        return result;
    }
    /// \param heardAt the host timestamp of the first
    DWORD stations(DWORD* count = nullptr, ULONGLONG* heardAt = nullptr) const {
        nativewifi::WlanMemory<WLAN_BSS_LIST> list;
        const DWORD result = nativewifi::api().WlanGetNetworkBssList(
            client(), guid(), nullptr, dot11_BSS_type_any, FALSE, nullptr, out(list));
        if (list && count != nullptr) {
            *count = list->dwNumberOfItems;
        }
        if (list && heardAt != nullptr && list->dwNumberOfItems != 0) {
            *heardAt = list->wlanBssEntries[0].ullHostTimestamp;
        }
        return result;
    }
    /// The answer as a structure; zeroes with a failure.
    template <typename Structure>
    Structure query(WLAN_INTF_OPCODE opcode, DWORD expected = ERROR_SUCCESS) const {
        DWORD size = 0;
        nativewifi::WlanMemory<void> block;
        EXPECT_EQ(nativewifi::api().WlanQueryInterface(client(), guid(), opcode, nullptr, &size,
                                                       out(block), nullptr),
                  expected);
        Structure answer{};
        if (block) {
            EXPECT_EQ(size, sizeof answer);
            std::memcpy(&answer, block.get(), std::min<std::size_t>(size, sizeof answer));
        }
        return answer;
    }
    DWORD resultOf(WLAN_INTF_OPCODE opcode) const {
        DWORD size = 0;
        nativewifi::WlanMemory<void> block;
        return nativewifi::api().WlanQueryInterface(client(), guid(), opcode, nullptr, &size,
                                                    out(block), nullptr);
    }
    template <typename Structure>
    DWORD set(WLAN_INTF_OPCODE opcode, Structure value) const {
        return nativewifi::api().WlanSetInterface(client(), guid(), opcode, sizeof value, &value,
                                                  nullptr);
    }
    DWORD switchRadio(DOT11_RADIO_STATE software, DWORD phy = 0) const {
        return set(wlan_intf_opcode_radio_state,
                   WLAN_PHY_RADIO_STATE{phy, software, dot11_radio_state_unknown});
    }

private:
    LinuxRadio m_radio;
    nativewifi::ClientHandle m_client;
    std::vector<GUID> m_guids;
};

} // namespace test
