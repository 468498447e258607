// The one way to the Native Wifi client interface and to the GUID conversions that go with it.
//
// The functions are called through a table, made from one list, so that a program can run against
// a simulated radio environment without a change: product code calls api(), tests put a table of
// their own in force with ScopedApi.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/Types.h>

// X(result, name, arguments, errors): the client functions of Wlanapi.dll that are used here, each
// with the errors that its documentation names, as NATIVEWIFI_ERROR(code, meaning), which an
// expansion that uses them defines.
//
// A result is ERROR_SUCCESS or an error code. Besides those named, each function but WlanFreeMemory
// can return ERROR_SERVICE_NOT_ACTIVE or an error of the RPC runtime: the service is stopped, or
// stops during the call. On Linux each can also return ERROR_TIMEOUT: the kernel did not answer
// within three seconds. A block that a function hands out is freed with WlanFreeMemory.
// clang-format off
#define NATIVEWIFI_WLAN_FUNCTIONS(X)                                                               \
    X(DWORD, WlanOpenHandle,                                                                       \
      (DWORD clientVersion, PVOID reserved, DWORD* negotiatedVersion, HANDLE* clientHandle),       \
      NATIVEWIFI_ERROR(ERROR_INVALID_PARAMETER, "an output is null, or reserved is not")           \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the client's context")              \
      NATIVEWIFI_ERROR(ERROR_REMOTE_SESSION_LIMIT_EXCEEDED, "too many handles are open"))          \
    X(DWORD, WlanCloseHandle, (HANDLE clientHandle, PVOID reserved),                               \
      NATIVEWIFI_CLIENT_ERRORS)                                                                    \
    X(DWORD, WlanEnumInterfaces,                                                                   \
      (HANDLE clientHandle, PVOID reserved, WLAN_INTERFACE_INFO_LIST** interfaceList),             \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the list"))                         \
    X(DWORD, WlanQueryInterface,                                                                   \
      (HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode, PVOID reserved,    \
       DWORD* dataSize, PVOID* data, WLAN_OPCODE_VALUE_TYPE* valueType),                           \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_ACCESS_DENIED, "the caller may not read this parameter")              \
      NATIVEWIFI_ERROR(ERROR_INVALID_STATE, "current connection: the interface has none")          \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the answer"))                       \
    X(DWORD, WlanSetInterface,                                                                     \
      (HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode, DWORD dataSize,    \
       const PVOID data, PVOID reserved),                                                          \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_ACCESS_DENIED, "the caller may not change this parameter")            \
      NATIVEWIFI_ERROR(ERROR_GEN_FAILURE, "the driver does not support this parameter"))           \
    X(DWORD, WlanRegisterNotification,                                                             \
      (HANDLE clientHandle, DWORD source, BOOL ignoreDuplicate,                                    \
       WLAN_NOTIFICATION_CALLBACK callback, PVOID context, PVOID reserved,                         \
       DWORD* previousSource),                                                                     \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the registration"))                 \
    X(DWORD, WlanGetAvailableNetworkList,                                                          \
      (HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags, PVOID reserved,                \
       WLAN_AVAILABLE_NETWORK_LIST** networkList),                                                 \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_ACCESS_DENIED, "Windows 11 24H2: no access to the location")          \
      NATIVEWIFI_ERROR(ERROR_NDIS_DOT11_POWER_STATE_INVALID, "the radio is off")                   \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the list"))                         \
    X(DWORD, WlanReasonCodeToString,                                                               \
      (DWORD reasonCode, DWORD bufferSize, WCHAR* buffer, PVOID reserved),                         \
      NATIVEWIFI_ERROR(ERROR_INVALID_PARAMETER, "no room for the text, or reserved is not null"))  \
    X(void, WlanFreeMemory, (PVOID memory), )                                                      \
    X(DWORD, WlanScan,                                                                             \
      (HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const ssid,                     \
       WLAN_RAW_DATA* const informationElement, PVOID reserved),                                   \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_ACCESS_DENIED, "Windows 11 24H2: no access to the location")          \
      NATIVEWIFI_ERROR(ERROR_NDIS_DOT11_POWER_STATE_INVALID, "the radio is off")                   \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the request"))                      \
    X(DWORD, WlanGetNetworkBssList,                                                                \
      (HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const ssid,                     \
       DOT11_BSS_TYPE bssType, BOOL securityEnabled, PVOID reserved, WLAN_BSS_LIST** bssList),     \
      NATIVEWIFI_CLIENT_ERRORS                                                                     \
      NATIVEWIFI_ERROR(ERROR_ACCESS_DENIED, "Windows 11 24H2: no access to the location")          \
      NATIVEWIFI_ERROR(ERROR_NDIS_DOT11_POWER_STATE_INVALID, "the radio is off")                   \
      NATIVEWIFI_ERROR(ERROR_NOT_ENOUGH_MEMORY, "no memory for the list")                          \
      NATIVEWIFI_ERROR(ERROR_NOT_FOUND, "there is no such interface")                              \
      NATIVEWIFI_ERROR(ERROR_NOT_SUPPORTED, "the service is disabled")                             \
      NATIVEWIFI_ERROR(ERROR_SERVICE_NOT_ACTIVE, "the service is not running"))

// Of every function with a client handle.
#define NATIVEWIFI_CLIENT_ERRORS                                                                   \
    NATIVEWIFI_ERROR(ERROR_INVALID_PARAMETER, "an argument is wrongly null, or reserved is not")   \
    NATIVEWIFI_ERROR(ERROR_INVALID_HANDLE, "the client handle is unknown to the service")

// The same for the conversions of the RPC runtime between a GUID and its text of 36 characters
// without braces. A text from UuidToStringW is freed with RpcStringFreeW.
#define NATIVEWIFI_RPC_FUNCTIONS(X)                                                                \
    X(RPC_STATUS, UuidFromStringW, (const mrl::Char* text, GUID* guid),                            \
      NATIVEWIFI_ERROR(RPC_S_INVALID_STRING_UUID, "the text is no GUID"))                          \
    X(RPC_STATUS, UuidToStringW, (const GUID* guid, mrl::Char** text),                             \
      NATIVEWIFI_ERROR(RPC_S_OUT_OF_MEMORY, "no memory for the text"))                             \
    X(RPC_STATUS, RpcStringFreeW, (mrl::Char** text), )
// clang-format on

namespace nativewifi {

// NOLINTNEXTLINE(bugprone-macro-parentheses): declarations take none
#define NATIVEWIFI_DECLARE_POINTER(result, name, arguments, errors) result(WINAPI* name) arguments;

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

/// The table in force. Without a ScopedApi, on Windows: the functions of the system directory's
/// Wlanapi.dll, found on the first call. When the DLL or one of its functions is missing, each call
/// of what is missing returns the loader's error code (ERROR_MOD_NOT_FOUND, ERROR_PROC_NOT_FOUND,
/// ...) and WlanFreeMemory does nothing. On Linux: the same functions over nl80211; WlanOpenHandle
/// returns ERROR_SERVICE_NOT_ACTIVE when the kernel has no nl80211. Any thread.
/// Platform: LoadLibraryExW with the system directory alone, GetProcAddress; docs/linux.md
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
