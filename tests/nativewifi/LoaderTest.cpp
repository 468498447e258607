#include "SystemDll.h"

#include <nativewifi/Api.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

TEST(Table, HasNoNullPointer) {
    const Api& table = api();
#define EXPECT_THERE(result, name, arguments, errors) EXPECT_NE(table.name, nullptr) << #name;
    NATIVEWIFI_WLAN_FUNCTIONS(EXPECT_THERE)
    NATIVEWIFI_RPC_FUNCTIONS(EXPECT_THERE)
#undef EXPECT_THERE
}

TEST(Table, IsTheSameAtEachLook) {
    EXPECT_EQ(&api(), &api());
}

TEST(Table, HasTheGuidConversionsOfThePlatform) {
    EXPECT_EQ(api().UuidFromStringW, platformRpcFunctions().UuidFromStringW);
    EXPECT_EQ(api().UuidToStringW, platformRpcFunctions().UuidToStringW);
    EXPECT_EQ(api().RpcStringFreeW, platformRpcFunctions().RpcStringFreeW);
}

TEST(Table, IsReplacedForALifetimeAndNests) {
    const Api* const system = &api();
    const Api first{};
    const Api second{};
    {
        const ScopedApi outer(first);
        EXPECT_EQ(&api(), &first);
        {
            const ScopedApi inner(second);
            EXPECT_EQ(&api(), &second);
        }
        EXPECT_EQ(&api(), &first);
    }
    EXPECT_EQ(&api(), system);
}

// The reasons of all functions, where the platform has none of them.
#ifndef _WIN32

TEST(MissingLibrary, MakesEachFunctionReturnTheLoadersError) {
    DWORD number = 0;
    HANDLE handle = nullptr;
    GUID guid{};
    PVOID data = nullptr;
    WCHAR buffer[4] = {};
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    WLAN_AVAILABLE_NETWORK_LIST* networks = nullptr;
    WLAN_BSS_LIST* entries = nullptr;
    const Api& table = api();
    EXPECT_EQ(table.WlanOpenHandle(2, nullptr, &number, &handle), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanCloseHandle(nullptr, nullptr), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanEnumInterfaces(nullptr, nullptr, &interfaces), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanQueryInterface(nullptr, &guid, wlan_intf_opcode_radio_state, nullptr,
                                       &number, &data, nullptr),
              ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(
        table.WlanSetInterface(nullptr, &guid, wlan_intf_opcode_radio_state, 0, nullptr, nullptr),
        ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanRegisterNotification(nullptr, 0, TRUE, nullptr, nullptr, nullptr, nullptr),
              ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanGetAvailableNetworkList(nullptr, &guid, 0, nullptr, &networks),
              ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanReasonCodeToString(0, 4, buffer, nullptr), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanScan(nullptr, &guid, nullptr, nullptr, nullptr), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(table.WlanGetNetworkBssList(nullptr, &guid, nullptr, dot11_BSS_type_any, FALSE,
                                          nullptr, &entries),
              ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(number, 0U);
}

TEST(MissingLibrary, FreesNothing) {
    int ours = 41;
    api().WlanFreeMemory(&ours);
    EXPECT_EQ(++ours, 42);
}

#else

TEST(SystemLibrary, IsCalledThroughTheTable) {
    if (!systemDllIsSimulated()) {
        GTEST_FAIL() << "the simulator's wlanapi.dll must stand in the system directory";
    }
    const HMODULE module = GetModuleHandleW(L"Wlanapi.dll");
#define EXPECT_FOUND(result, name, arguments, errors)                                              \
    EXPECT_EQ(reinterpret_cast<void*>(api().name),                                                 \
              reinterpret_cast<void*>(GetProcAddress(module, #name)));
    NATIVEWIFI_WLAN_FUNCTIONS(EXPECT_FOUND)
#undef EXPECT_FOUND
}

#endif

} // namespace
} // namespace nativewifi
