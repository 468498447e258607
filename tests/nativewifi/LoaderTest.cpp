#include "SystemDll.h"

#include <nativewifi/Api.h>

#include <gtest/gtest.h>

#include <type_traits>

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

// The reasons of all functions, where the platform has none of them.
#ifndef _WIN32

// Calls a function with nothing but zeroes and null pointers.
template <typename Result, typename... Arguments>
DWORD callWithNothing(Result (*function)(Arguments...)) {
    if constexpr (std::is_void_v<Result>) {
        function(Arguments{}...);
        return ERROR_MOD_NOT_FOUND;
    } else {
        return function(Arguments{}...);
    }
}

TEST(MissingLibrary, MakesEachFunctionReturnTheLoadersError) {
#define EXPECT_MISSING(result, name, arguments, errors)                                            \
    EXPECT_EQ(callWithNothing(api().name), ERROR_MOD_NOT_FOUND) << #name;
    NATIVEWIFI_WLAN_FUNCTIONS(EXPECT_MISSING)
#undef EXPECT_MISSING
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
