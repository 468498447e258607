// The one way to the Native Wifi client interface and to the GUID conversions that go with it.
//
// The functions are called through a table, made from one list, so that a program can run against
// a simulated radio environment without a change: product code calls api(), tests put a table of
// their own in force with ScopedApi.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/Types.h>

// X(result, name, arguments): the client functions of Wlanapi.dll that are used here.
// Results are ERROR_SUCCESS or a Windows error code; the public documentation of each function
// names its codes. What a call hands out in a pointer is freed with WlanFreeMemory.
#define NATIVEWIFI_WLAN_FUNCTIONS(X)                                                               \
    X(DWORD, WlanOpenHandle,                                                                       \
      (DWORD clientVersion, PVOID reserved, DWORD * negotiatedVersion, HANDLE * clientHandle))     \
    X(DWORD, WlanCloseHandle, (HANDLE clientHandle, PVOID reserved))                               \
    X(DWORD, WlanEnumInterfaces,                                                                   \
      (HANDLE clientHandle, PVOID reserved, WLAN_INTERFACE_INFO_LIST * *interfaceList))            \
    X(DWORD, WlanQueryInterface,                                                                   \
      (HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode, PVOID reserved,    \
       DWORD* dataSize, PVOID* data, WLAN_OPCODE_VALUE_TYPE* valueType))                           \
    X(DWORD, WlanSetInterface,                                                                     \
      (HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode, DWORD dataSize,    \
       const PVOID data, PVOID reserved))                                                          \
    X(DWORD, WlanRegisterNotification,                                                             \
      (HANDLE clientHandle, DWORD source, BOOL ignoreDuplicate,                                    \
       WLAN_NOTIFICATION_CALLBACK callback, PVOID context, PVOID reserved,                         \
       DWORD * previousSource))                                                                    \
    X(DWORD, WlanGetAvailableNetworkList,                                                          \
      (HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags, PVOID reserved,                \
       WLAN_AVAILABLE_NETWORK_LIST** networkList))                                                 \
    X(DWORD, WlanReasonCodeToString,                                                               \
      (DWORD reasonCode, DWORD bufferSize, WCHAR * buffer, PVOID reserved))                        \
    X(void, WlanFreeMemory, (PVOID memory))                                                        \
    X(DWORD, WlanScan,                                                                             \
      (HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const ssid,                     \
       WLAN_RAW_DATA* const informationElement, PVOID reserved))                                   \
    X(DWORD, WlanGetNetworkBssList,                                                                \
      (HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const ssid,                     \
       DOT11_BSS_TYPE bssType, BOOL securityEnabled, PVOID reserved, WLAN_BSS_LIST** bssList))

// X(result, name, arguments): the conversions of the RPC runtime between a GUID and its text of 36
// characters without braces. A text from UuidToStringW is freed with RpcStringFreeW.
#define NATIVEWIFI_RPC_FUNCTIONS(X)                                                                \
    X(RPC_STATUS, UuidFromStringW, (const mrl::Char* text, GUID* guid))                            \
    X(RPC_STATUS, UuidToStringW, (const GUID* guid, mrl::Char** text))                             \
    X(RPC_STATUS, RpcStringFreeW, (mrl::Char * *text))

namespace nativewifi {

// NOLINTNEXTLINE(bugprone-macro-parentheses): declarations take none
#define NATIVEWIFI_DECLARE_POINTER(result, name, arguments) result(WINAPI* name) arguments;

/// The client functions. A table has no null pointer: what is missing is a function that returns
/// the reason as its error code.
struct WlanFunctions {
    NATIVEWIFI_WLAN_FUNCTIONS(NATIVEWIFI_DECLARE_POINTER)
};

/// The GUID conversions.
struct RpcFunctions {
    NATIVEWIFI_RPC_FUNCTIONS(NATIVEWIFI_DECLARE_POINTER)
};

#undef NATIVEWIFI_DECLARE_POINTER

struct Api : WlanFunctions, RpcFunctions {};

/// The table in force. Without a ScopedApi: the functions of the system directory's Wlanapi.dll,
/// found on the first call. When the DLL or one of its functions is missing, each call of what is
/// missing returns the loader's error code (ERROR_MOD_NOT_FOUND, ERROR_PROC_NOT_FOUND, ...) and
/// WlanFreeMemory does nothing. Any thread.
/// Platform: LoadLibraryExW with the system directory alone, GetProcAddress
const Api& api();

/// The GUID conversions of the platform, for tables that replace the client functions only.
const RpcFunctions& platformRpcFunctions();

/// Puts another table in force for its own lifetime; `table` must outlive it. To be nested
/// properly. Callbacks of the previous table must have ended.
class ScopedApi {
public:
    explicit ScopedApi(const Api& table);
    ScopedApi(const ScopedApi&) = delete;
    ScopedApi& operator=(const ScopedApi&) = delete;
    ~ScopedApi();

private:
    const Api* m_previous;
};

} // namespace nativewifi
