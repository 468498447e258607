// Opening, closing, memory and texts.
#include "Session.h"

#include <mrl/Types.h>

#include <cstring>
#include <string>

using nativewifi::api;
using nativewifi::CLIENT_VERSION;

namespace contract {

namespace {

Finding negotiatesVersion(Session& session) {
    return judge(session.version() == CLIENT_VERSION, {{"version", session.version()}});
}

Finding openFailureWritesNothing(Session& /*session*/) {
    int reserved = 0;
    HANDLE handle = &reserved;
    DWORD version = 0;
    const DWORD result = api().WlanOpenHandle(CLIENT_VERSION, &reserved, &version, &handle);
    const bool good = handle == &reserved || handle == nullptr;
    return judge(result != ERROR_SUCCESS && good, {{"result", result},
                                                   {"handle", handle == nullptr     ? "null"
                                                              : handle == &reserved ? "untouched"
                                                                                    : "written"}});
}

Finding serviceStopped(Session& session) {
    if (session.openResult() == ERROR_SUCCESS) {
        return notObservable({{"reason", "the service runs"}});
    }
    return judge(session.openResult() == ERROR_SERVICE_NOT_ACTIVE,
                 {{"result", session.openResult()}});
}

Finding closedHandleIsRefused(Session& /*session*/) {
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    const DWORD opened = api().WlanOpenHandle(CLIENT_VERSION, nullptr, &version, out(handle));
    const HANDLE closed = handle.get();
    handle.reset();
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
    const DWORD result = api().WlanEnumInterfaces(closed, nullptr, out(list));
    return judge(opened == ERROR_SUCCESS && result == ERROR_INVALID_HANDLE, {{"result", result}});
}

Finding blocksAreSeparate(Session& session) {
    const auto first = session.query<WLAN_INTERFACE_STATE>(wlan_intf_opcode_interface_state);
    const auto second = session.query<WLAN_INTERFACE_STATE>(wlan_intf_opcode_interface_state);
    const bool same = first.block.get() == second.block.get();
    return judge(first.succeeded() && second.succeeded() && first.block && second.block && !same,
                 {{"results", {first.result, second.result}}, {"same", same}});
}

Finding blocksOutliveTheHandle(Session& /*session*/) {
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
    const DWORD opened = api().WlanOpenHandle(CLIENT_VERSION, nullptr, &version, out(handle));
    const DWORD listed = api().WlanEnumInterfaces(handle.get(), nullptr, out(list));
    if (opened != ERROR_SUCCESS || listed != ERROR_SUCCESS || !list) {
        return notObservable({{"open", opened}, {"list", listed}});
    }
    const std::string before(reinterpret_cast<const char*>(list.get()),
                             offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo) +
                                 list->dwNumberOfItems * sizeof(WLAN_INTERFACE_INFO));
    handle.reset();
    const bool same = std::memcmp(before.data(), list.get(), before.size()) == 0;
    return judge(same, {{"bytes", before.size()}, {"same", same}});
}

Finding guidTextHas36Characters(Session& session) {
    nativewifi::RpcText text;
    const RPC_STATUS result = api().UuidToStringW(session.guid(), out(text));
    const std::size_t length = text ? mrl::CharView(text.get()).size() : 0;
    return judge(result == RPC_S_OK && length == 36, {{"result", result}, {"length", length}});
}

Finding reasonTextIsCut(Session& /*session*/) {
    constexpr DWORD REASON = 0x28002;
    constexpr DWORD ROOM = 6;
    WCHAR text[ROOM];
    std::memset(text, 0x55, sizeof text);
    const DWORD result = api().WlanReasonCodeToString(REASON, ROOM, text, nullptr);
    return judge(result == ERROR_SUCCESS && text[ROOM - 1] == 0,
                 {{"result", result}, {"terminated", text[ROOM - 1] == 0}});
}

} // namespace

std::vector<Check> handleChecks() {
    return {
        {"service.stopped", "With the WLAN service stopped, WlanOpenHandle returns 1062.",
         Need::NOTHING, Switches::NOTHING, &serviceStopped},
        {"open.version", "A client of version 2 gets version 2.", Need::CLIENT, Switches::NOTHING,
         &negotiatesVersion},
        {"open.failure-output",
         "A WlanOpenHandle that fails leaves the handle untouched or makes it null.", Need::NOTHING,
         Switches::NOTHING, &openFailureWritesNothing},
        {"close.refused-afterwards", "A closed client handle is refused with error 6.",
         Need::CLIENT, Switches::NOTHING, &closedHandleIsRefused},
        {"memory.separate-blocks", "Each query hands out a block of its own.", Need::ADAPTER,
         Switches::NOTHING, &blocksAreSeparate},
        {"memory.outlives-handle",
         "A block stays as it is, and is freed, after its client handle is closed.", Need::CLIENT,
         Switches::NOTHING, &blocksOutliveTheHandle},
        {"text.guid", "UuidToStringW gives 36 characters without braces.", Need::ADAPTER,
         Switches::NOTHING, &guidTextHas36Characters},
        {"text.reason", "WlanReasonCodeToString cuts a text at the buffer's end and terminates it.",
         Need::CLIENT, Switches::NOTHING, &reasonTextIsCut},
    };
}

} // namespace contract
