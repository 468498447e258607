#include "Loader.h"

#include <mrl/SystemLibrary.h>

namespace nativewifi {

namespace {

// Kept until the process ends: notification threads run inside it.
const mrl::SystemLibrary& wlanLibrary() {
    static const mrl::SystemLibrary library(L"wlanapi.dll");
    return library;
}

// The RPC runtime's own types for texts and GUIDs differ in name only, and lack a const.
// NOLINTBEGIN(cppcoreguidelines-pro-type-const-cast)
RPC_STATUS WINAPI uuidFromString(const mrl::Char* text, GUID* guid) {
    return UuidFromStringW(reinterpret_cast<RPC_WSTR>(const_cast<mrl::Char*>(text)), guid);
}

RPC_STATUS WINAPI uuidToString(const GUID* guid, mrl::Char** text) {
    return UuidToStringW(const_cast<GUID*>(guid), reinterpret_cast<RPC_WSTR*>(text));
}
// NOLINTEND(cppcoreguidelines-pro-type-const-cast)

RPC_STATUS WINAPI rpcStringFree(mrl::Char** text) {
    return RpcStringFreeW(reinterpret_cast<RPC_WSTR*>(text));
}

} // namespace

AnyFunction findWlanFunction(const char* name) {
    return wlanLibrary().find<void()>(name);
}

DWORD missingFunctionError() {
    return wlanLibrary().loaded() ? ERROR_PROC_NOT_FOUND : wlanLibrary().error();
}

const RpcFunctions& platformRpcFunctions() {
    static constexpr RpcFunctions functions{&uuidFromString, &uuidToString, &rpcStringFree};
    return functions;
}

} // namespace nativewifi
