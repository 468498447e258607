// A client of the simulated service, with short forms of its calls.
#pragma once

#include <radiosim/Engine.h>

#include <support/VirtualClock.h>

#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>

#include <mrl/Unicode.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace radiosim {

inline std::string ssidText(const DOT11_SSID& ssid) {
    return {ssid.ucSSID, ssid.ucSSID + std::min<ULONG>(ssid.uSSIDLength, DOT11_SSID_MAX_LENGTH)};
}

inline nativewifi::ClientHandle openHandle() {
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    EXPECT_EQ(nativewifi::api().WlanOpenHandle(2, nullptr, &version, out(handle)), ERROR_SUCCESS);
    return handle;
}

inline const GUID& firstInterface() {
    static const GUID first = nativewifi::parseGuid(mrl::toUtf16(FIRST_INTERFACE)).value_or(GUID{});
    return first;
}

/// One engine on a virtual clock, and one open client handle.
class WithEngine : public testing::Test {
protected:
    /// Starts over with another scenario.
    void start(Scenario scenario) {
        m_handle.reset();
        m_engine.reset();
        m_engine = std::make_unique<Engine>(std::move(scenario));
        m_handle = openHandle();
    }

    /// The same with one interface that shows these.
    void show(std::vector<AccessPoint> accessPoints) {
        start({.interfaces = {{.accessPoints = std::move(accessPoints)}}});
    }

    Engine& engine() { return *m_engine; }
    test::VirtualClock& clock() { return m_clock; }
    HANDLE handle() const { return m_handle.get(); }
    static const GUID& guid() { return firstInterface(); }
    void after(Milliseconds time) {
        m_clock.sleep(time);
        m_engine->settle();
    }

    DWORD scan() const {
        return nativewifi::api().WlanScan(handle(), &guid(), nullptr, nullptr, nullptr);
    }

    DWORD list(nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST>& networks) const {
        return nativewifi::api().WlanGetAvailableNetworkList(handle(), &guid(), 0, nullptr,
                                                             out(networks));
    }

    std::vector<WLAN_AVAILABLE_NETWORK> networks() const {
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> block;
        EXPECT_EQ(list(block), ERROR_SUCCESS);
        if (!block) {
            return {};
        }
        return {block->Network, block->Network + block->dwNumberOfItems};
    }

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const WLAN_AVAILABLE_NETWORK& network : networks()) {
            names.push_back(ssidText(network.dot11Ssid));
        }
        return names;
    }

    std::vector<ULONG> qualities() const {
        std::vector<ULONG> qualities;
        for (const WLAN_AVAILABLE_NETWORK& network : networks()) {
            qualities.push_back(network.wlanSignalQuality);
        }
        return qualities;
    }

    DWORD bssList(nativewifi::WlanMemory<WLAN_BSS_LIST>& block, DOT11_SSID* ssid = nullptr,
                  DOT11_BSS_TYPE type = dot11_BSS_type_any, BOOL secured = FALSE) const {
        return nativewifi::api().WlanGetNetworkBssList(handle(), &guid(), ssid, type, secured,
                                                       nullptr, out(block));
    }

    std::vector<WLAN_BSS_ENTRY> bssEntries() const {
        nativewifi::WlanMemory<WLAN_BSS_LIST> block;
        EXPECT_EQ(bssList(block), ERROR_SUCCESS);
        if (!block) {
            return {};
        }
        return {block->wlanBssEntries, block->wlanBssEntries + block->dwNumberOfItems};
    }

    DWORD query(WLAN_INTF_OPCODE opcode, std::vector<unsigned char>& bytes) const {
        DWORD size = 0;
        void* block = nullptr;
        const DWORD result = nativewifi::api().WlanQueryInterface(handle(), &guid(), opcode,
                                                                  nullptr, &size, &block, nullptr);
        const auto* const first = static_cast<const unsigned char*>(block);
        if (first != nullptr) {
            bytes.assign(first, first + size);
        }
        nativewifi::api().WlanFreeMemory(block);
        return result;
    }

    /// The block of an opcode as `Value`, which it must be as long as.
    template <typename Value>
    Value queried(WLAN_INTF_OPCODE opcode) const {
        std::vector<unsigned char> bytes;
        EXPECT_EQ(query(opcode, bytes), ERROR_SUCCESS);
        EXPECT_EQ(bytes.size(), sizeof(Value));
        Value value{};
        std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
        return value;
    }

    DWORD switchRadio(DWORD phy, std::int32_t software) const {
        WLAN_PHY_RADIO_STATE state{phy, static_cast<DOT11_RADIO_STATE>(software),
                                   dot11_radio_state_unknown};
        return nativewifi::api().WlanSetInterface(handle(), &guid(), wlan_intf_opcode_radio_state,
                                                  sizeof state, &state, nullptr);
    }

private:
    test::VirtualClock m_clock;
    std::unique_ptr<Engine> m_engine;
    nativewifi::ClientHandle m_handle;
};

} // namespace radiosim
