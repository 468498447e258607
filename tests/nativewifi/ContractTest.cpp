// The contract of the client functions, tested through nativewifi::api() alone: with the engine
// linked in and, where the system's Wlanapi.dll is the simulator's, with that DLL through the
// loader; on Linux with the table over nl80211, on a kernel in memory. A real Wlanapi.dll could be
// tested in the same way.
#include "SystemDll.h"
#ifndef _WIN32
#include "../linux_radio/LinuxRadioTest.h"
#endif

#include <radiosim/Engine.h>

#include <support/VirtualClock.h>

#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace nativewifi {
namespace {

enum class Provider : std::uint8_t { ENGINE, SYSTEM_DLL, LINUX };

class Contract : public testing::TestWithParam<Provider> {
protected:
    void SetUp() override {
        if (GetParam() == Provider::ENGINE) {
            m_engine = std::make_unique<radiosim::Engine>(radiosim::Scenario::builtIn());
#ifndef _WIN32
        } else if (GetParam() == Provider::LINUX) {
            m_linux = std::make_unique<test::LinuxRadio>();
            m_linux->kernel().add(test::connectedInterface());
#endif
        } else if (!systemDllIsSimulated()) {
            GTEST_FAIL() << "the simulator's wlanapi.dll must stand in the system directory";
        }
        DWORD version = 0;
        ASSERT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(m_handle)), ERROR_SUCCESS);
        WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
        ASSERT_EQ(api().WlanEnumInterfaces(handle(), nullptr, out(interfaces)), ERROR_SUCCESS);
        ASSERT_GE(interfaces->dwNumberOfItems, 1U);
        m_guid = interfaces->InterfaceInfo[0].InterfaceGuid;
    }

    HANDLE handle() const {
        return m_handle.get();
    }
    const GUID* guid() const {
        return &m_guid;
    }
    // The functions without what most calls leave out.
    DWORD query(WLAN_INTF_OPCODE opcode, DWORD* size, PVOID* data,
                WLAN_OPCODE_VALUE_TYPE* type = nullptr) const {
        return api().WlanQueryInterface(handle(), guid(), opcode, nullptr, size, data, type);
    }
    DWORD listNetworks(DWORD flags, WLAN_AVAILABLE_NETWORK_LIST** list) const {
        return api().WlanGetAvailableNetworkList(handle(), guid(), flags, nullptr, list);
    }
    DWORD listBss(DOT11_SSID* ssid, DOT11_BSS_TYPE type, WLAN_BSS_LIST** list) const {
        return api().WlanGetNetworkBssList(handle(), guid(), ssid, type,
                                           ssid == nullptr ? FALSE : TRUE, nullptr, list);
    }
    static DWORD listen(HANDLE handle, DWORD source, WLAN_NOTIFICATION_CALLBACK callback,
                        PVOID reserved = nullptr, DWORD* previous = nullptr) {
        return api().WlanRegisterNotification(handle, source, TRUE, callback, nullptr, reserved,
                                              previous);
    }
    /// A handle that has been closed.
    static HANDLE closedHandle() {
        ClientHandle closed;
        DWORD version = 0;
        EXPECT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(closed)), ERROR_SUCCESS);
        const HANDLE value = closed.get();
        closed.reset();
        return value;
    }

    /// The results of all functions that take a handle, a GUID and a reserved pointer.
    template <typename Check>
    void eachInterfaceFunction(Check check) {
        check("WlanQueryInterface", [](HANDLE handle, const GUID* guid, PVOID reserved) {
            DWORD size = 0;
            PVOID data = nullptr;
            return api().WlanQueryInterface(handle, guid, wlan_intf_opcode_radio_state, reserved,
                                            &size, &data, nullptr);
        });
        check("WlanSetInterface", [](HANDLE handle, const GUID* guid, PVOID reserved) {
            BOOL enabled = TRUE;
            return api().WlanSetInterface(handle, guid, wlan_intf_opcode_autoconf_enabled,
                                          sizeof enabled, &enabled, reserved);
        });
        check("WlanGetAvailableNetworkList", [](HANDLE handle, const GUID* guid, PVOID reserved) {
            WLAN_AVAILABLE_NETWORK_LIST* list = nullptr;
            return api().WlanGetAvailableNetworkList(handle, guid, 0, reserved, &list);
        });
        check("WlanScan", [](HANDLE handle, const GUID* guid, PVOID reserved) {
            return api().WlanScan(handle, guid, nullptr, nullptr, reserved);
        });
        check("WlanGetNetworkBssList", [](HANDLE handle, const GUID* guid, PVOID reserved) {
            WLAN_BSS_LIST* list = nullptr;
            return api().WlanGetNetworkBssList(handle, guid, nullptr, dot11_BSS_type_any, FALSE,
                                               reserved, &list);
        });
    }

