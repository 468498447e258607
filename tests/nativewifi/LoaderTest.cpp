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

#ifdef _WIN32

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
