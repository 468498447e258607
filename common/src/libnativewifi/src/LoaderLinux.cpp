// The client functions over nl80211, and conversions of GUIDs.
#include "Loader.h"

#include "linux/Table.h"

#include <nativewifi/Guid.h>

#include <algorithm>

namespace nativewifi {

namespace {

RPC_STATUS uuidFromString(const mrl::Char* text, GUID* guid) {
    const std::optional<GUID> parsed = parseGuid(text);
    if (!parsed) {
        return RPC_S_INVALID_STRING_UUID;
    }
    *guid = *parsed;
    return RPC_S_OK;
}

RPC_STATUS uuidToString(const GUID* guid, mrl::Char** text) {
    const mrl::String value = guidText(*guid);
    // Handed over as the system's function does: the caller gives it back to rpcStringFree().
    *text = new mrl::Char[value.length() + 1];
    std::copy_n(value.getUCS2Buffer(), value.length() + 1, *text);
    return RPC_S_OK;
}

RPC_STATUS rpcStringFree(mrl::Char** text) {
    delete[] * text;
    *text = nullptr;
    return RPC_S_OK;
}

} // namespace

WlanFunctions platformWlanFunctions() {
    return linux_radio::table();
}

const RpcFunctions& platformRpcFunctions() {
    static constexpr RpcFunctions functions{&uuidFromString, &uuidToString, &rpcStringFree};
    return functions;
}

} // namespace nativewifi
