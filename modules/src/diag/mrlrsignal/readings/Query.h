// Questions to an interface, as structures.
#pragma once

#include <nativewifi/Api.h>
#include <nativewifi/Handles.h>

namespace readings {

/// Opens a client unless it is open. \return what the system answers
/// Platform: WlanOpenHandle
inline DWORD openClient(nativewifi::ClientHandle& client) {
    DWORD version = 0;
    return client ? DWORD{ERROR_SUCCESS}
                  : nativewifi::api().WlanOpenHandle(nativewifi::CLIENT_VERSION, nullptr, &version,
                                                     out(client));
}

/// What the interface answers.
/// \return null for a failure, and for a block shorter than `least` bytes
/// Platform: WlanQueryInterface
template <typename Structure>
nativewifi::WlanMemory<Structure> query(HANDLE client, const GUID& guid, WLAN_INTF_OPCODE opcode,
                                        std::size_t least = sizeof(Structure)) {
    nativewifi::WlanMemory<Structure> block;
    DWORD size = 0;
    void* data = nullptr;
    const DWORD result =
        nativewifi::api().WlanQueryInterface(client, &guid, opcode, nullptr, &size, &data, nullptr);
    if (result == ERROR_SUCCESS) {
        *out(block) = static_cast<Structure*>(data);
        if (size < least) {
            block.reset();
        }
    }
    return block;
}

} // namespace readings
