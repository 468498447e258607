// The plain functions of the table: each checks its arguments, asks the client and hands out the
// block. No exception leaves them.
#include "Table.h"

#include "CallError.h"
#include "Service.h"

#include <nativewifi/Reasons.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <span>

namespace nativewifi::linux_radio {

namespace {

constexpr DWORD HIGHEST_VERSION = 2;
constexpr DWORD NETWORK_LIST_FLAGS = 0x3; // ad hoc profiles, hidden profiles

// Returns the code of what `work` throws.
template <typename Work>
DWORD answer(Work work) {
    try {
        work();
        return ERROR_SUCCESS;
    } catch (const CallError& error) {
        return error.code();
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (const std::exception&) {
        return ERROR_GEN_FAILURE;
    }
}

void require(bool argumentsAreGood) {
    if (!argumentsAreGood) {
        throw CallError(ERROR_INVALID_PARAMETER);
    }
}

// The client of a call whose arguments are good.
std::shared_ptr<Client> clientOf(HANDLE handle, bool argumentsAreGood) {
    require(handle != nullptr && argumentsAreGood);
    return Service::current().client(handle);
}

// In memory that WlanFreeMemory frees.
template <typename Item>
void handOut(const Block& block, Item** target) {
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): handed over as a bare pointer
    void* const memory = std::malloc(block.size());
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(memory, block.data(), block.size());
    *target = static_cast<Item*>(memory);
}

DWORD WINAPI openHandle(DWORD clientVersion, PVOID reserved, DWORD* negotiatedVersion,
                        HANDLE* clientHandle) {
    return answer([&] {
        require(reserved == nullptr && negotiatedVersion != nullptr && clientHandle != nullptr &&
                clientVersion != 0);
        *clientHandle = Service::current().open();
        *negotiatedVersion = std::min(clientVersion, HIGHEST_VERSION);
    });
}

DWORD WINAPI closeHandle(HANDLE clientHandle, PVOID reserved) {
    return answer([&] {
        require(clientHandle != nullptr && reserved == nullptr);
        Service::current().close(clientHandle);
    });
}

DWORD WINAPI enumInterfaces(HANDLE clientHandle, PVOID reserved,
                            WLAN_INTERFACE_INFO_LIST** interfaceList) {
    return answer([&] {
        const auto client = clientOf(clientHandle, reserved == nullptr && interfaceList != nullptr);
        handOut(client->interfaceList(), interfaceList);
    });
}

DWORD WINAPI queryInterface(HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode,
                            PVOID reserved, DWORD* dataSize, PVOID* data,
                            WLAN_OPCODE_VALUE_TYPE* valueType) {
    return answer([&] {
        const auto client =
            clientOf(clientHandle, interfaceGuid != nullptr && reserved == nullptr &&
                                       dataSize != nullptr && data != nullptr);
        const Block block = client->query(*interfaceGuid, static_cast<DWORD>(opcode));
        handOut(block, data);
        *dataSize = static_cast<DWORD>(block.size());
        if (valueType != nullptr) {
            *valueType = wlan_opcode_value_type_query_only;
        }
    });
}

DWORD WINAPI setInterface(HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode,
                          DWORD dataSize, const PVOID data, PVOID reserved) {
    return answer([&] {
        const auto client =
            clientOf(clientHandle, interfaceGuid != nullptr && reserved == nullptr &&
                                       dataSize != 0 && data != nullptr);
        client->set(*interfaceGuid, static_cast<DWORD>(opcode),
                    {static_cast<const std::byte*>(data), dataSize});
    });
}

DWORD WINAPI registerNotification(HANDLE clientHandle, DWORD source, BOOL /*ignoreDuplicate*/,
                                  WLAN_NOTIFICATION_CALLBACK callback, PVOID context,
                                  PVOID reserved, DWORD* previousSource) {
    return answer([&] {
        const auto client = clientOf(
            clientHandle, reserved == nullptr &&
                              (source == WLAN_NOTIFICATION_SOURCE_NONE || callback != nullptr));
        const DWORD previous = client->registerNotification({source, callback, context});
        if (previousSource != nullptr) {
            *previousSource = previous;
        }
    });
}

DWORD WINAPI getAvailableNetworkList(HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags,
                                     PVOID reserved, WLAN_AVAILABLE_NETWORK_LIST** networkList) {
    return answer([&] {
        const auto client = clientOf(
            clientHandle, interfaceGuid != nullptr && reserved == nullptr &&
                              networkList != nullptr && (flags & ~NETWORK_LIST_FLAGS) == 0);
        handOut(client->networkList(*interfaceGuid), networkList);
    });
}

DWORD WINAPI reasonCodeToString(DWORD reasonCode, DWORD bufferSize, WCHAR* buffer, PVOID reserved) {
    return answer([&] {
        require(bufferSize != 0 && buffer != nullptr && reserved == nullptr);
        copyReason(reasonCode, bufferSize, buffer);
    });
}

void WINAPI freeMemory(PVOID memory) {
    std::free(memory); // NOLINT(cppcoreguidelines-no-malloc)
}

DWORD WINAPI scan(HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const ssid,
                  WLAN_RAW_DATA* const /*informationElement*/, PVOID reserved) {
    return answer([&] {
        const auto client = clientOf(clientHandle, interfaceGuid != nullptr && reserved == nullptr);
        client->scan(*interfaceGuid, ssid);
    });
}

DWORD WINAPI getNetworkBssList(HANDLE clientHandle, const GUID* interfaceGuid,
                               DOT11_SSID* const ssid, DOT11_BSS_TYPE bssType, BOOL securityEnabled,
                               PVOID reserved, WLAN_BSS_LIST** bssList) {
    return answer([&] {
        const bool ssidIsGood =
            ssid == nullptr ||
            (ssid->uSSIDLength <= DOT11_SSID_MAX_LENGTH &&
             (bssType == dot11_BSS_type_infrastructure || bssType == dot11_BSS_type_independent));
        const auto client =
            clientOf(clientHandle, interfaceGuid != nullptr && reserved == nullptr &&
                                       bssList != nullptr && ssidIsGood);
        handOut(client->bssList(*interfaceGuid, ssid, bssType, securityEnabled != FALSE), bssList);
    });
}

} // namespace

WlanFunctions table() {
    return {.WlanOpenHandle = &openHandle,
            .WlanCloseHandle = &closeHandle,
            .WlanEnumInterfaces = &enumInterfaces,
            .WlanQueryInterface = &queryInterface,
            .WlanSetInterface = &setInterface,
            .WlanRegisterNotification = &registerNotification,
            .WlanGetAvailableNetworkList = &getAvailableNetworkList,
            .WlanReasonCodeToString = &reasonCodeToString,
            .WlanFreeMemory = &freeMemory,
            .WlanScan = &scan,
            .WlanGetNetworkBssList = &getNetworkBssList};
}

} // namespace nativewifi::linux_radio