private:
    std::unique_ptr<radiosim::Engine> m_engine;
#ifndef _WIN32
    std::unique_ptr<test::LinuxRadio> m_linux;
#endif
    ClientHandle m_handle;
    GUID m_guid{};
};

std::string nameOf(const testing::TestParamInfo<Provider>& provider) {
    constexpr const char* names[] = {"Engine", "SystemDll", "Linux"};
    return names[static_cast<std::size_t>(provider.param)];
}

#ifdef _WIN32
constexpr Provider providers[] = {Provider::ENGINE, Provider::SYSTEM_DLL};
#else
constexpr Provider providers[] = {Provider::ENGINE, Provider::LINUX};
#endif

INSTANTIATE_TEST_SUITE_P(Simulator, Contract, testing::ValuesIn(providers), nameOf);

TEST_P(Contract, OpensAHandleInTheVersionOfTheClient) {
    for (const DWORD wanted : {1U, 2U}) {
        ClientHandle handle;
        DWORD version = 0;
        EXPECT_EQ(api().WlanOpenHandle(wanted, nullptr, &version, out(handle)), ERROR_SUCCESS);
        EXPECT_EQ(version, wanted);
        EXPECT_NE(handle.get(), nullptr);
    }
}

TEST_P(Contract, RefusesToOpenWithWrongArguments) {
    int reserved = 0;
    DWORD version = 77;
    HANDLE handle = &reserved;
    EXPECT_EQ(api().WlanOpenHandle(2, &reserved, &version, &handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanOpenHandle(2, nullptr, nullptr, &handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanOpenHandle(2, nullptr, &version, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanOpenHandle(0, nullptr, &version, &handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(version, 77U) << "a failure writes nothing";
    EXPECT_EQ(handle, &reserved);
}

TEST_P(Contract, ClosesAHandleOnce) {
    ClientHandle second;
    DWORD version = 0;
    ASSERT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(second)), ERROR_SUCCESS);
    int reserved = 0;
    EXPECT_EQ(api().WlanCloseHandle(second.get(), &reserved), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanCloseHandle(second.get(), nullptr), ERROR_SUCCESS);
    EXPECT_EQ(api().WlanCloseHandle(second.get(), nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(api().WlanCloseHandle(nullptr, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_P(Contract, RefusesEachWrongHandleInterfaceAndReservedPointer) {
    const GUID unknown{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    eachInterfaceFunction([&](const char* name, auto call) {
        int reserved = 0;
        EXPECT_EQ(call(closedHandle(), guid(), nullptr), ERROR_INVALID_HANDLE) << name;
        EXPECT_EQ(call(nullptr, guid(), nullptr), ERROR_INVALID_PARAMETER) << name;
        EXPECT_EQ(call(handle(), nullptr, nullptr), ERROR_INVALID_PARAMETER) << name;
        EXPECT_EQ(call(handle(), guid(), &reserved), ERROR_INVALID_PARAMETER) << name;
        EXPECT_EQ(call(handle(), &unknown, nullptr), ERROR_NOT_FOUND) << name;
    });
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    EXPECT_EQ(api().WlanEnumInterfaces(closedHandle(), nullptr, &interfaces), ERROR_INVALID_HANDLE);
    EXPECT_EQ(interfaces, nullptr);
    EXPECT_EQ(listen(closedHandle(), WLAN_NOTIFICATION_SOURCE_NONE, nullptr), ERROR_INVALID_HANDLE);
}

TEST_P(Contract, RefusesWithoutAPlaceForTheResult) {
    DWORD size = 0;
    PVOID data = nullptr;
    EXPECT_EQ(api().WlanEnumInterfaces(handle(), nullptr, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(query(wlan_intf_opcode_radio_state, nullptr, &data), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(query(wlan_intf_opcode_radio_state, &size, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(listNetworks(0, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(listBss(nullptr, dot11_BSS_type_any, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanSetInterface(handle(), guid(), wlan_intf_opcode_radio_state, 12, nullptr,
                                     nullptr),
              ERROR_INVALID_PARAMETER);
}

TEST_P(Contract, RefusesUnknownFlagsOfTheNetworkList) {
    WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    EXPECT_EQ(listNetworks(4, out(list)), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(listNetworks(3, out(list)), ERROR_SUCCESS);
}

TEST_P(Contract, HandsOutNetworksOfPlausibleValues) {
    WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    ASSERT_EQ(listNetworks(0, out(list)), ERROR_SUCCESS);
    EXPECT_EQ(list->dwIndex, 0U);
    const WLAN_AVAILABLE_NETWORK* const networks = list->Network;
    for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
        EXPECT_LE(networks[i].dot11Ssid.uSSIDLength, DOT11_SSID_MAX_LENGTH);
        EXPECT_LE(networks[i].wlanSignalQuality, 100U);
        EXPECT_LE(networks[i].uNumberOfPhyTypes, WLAN_MAX_PHY_TYPE_NUMBER);
        EXPECT_EQ(networks[i].bNetworkConnectable != FALSE,
                  networks[i].wlanNotConnectableReason == 0);
    }
}

TEST_P(Contract, HandsOutABssListOfItsStatedSize) {
    WlanMemory<WLAN_BSS_LIST> list;
    ASSERT_EQ(listBss(nullptr, dot11_BSS_type_any, out(list)), ERROR_SUCCESS);
    EXPECT_GE(list->dwTotalSize, offsetof(WLAN_BSS_LIST, wlanBssEntries) +
                                     list->dwNumberOfItems * sizeof(WLAN_BSS_ENTRY));
    const WLAN_BSS_ENTRY* const entries = list->wlanBssEntries;
    for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
        EXPECT_LE(entries[i].uLinkQuality, 100U);
        EXPECT_LT(entries[i].lRssi, 0);
    }
}

TEST_P(Contract, NeedsATypeWithTheNameOfABss) {
    DOT11_SSID ssid{3, {'L', 'a', 'b'}};
    WlanMemory<WLAN_BSS_LIST> list;
    EXPECT_EQ(listBss(&ssid, dot11_BSS_type_any, out(list)), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(listBss(&ssid, dot11_BSS_type_infrastructure, out(list)), ERROR_SUCCESS);
    ssid.uSSIDLength = 33;
    EXPECT_EQ(listBss(&ssid, dot11_BSS_type_infrastructure, out(list)), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanScan(handle(), guid(), &ssid, nullptr, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_P(Contract, AnswersTheFixedOpcodesInTheirDocumentedSizes) {
    const struct {
        WLAN_INTF_OPCODE opcode;
        DWORD size;
        bool onLinux = true;
    } opcodes[] = {
        {wlan_intf_opcode_autoconf_enabled, 4, false},
        {wlan_intf_opcode_background_scan_enabled, 4, false},
        {wlan_intf_opcode_media_streaming_mode, 4, false},
        {wlan_intf_opcode_radio_state, 772},
        {wlan_intf_opcode_bss_type, 4},
        {wlan_intf_opcode_interface_state, 4},
        {wlan_intf_opcode_channel_number, 4},
        {wlan_intf_opcode_rssi, 4},
        {wlan_intf_opcode_current_operation_mode, 4},
        {wlan_intf_opcode_current_connection, 604},
    };
    for (const auto& [opcode, expected, onLinux] : opcodes) {
        DWORD size = 0;
        PVOID data = nullptr;
        if (GetParam() == Provider::LINUX && !onLinux) {
            EXPECT_EQ(query(opcode, &size, &data), ERROR_NOT_SUPPORTED) << opcode;
            continue;
        }
        EXPECT_EQ(query(opcode, &size, &data), ERROR_SUCCESS) << opcode;
        EXPECT_EQ(size, expected) << opcode;
        EXPECT_NE(data, nullptr) << opcode;
        api().WlanFreeMemory(data);
    }
}

TEST_P(Contract, SaysWhereAValueComesFromWhenAsked) {
    DWORD size = 0;
    PVOID data = nullptr;
    WLAN_OPCODE_VALUE_TYPE type;
    std::memset(&type, 0x55, sizeof type);
    ASSERT_EQ(query(wlan_intf_opcode_bss_type, &size, &data, &type), ERROR_SUCCESS);
    api().WlanFreeMemory(data);
    EXPECT_EQ(type, wlan_opcode_value_type_query_only);
}

TEST_P(Contract, GivesReasonsAsTexts) {
    WCHAR buffer[256];
    std::memset(buffer, 0x55, sizeof buffer);
    EXPECT_EQ(api().WlanReasonCodeToString(0x28002, 256, buffer, nullptr), ERROR_SUCCESS);
    const std::basic_string<WCHAR> whole(buffer);
    EXPECT_GT(whole.size(), 5U);
    EXPECT_EQ(api().WlanReasonCodeToString(0x28002, 6, buffer, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(std::basic_string<WCHAR>(buffer), whole.substr(0, 5)) << "cut, and terminated";
    EXPECT_EQ(api().WlanReasonCodeToString(0xFFFFFFFF, 256, buffer, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(api().WlanReasonCodeToString(0, 0, buffer, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanReasonCodeToString(0, 256, nullptr, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(api().WlanReasonCodeToString(0, 256, buffer, buffer), ERROR_INVALID_PARAMETER);
}

TEST_P(Contract, RegistersAndUnregistersNotifications) {
    const auto callback = [](WLAN_NOTIFICATION_DATA* /*data*/, PVOID /*context*/) {};
    const auto function = static_cast<WLAN_NOTIFICATION_CALLBACK>(callback);
    DWORD previous = 0;
    EXPECT_EQ(listen(handle(), WLAN_NOTIFICATION_SOURCE_ALL, function), ERROR_SUCCESS);
    EXPECT_EQ(listen(handle(), WLAN_NOTIFICATION_SOURCE_NONE, nullptr, nullptr, &previous),
              ERROR_SUCCESS);
    EXPECT_EQ(previous, WLAN_NOTIFICATION_SOURCE_ALL);
    EXPECT_EQ(listen(handle(), WLAN_NOTIFICATION_SOURCE_ALL, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(listen(handle(), WLAN_NOTIFICATION_SOURCE_NONE, nullptr, &previous, nullptr),
              ERROR_INVALID_PARAMETER);
}

TEST_P(Contract, SwitchesTheRadioOffAndOn) {
    const auto switchTo = [this](DOT11_RADIO_STATE software) {
        WLAN_PHY_RADIO_STATE state{0, software, dot11_radio_state_unknown};
        return api().WlanSetInterface(handle(), guid(), wlan_intf_opcode_radio_state, sizeof state,
                                      &state, nullptr);
    };
    WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    ASSERT_EQ(switchTo(dot11_radio_state_off), ERROR_SUCCESS);
    EXPECT_EQ(listNetworks(0, out(list)), ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    DWORD size = 0;
    PVOID data = nullptr;
    EXPECT_EQ(query(wlan_intf_opcode_current_connection, &size, &data), ERROR_INVALID_STATE);
    ASSERT_EQ(switchTo(dot11_radio_state_on), ERROR_SUCCESS);
    EXPECT_EQ(listNetworks(0, out(list)), ERROR_SUCCESS);
}

TEST_P(Contract, FreesNothingForTheNullPointerAndScansAfterwards) {
    api().WlanFreeMemory(nullptr);
    EXPECT_EQ(api().WlanScan(handle(), guid(), nullptr, nullptr, nullptr), ERROR_SUCCESS);
}

TEST_P(Contract, ConvertsGuidsToTextsAndBack) {
    RpcText text;
    ASSERT_EQ(api().UuidToStringW(guid(), out(text)), RPC_S_OK);
    EXPECT_EQ(mrl::String(text.get()), guidText(*guid()));
    GUID back{};
    EXPECT_EQ(api().UuidFromStringW(text.get(), &back), RPC_S_OK);
    EXPECT_TRUE(sameGuid(back, *guid()));
    EXPECT_EQ(api().UuidFromStringW(MRL_TEXT("no GUID"), &back), RPC_S_INVALID_STRING_UUID);
}

} // namespace
} // namespace nativewifi
