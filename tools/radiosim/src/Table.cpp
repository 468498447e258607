// The plain functions of the table. Each puts its arguments down for the record and goes to the
// engine that lives; without one the service is not running.
#include "EngineImpl.h"

#include <capture/Arguments.h>

#include <nativewifi/Guid.h>

#include <mrl/Unicode.h>

#include <new>

namespace radiosim {

namespace {

using Impl = Engine::Impl;
using Effects = FaultPlan::Effects;
using capture::guid;
using capture::pointer;
using capture::registrationArguments;
using capture::text;

// Each byte as the character of its value: a name need not be UTF-8.
Json ssid(const DOT11_SSID* value) {
    if (value == nullptr) {
        return nullptr;
    }
    mrl::CharString text;
    for (ULONG i = 0; i < value->uSSIDLength && i < DOT11_SSID_MAX_LENGTH; ++i) {
        text.push_back(static_cast<mrl::Char>(value->ucSSID[i]));
    }
    return mrl::toUtf8(text);
}

// Runs `work` with the engine. An exception must not pass into a client that knows of none.
template <typename Work>
DWORD served(Work work) {
    Impl* const engine = Impl::current();
    if (engine == nullptr) {
        return ERROR_SERVICE_NOT_ACTIVE;
    }
    try {
        return work(*engine);
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

DWORD WINAPI openHandle(DWORD clientVersion, PVOID reserved, DWORD* negotiatedVersion,
                        HANDLE* clientHandle) {
    return served([&](Impl& engine) {
        return engine.answer(
            "WlanOpenHandle", {{"clientVersion", clientVersion}, {"reserved", pointer(reserved)}},
            {}, [&](const Effects& effects, Json& output) {
                return engine.openHandle(clientVersion, reserved, negotiatedVersion, clientHandle,
                                         effects, output);
            });
    });
}

DWORD WINAPI closeHandle(HANDLE clientHandle, PVOID reserved) {
    return served([&](Impl& engine) {
        return engine.answer(
            "WlanCloseHandle",
            {{"handle", engine.handleName(clientHandle)}, {"reserved", pointer(reserved)}}, {},
            [&](const Effects&, Json&) { return engine.closeHandle(clientHandle, reserved); });
    });
}

DWORD WINAPI enumInterfaces(HANDLE clientHandle, PVOID reserved,
                            WLAN_INTERFACE_INFO_LIST** interfaceList) {
    return served([&](Impl& engine) {
        return engine.answer(
            "WlanEnumInterfaces",
            {{"handle", engine.handleName(clientHandle)}, {"reserved", pointer(reserved)}}, {},
            [&](const Effects& effects, Json& output) {
                return engine.enumInterfaces(clientHandle, reserved, interfaceList, effects,
                                             output);
            });
    });
}

DWORD WINAPI queryInterface(HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode,
                            PVOID reserved, DWORD* dataSize, PVOID* data,
                            WLAN_OPCODE_VALUE_TYPE* valueType) {
    const auto number = static_cast<DWORD>(opcode);
    return served([&](Impl& engine) {
        return engine.answer("WlanQueryInterface",
                             {{"handle", engine.handleName(clientHandle)},
                              {"interface", guid(interfaceGuid)},
                              {"opcode", number},
                              {"reserved", pointer(reserved)},
                              {"valueType", pointer(valueType)}},
                             number, [&](const Effects& effects, Json& output) {
                                 return engine.queryInterface(clientHandle, interfaceGuid, number,
                                                              reserved, dataSize, data, valueType,
                                                              effects, output);
                             });
    });
}

DWORD WINAPI setInterface(HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode,
                          DWORD dataSize, const PVOID data, PVOID reserved) {
    const auto number = static_cast<DWORD>(opcode);
    return served([&](Impl& engine) {
        Json arguments{{"handle", engine.handleName(clientHandle)},
                       {"interface", guid(interfaceGuid)},
                       {"opcode", number},
                       {"dataSize", dataSize}};
        if (number == wlan_intf_opcode_radio_state && data != nullptr &&
            dataSize == sizeof(WLAN_PHY_RADIO_STATE)) {
            const auto& state = *static_cast<const WLAN_PHY_RADIO_STATE*>(data);
            arguments["phy"] = state.dwPhyIndex;
            arguments["software"] = static_cast<std::int32_t>(state.dot11SoftwareRadioState);
            arguments["hardware"] = static_cast<std::int32_t>(state.dot11HardwareRadioState);
        } else {
            arguments["data"] = pointer(data);
        }
        arguments["reserved"] = pointer(reserved);
        return engine.answer("WlanSetInterface", arguments, number, [&](const Effects&, Json&) {
            return engine.setInterface(clientHandle, interfaceGuid, number, dataSize, data,
                                       reserved);
        });
    });
}

DWORD WINAPI registerNotification(HANDLE clientHandle, DWORD source, BOOL ignoreDuplicate,
                                  WLAN_NOTIFICATION_CALLBACK callback, PVOID context,
                                  PVOID reserved, DWORD* previousSource) {
    return served([&](Impl& engine) {
        return engine.answer(
            "WlanRegisterNotification",
            registrationArguments(engine.handleName(clientHandle), source, ignoreDuplicate,
                                  callback, context, reserved, previousSource),
            {}, [&](const Effects&, Json& output) {
                return engine.registerNotification(clientHandle, source, callback, context,
                                                   reserved, previousSource, output);
            });
    });
}

DWORD WINAPI getAvailableNetworkList(HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags,
                                     PVOID reserved, WLAN_AVAILABLE_NETWORK_LIST** networkList) {
    return served([&](Impl& engine) {
        return engine.answer("WlanGetAvailableNetworkList",
                             {{"handle", engine.handleName(clientHandle)},
                              {"interface", guid(interfaceGuid)},
                              {"flags", flags},
                              {"reserved", pointer(reserved)}},
                             {}, [&](const Effects& effects, Json& output) {
                                 return engine.networkList(clientHandle, interfaceGuid, flags,
                                                           reserved, networkList, effects, output);
                             });
    });
}

DWORD WINAPI reasonCodeToString(DWORD reasonCode, DWORD bufferSize, WCHAR* buffer, PVOID reserved) {
    return served([&](Impl& engine) {
        return engine.answer("WlanReasonCodeToString",
                             {{"reasonCode", reasonCode},
                              {"bufferSize", bufferSize},
                              {"reserved", pointer(reserved)}},
                             {}, [&](const Effects&, Json& output) {
                                 return Impl::reasonToString(reasonCode, bufferSize, buffer,
                                                             reserved, output);
                             });
    });
}

void WINAPI freeMemory(PVOID memory) {
    served([&](Impl& engine) {
        return engine.answer("WlanFreeMemory", {{"memory", pointer(memory)}}, {},
                             [&](const Effects&, Json&) {
                                 engine.freeMemory(memory);
                                 return DWORD{ERROR_SUCCESS};
                             });
    });
}

DWORD WINAPI scan(HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* const name,
                  WLAN_RAW_DATA* const informationElement, PVOID reserved) {
    return served([&](Impl& engine) {
        return engine.answer("WlanScan",
                             {{"handle", engine.handleName(clientHandle)},
                              {"interface", guid(interfaceGuid)},
                              {"ssid", ssid(name)},
                              {"informationElement", pointer(informationElement)},
                              {"reserved", pointer(reserved)}},
                             {}, [&](const Effects&, Json&) {
                                 return engine.scan(clientHandle, interfaceGuid, name, reserved);
                             });
    });
}

DWORD WINAPI getNetworkBssList(HANDLE clientHandle, const GUID* interfaceGuid,
                               DOT11_SSID* const name, DOT11_BSS_TYPE bssType, BOOL securityEnabled,
                               PVOID reserved, WLAN_BSS_LIST** bssList) {
    return served([&](Impl& engine) {
        return engine.answer("WlanGetNetworkBssList",
                             {{"handle", engine.handleName(clientHandle)},
                              {"interface", guid(interfaceGuid)},
                              {"ssid", ssid(name)},
                              {"bssType", static_cast<std::int32_t>(bssType)},
                              {"securityEnabled", securityEnabled != FALSE},
                              {"reserved", pointer(reserved)}},
                             {}, [&](const Effects& effects, Json& output) {
                                 return engine.bssList(clientHandle, interfaceGuid, name, bssType,
                                                       securityEnabled, reserved, bssList, effects,
                                                       output);
                             });
    });
}

// The conversions are the platform's; they pass through here for the record and for faults.

RPC_STATUS WINAPI uuidFromString(const mrl::Char* value, GUID* result) {
    return static_cast<RPC_STATUS>(served([&](Impl& engine) {
        return engine.answer(
            "UuidFromStringW", {{"text", text(value)}}, {}, [&](const Effects&, Json&) {
                return static_cast<DWORD>(
                    nativewifi::platformRpcFunctions().UuidFromStringW(value, result));
            });
    }));
}

RPC_STATUS WINAPI uuidToString(const GUID* value, mrl::Char** result) {
    return static_cast<RPC_STATUS>(served([&](Impl& engine) {
        return engine.answer(
            "UuidToStringW", {{"guid", guid(value)}}, {}, [&](const Effects&, Json& output) {
                const RPC_STATUS status =
                    nativewifi::platformRpcFunctions().UuidToStringW(value, result);
                if (status == RPC_S_OK) {
                    engine.countText(1);
                    output["text"] = text(*result);
                }
                return static_cast<DWORD>(status);
            });
    }));
}

RPC_STATUS WINAPI rpcStringFree(mrl::Char** value) {
    return static_cast<RPC_STATUS>(served([&](Impl& engine) {
        const mrl::Char* const before = value == nullptr ? nullptr : *value;
        return engine.answer(
            "RpcStringFreeW", {{"text", text(before)}}, {}, [&](const Effects&, Json&) {
                if (before != nullptr) {
                    engine.countText(-1);
                }
                return static_cast<DWORD>(nativewifi::platformRpcFunctions().RpcStringFreeW(value));
            });
    }));
}

} // namespace

nativewifi::Api engineTable() {
    nativewifi::Api table{};
    table.WlanOpenHandle = &openHandle;
    table.WlanCloseHandle = &closeHandle;
    table.WlanEnumInterfaces = &enumInterfaces;
    table.WlanQueryInterface = &queryInterface;
    table.WlanSetInterface = &setInterface;
    table.WlanRegisterNotification = &registerNotification;
    table.WlanGetAvailableNetworkList = &getAvailableNetworkList;
    table.WlanReasonCodeToString = &reasonCodeToString;
    table.WlanFreeMemory = &freeMemory;
    table.WlanScan = &scan;
    table.WlanGetNetworkBssList = &getNetworkBssList;
    table.UuidFromStringW = &uuidFromString;
    table.UuidToStringW = &uuidToString;
    table.RpcStringFreeW = &rpcStringFree;
    return table;
}

} // namespace radiosim
