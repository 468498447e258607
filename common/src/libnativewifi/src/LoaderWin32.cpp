// The Native Wifi functions, found in the system directory's Wlanapi.dll on the first call.
// Looked up by name rather than linked: server editions come without the DLL, and the program must
// still start there to say so.
#include "Loader.h"

#include <mrl/SystemLibrary.h>

#include <type_traits>

namespace nativewifi {

namespace {

// Kept until the process ends: notification threads run inside it.
const mrl::SystemLibrary& wlanLibrary() {
    static const mrl::SystemLibrary library(L"wlanapi.dll");
    return library;
}

// Stands for a function that the system does not have.
template <typename Pointer>
struct Missing;
template <typename Result, typename... Arguments>
struct Missing<Result(WINAPI*)(Arguments...)> {
    static Result WINAPI call(Arguments...) {
        if constexpr (!std::is_void_v<Result>) {
            return wlanLibrary().loaded() ? ERROR_PROC_NOT_FOUND : wlanLibrary().error();
        }
    }
};

template <typename Pointer>
void fill(Pointer& slot, const char* name) {
    const auto found = wlanLibrary().find<void()>(name);
    slot = found != nullptr ? reinterpret_cast<Pointer>(found) : &Missing<Pointer>::call;
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

WlanFunctions platformWlanFunctions() {
    WlanFunctions functions{};
#define NATIVEWIFI_FILL(result, name, arguments, errors) fill(functions.name, #name);
    NATIVEWIFI_WLAN_FUNCTIONS(NATIVEWIFI_FILL)
#undef NATIVEWIFI_FILL
    return functions;
}

const RpcFunctions& platformRpcFunctions() {
    static constexpr RpcFunctions functions{&uuidFromString, &uuidToString, &rpcStringFree};
    return functions;
}

} // namespace nativewifi
