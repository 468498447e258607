// The functions of the table: each writes down what is asked, passes the call on or has it
// answered, and knows which outputs the function has.
#include "Blocks.h"
#include "Exchange.h"

#include <capture/Arguments.h>

#include <nativewifi/Ssid.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <atomic>

namespace capture {

namespace {

using mrl::Json;
using nativewifi::Api;

constinit std::atomic<Exchange*> g_current{nullptr};

Json ssid(const DOT11_SSID* value) {
    if (value == nullptr) {
        return nullptr;
    }
    return mrl::toUtf8(nativewifi::ssidText(*value).view());
}

template <typename Target, typename Value>
void put(Target* target, const Value& value) {
    if (target != nullptr && value) {
        *target = static_cast<Target>(*value);
    }
}

// \param pass calls the function behind, and returns its outputs
// \param apply writes a replayed answer to the caller
template <typename Pass, typename Apply>
DWORD served(const char* function, Json arguments, Pass pass, Apply apply) {
    Exchange& exchange = *g_current.load(std::memory_order_acquire);
    const Answer answer = exchange.serve({function, std::move(arguments)},
                                         [&](const Api& behind) { return pass(behind, exchange); });
    if (exchange.replays()) {
        apply(answer, exchange);
    }
    return answer.result;
}

Json handleName(HANDLE handle) {
    return g_current.load(std::memory_order_acquire)->handles.nameOf(handle);
}

// The block that a function left at `block`; `bytes` reads one that is there.
template <typename Bytes>
Block blockAt(Exchange& exchange, const void* block, Bytes bytes) {
    if (block == nullptr) {
        return {};
    }
    return {exchange.blocks.add(block), bytes()};
}

template <typename List>
Block listBlock(Exchange& exchange, const char* function, List* list) {
    return blockAt(exchange, list, [&] { return listAt(*listShapeOf(function), list); });
}

template <typename List>
void putBlock(List** target, const Answer& answer, Exchange& exchange) {
    if (target != nullptr && answer.block) {
        *target = static_cast<List*>(exchange.blockOf(*answer.block));
    }
}

DWORD WINAPI openHandle(DWORD clientVersion, PVOID reserved, DWORD* negotiatedVersion,
                        HANDLE* clientHandle) {
    return served(
        "WlanOpenHandle", {{"clientVersion", clientVersion}, {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange& exchange) {
            Answer answer{
                behind.WlanOpenHandle(clientVersion, reserved, negotiatedVersion, clientHandle)};
            if (answer.result == ERROR_SUCCESS) {
                answer.version = *negotiatedVersion;
                answer.handle = exchange.handles.add(*clientHandle);
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) {
            put(negotiatedVersion, answer.version);
            if (clientHandle != nullptr && answer.handle) {
                *clientHandle = exchange.handleNamed(*answer.handle);
            }
        });
}

DWORD WINAPI closeHandle(HANDLE clientHandle, PVOID reserved) {
    return served(
        "WlanCloseHandle", {{"handle", handleName(clientHandle)}, {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange&) {
            return Answer{behind.WlanCloseHandle(clientHandle, reserved)};
        },
        [&](const Answer& answer, Exchange& exchange) {
            if (answer.result == ERROR_SUCCESS) {
                exchange.release(clientHandle);
            }
        });
}

DWORD WINAPI enumInterfaces(HANDLE clientHandle, PVOID reserved,
                            WLAN_INTERFACE_INFO_LIST** interfaceList) {
    constexpr const char* FUNCTION = "WlanEnumInterfaces";
    return served(
        FUNCTION, {{"handle", handleName(clientHandle)}, {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange& exchange) {
            Answer answer{behind.WlanEnumInterfaces(clientHandle, reserved, interfaceList)};
            if (answer.result == ERROR_SUCCESS) {
                answer.block = listBlock(exchange, FUNCTION, *interfaceList);
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) {
            putBlock(interfaceList, answer, exchange);
        });
}

DWORD WINAPI queryInterface(HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode,
                            PVOID reserved, DWORD* dataSize, PVOID* data,
                            WLAN_OPCODE_VALUE_TYPE* valueType) {
    return served(
        "WlanQueryInterface",
        {{"handle", handleName(clientHandle)},
         {"interface", guid(interfaceGuid)},
         {"opcode", static_cast<DWORD>(opcode)},
         {"reserved", pointer(reserved)},
         {"valueType", pointer(valueType)}},
        [&](const Api& behind, Exchange& exchange) {
            Answer answer{behind.WlanQueryInterface(clientHandle, interfaceGuid, opcode, reserved,
                                                    dataSize, data, valueType)};
            if (answer.result != ERROR_SUCCESS) {
                return answer;
            }
            const std::size_t size = std::min<std::size_t>(*dataSize, LARGEST_BLOCK);
            answer.block = blockAt(exchange, *data, [&] {
                const auto* const bytes = static_cast<const unsigned char*>(*data);
                return Bytes(bytes, bytes + size);
            });
            answer.dataSize = *data == nullptr ? *dataSize : static_cast<DWORD>(size);
            if (valueType != nullptr) {
                answer.valueType = static_cast<std::int32_t>(*valueType);
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) {
            put(dataSize, answer.dataSize);
            put(valueType, answer.valueType);
            putBlock(data, answer, exchange);
        });
}

DWORD WINAPI setInterface(HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode,
                          DWORD dataSize, const PVOID data, PVOID reserved) {
    Json arguments{{"handle", handleName(clientHandle)},
                   {"interface", guid(interfaceGuid)},
                   {"opcode", static_cast<DWORD>(opcode)},
                   {"dataSize", dataSize},
                   {"reserved", pointer(reserved)}};
    if (opcode == wlan_intf_opcode_radio_state && data != nullptr &&
        dataSize == sizeof(WLAN_PHY_RADIO_STATE)) {
        const auto& state = *static_cast<const WLAN_PHY_RADIO_STATE*>(data);
        arguments["phy"] = state.dwPhyIndex;
        arguments["software"] = static_cast<std::int32_t>(state.dot11SoftwareRadioState);
    } else {
        arguments["data"] = pointer(data);
    }
    return served(
        "WlanSetInterface", std::move(arguments),
        [&](const Api& behind, Exchange&) {
            return Answer{behind.WlanSetInterface(clientHandle, interfaceGuid, opcode, dataSize,
                                                  data, reserved)};
        },
        [](const Answer&, Exchange&) {});
}

DWORD WINAPI registerNotification(HANDLE clientHandle, DWORD source, BOOL ignoreDuplicate,
                                  WLAN_NOTIFICATION_CALLBACK callback, PVOID context,
                                  PVOID reserved, DWORD* previousSource) {
    const Json client = handleName(clientHandle);
    const Registration given{source, callback, context};
    return served(
        "WlanRegisterNotification",
        registrationArguments(client, source, ignoreDuplicate, callback, context, reserved,
                              previousSource),
        [&](const Api& behind, Exchange& exchange) {
            const Registration ours = exchange.registering(client, given);
            Answer answer{behind.WlanRegisterNotification(clientHandle, source, ignoreDuplicate,
                                                          ours.callback, ours.context, reserved,
                                                          previousSource)};
            if (answer.result == ERROR_SUCCESS && previousSource != nullptr) {
                answer.previousSource = *previousSource;
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) {
            put(previousSource, answer.previousSource);
            if (answer.result == ERROR_SUCCESS) {
                exchange.registering(client, given);
            }
        });
}

DWORD WINAPI getAvailableNetworkList(HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags,
                                     PVOID reserved, WLAN_AVAILABLE_NETWORK_LIST** networkList) {
    constexpr const char* FUNCTION = "WlanGetAvailableNetworkList";
    return served(
        FUNCTION,
        {{"handle", handleName(clientHandle)},
         {"interface", guid(interfaceGuid)},
         {"flags", flags},
         {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange& exchange) {
            Answer answer{behind.WlanGetAvailableNetworkList(clientHandle, interfaceGuid, flags,
                                                             reserved, networkList)};
            if (answer.result == ERROR_SUCCESS) {
                answer.block = listBlock(exchange, FUNCTION, *networkList);
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) { putBlock(networkList, answer, exchange); });
}

DWORD WINAPI reasonCodeToString(DWORD reasonCode, DWORD bufferSize, WCHAR* buffer, PVOID reserved) {
    return served(
        "WlanReasonCodeToString",
        {{"reasonCode", reasonCode}, {"bufferSize", bufferSize}, {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange&) {
            Answer answer{behind.WlanReasonCodeToString(reasonCode, bufferSize, buffer, reserved)};
            if (answer.result == ERROR_SUCCESS) {
                const mrl::CharView written(buffer, bufferSize);
                answer.text = mrl::toUtf8(written.substr(0, written.find(mrl::Char(0))));
            }
            return answer;
        },
        [&](const Answer& answer, Exchange&) {
            if (buffer == nullptr || bufferSize == 0 || !answer.text) {
                return;
            }
            const mrl::CharString written = mrl::toUtf16(*answer.text);
            const std::size_t length = std::min<std::size_t>(written.size(), bufferSize - 1);
            std::copy_n(written.data(), length, buffer);
            buffer[length] = 0;
        });
}

void WINAPI freeMemory(PVOID memory) {
    Exchange& current = *g_current.load(std::memory_order_acquire);
    const Json name = current.blocks.nameOf(memory);
    served(
        "WlanFreeMemory", {{"memory", name}},
        [&](const Api& behind, Exchange& exchange) {
            // Before the block is gone: another thread may get one at its address at once.
            exchange.blocks.remove(memory);
            behind.WlanFreeMemory(memory);
            return Answer{};
        },
        [&](const Answer&, Exchange& exchange) {
            exchange.blocks.remove(memory);
            exchange.release(memory);
        });
}

DWORD WINAPI scan(HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const name,
                  WLAN_RAW_DATA* const informationElement, PVOID reserved) {
    return served(
        "WlanScan",
        {{"handle", handleName(clientHandle)},
         {"interface", guid(interfaceGuid)},
         {"ssid", ssid(name)},
         {"informationElement", pointer(informationElement)},
         {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange&) {
            return Answer{
                behind.WlanScan(clientHandle, interfaceGuid, name, informationElement, reserved)};
        },
        [](const Answer&, Exchange&) {});
}

DWORD WINAPI getNetworkBssList(HANDLE clientHandle, const GUID* interfaceGuid,
                               DOT11_SSID* const name, DOT11_BSS_TYPE bssType, BOOL securityEnabled,
                               PVOID reserved, WLAN_BSS_LIST** bssList) {
    constexpr const char* FUNCTION = "WlanGetNetworkBssList";
    return served(
        FUNCTION,
        {{"handle", handleName(clientHandle)},
         {"interface", guid(interfaceGuid)},
         {"ssid", ssid(name)},
         {"bssType", static_cast<std::int32_t>(bssType)},
         {"securityEnabled", securityEnabled != FALSE},
         {"reserved", pointer(reserved)}},
        [&](const Api& behind, Exchange& exchange) {
            Answer answer{behind.WlanGetNetworkBssList(clientHandle, interfaceGuid, name, bssType,
                                                       securityEnabled, reserved, bssList)};
            if (answer.result == ERROR_SUCCESS) {
                answer.block = listBlock(exchange, FUNCTION, *bssList);
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) { putBlock(bssList, answer, exchange); });
}

RPC_STATUS WINAPI uuidFromString(const mrl::Char* value, GUID* result) {
    return static_cast<RPC_STATUS>(served(
        "UuidFromStringW", {{"text", text(value)}},
        [&](const Api& behind, Exchange&) {
            Answer answer{static_cast<DWORD>(behind.UuidFromStringW(value, result))};
            if (answer.result == RPC_S_OK) {
                answer.guid = *result;
            }
            return answer;
        },
        [&](const Answer& answer, Exchange&) { put(result, answer.guid); }));
}

RPC_STATUS WINAPI uuidToString(const GUID* value, mrl::Char** result) {
    return static_cast<RPC_STATUS>(served(
        "UuidToStringW", {{"guid", guid(value)}},
        [&](const Api& behind, Exchange&) {
            Answer answer{static_cast<DWORD>(behind.UuidToStringW(value, result))};
            if (answer.result == RPC_S_OK) {
                answer.text = mrl::toUtf8(mrl::CharView(*result));
            }
            return answer;
        },
        [&](const Answer& answer, Exchange& exchange) {
            if (result != nullptr && answer.text) {
                *result = exchange.textOf(*answer.text);
            }
        }));
}

RPC_STATUS WINAPI rpcStringFree(mrl::Char** value) {
    return static_cast<RPC_STATUS>(served(
        "RpcStringFreeW", {{"text", value == nullptr ? Json(nullptr) : text(*value)}},
        [&](const Api& behind, Exchange&) {
            return Answer{static_cast<DWORD>(behind.RpcStringFreeW(value))};
        },
        [&](const Answer&, Exchange& exchange) {
            if (value != nullptr) {
                exchange.release(*value);
                *value = nullptr;
            }
        }));
}

} // namespace

Exchange::~Exchange() = default;

std::string Holdings::add(const void* thing) {
    const std::lock_guard lock(m_mutex);
    return m_names[thing] = m_kind + std::to_string(++m_count);
}

Json Holdings::nameOf(const void* thing) const {
    if (thing == nullptr) {
        return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    const auto found = m_names.find(thing);
    return found == m_names.end() ? "?" : found->second;
}

void Holdings::remove(const void* thing) {
    const std::lock_guard lock(m_mutex);
    m_names.erase(thing);
}

const Api& exchangeTable() {
    static const Api table = [] {
        Api functions{};
        functions.WlanOpenHandle = &openHandle;
        functions.WlanCloseHandle = &closeHandle;
        functions.WlanEnumInterfaces = &enumInterfaces;
        functions.WlanQueryInterface = &queryInterface;
        functions.WlanSetInterface = &setInterface;
        functions.WlanRegisterNotification = &registerNotification;
        functions.WlanGetAvailableNetworkList = &getAvailableNetworkList;
        functions.WlanReasonCodeToString = &reasonCodeToString;
        functions.WlanFreeMemory = &freeMemory;
        functions.WlanScan = &scan;
        functions.WlanGetNetworkBssList = &getNetworkBssList;
        functions.UuidFromStringW = &uuidFromString;
        functions.UuidToStringW = &uuidToString;
        functions.RpcStringFreeW = &rpcStringFree;
        return functions;
    }();
    return table;
}

ScopedExchange::ScopedExchange(Exchange& exchange)
    : m_table((g_current.store(&exchange, std::memory_order_release), exchangeTable())) {}

ScopedExchange::~ScopedExchange() = default;

} // namespace capture
