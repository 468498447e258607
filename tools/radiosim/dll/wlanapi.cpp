// Stands in the place of the system's Wlanapi.dll and hands each call to the engine.
// The scenario is named by the environment, so that the program under test stays as it ships.
#include <radiosim/Engine.h>

#include <mrl/Unicode.h>

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using radiosim::Engine;

// Without its environment the simulator ends the process: a result would be about another one. 64
// is the exit code for wrong usage throughout this project.
constexpr UINT WRONG_USAGE = 64;

[[noreturn]] void giveUp(const std::string& what, const std::string& remedy) {
    // The host's own output first; it shares the C runtime.
    std::fflush(nullptr);
    const std::string line = "radiosim: " + mrl::escapeControls(what) + ". " + remedy + ".\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    // Not ExitProcess: this may be any thread, with any lock held.
    TerminateProcess(GetCurrentProcess(), WRONG_USAGE);
    std::abort();
}

// Empty when it is not set.
std::wstring environment(const wchar_t* name) {
    const DWORD size = GetEnvironmentVariableW(name, nullptr, 0);
    std::wstring value(size, L'\0');
    value.resize(size == 0 ? 0 : GetEnvironmentVariableW(name, value.data(), size));
    return value;
}

radiosim::Scenario chosenScenario() {
    const std::wstring file = environment(L"RADIOSIM_SCENARIO");
    if (file.empty()) {
        return radiosim::Scenario::builtIn();
    }
    try {
        return radiosim::Scenario::fromFile(file);
    } catch (const radiosim::ScenarioError& error) {
        giveUp(mrl::toUtf8(file) + ": " + error.what(),
               "Mend the file, of which tools/radiosim/README.md explains each key, or unset "
               "RADIOSIM_SCENARIO for the built-in office");
    }
}

void startTrace(Engine& engine) {
    const std::wstring file = environment(L"RADIOSIM_TRACE");
    if (file.empty()) {
        return;
    }
    // Open until the process ends, whenever that is; each line is complete once it is there.
    std::FILE* const trace = _wfopen(file.c_str(), L"wb");
    if (trace == nullptr) {
        giveUp(mrl::toUtf8(file) + ": the trace cannot be written",
               "Name a file in a folder that exists in RADIOSIM_TRACE, or unset it");
    }
    engine.traceTo([trace](std::string_view line) {
        std::fwrite(line.data(), 1, line.size(), trace);
        std::fputc('\n', trace);
        std::fflush(trace);
    });
}

// Never destroyed: its thread cannot be joined under the loader's lock, and a client that closes
// its handle during the process's end must still find it.
Engine* start() {
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&start), &self);
    auto* const engine = new Engine(chosenScenario());
    startTrace(*engine);
    return engine;
}

Engine& engine() {
    static Engine* const instance = start();
    return *instance;
}

} // namespace

// The exported functions get their names from the label, not from the system header's
// declarations: those differ between headers in what they call const.
#define EXPORTED(result, name, arguments)                                                          \
    extern "C" __declspec(dllexport) result WINAPI exported##name arguments __asm__(#name);        \
    result WINAPI exported##name arguments

EXPORTED(DWORD, WlanOpenHandle,
         (DWORD clientVersion, PVOID reserved, DWORD* negotiatedVersion, HANDLE* clientHandle)) {
    return engine().api().WlanOpenHandle(clientVersion, reserved, negotiatedVersion, clientHandle);
}

EXPORTED(DWORD, WlanCloseHandle, (HANDLE clientHandle, PVOID reserved)) {
    return engine().api().WlanCloseHandle(clientHandle, reserved);
}

EXPORTED(DWORD, WlanEnumInterfaces,
         (HANDLE clientHandle, PVOID reserved, WLAN_INTERFACE_INFO_LIST** interfaceList)) {
    return engine().api().WlanEnumInterfaces(clientHandle, reserved, interfaceList);
}

EXPORTED(DWORD, WlanQueryInterface,
         (HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode, PVOID reserved,
          DWORD* dataSize, PVOID* data, WLAN_OPCODE_VALUE_TYPE* valueType)) {
    return engine().api().WlanQueryInterface(clientHandle, interfaceGuid, opcode, reserved,
                                             dataSize, data, valueType);
}

EXPORTED(DWORD, WlanSetInterface,
         (HANDLE clientHandle, const GUID* interfaceGuid, WLAN_INTF_OPCODE opcode, DWORD dataSize,
          const PVOID data, PVOID reserved)) {
    return engine().api().WlanSetInterface(clientHandle, interfaceGuid, opcode, dataSize, data,
                                           reserved);
}

EXPORTED(DWORD, WlanRegisterNotification,
         (HANDLE clientHandle, DWORD source, BOOL ignoreDuplicate,
          WLAN_NOTIFICATION_CALLBACK callback, PVOID context, PVOID reserved,
          DWORD* previousSource)) {
    return engine().api().WlanRegisterNotification(clientHandle, source, ignoreDuplicate, callback,
                                                   context, reserved, previousSource);
}

EXPORTED(DWORD, WlanGetAvailableNetworkList,
         (HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags, PVOID reserved,
          WLAN_AVAILABLE_NETWORK_LIST** networkList)) {
    return engine().api().WlanGetAvailableNetworkList(clientHandle, interfaceGuid, flags, reserved,
                                                      networkList);
}

EXPORTED(DWORD, WlanReasonCodeToString,
         (DWORD reasonCode, DWORD bufferSize, WCHAR* buffer, PVOID reserved)) {
    return engine().api().WlanReasonCodeToString(reasonCode, bufferSize, buffer, reserved);
}

EXPORTED(DWORD, WlanScan,
         (HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* ssid,
          WLAN_RAW_DATA* informationElement, PVOID reserved)) {
    return engine().api().WlanScan(clientHandle, interfaceGuid, ssid, informationElement, reserved);
}

EXPORTED(DWORD, WlanGetNetworkBssList,
         (HANDLE clientHandle, const GUID* interfaceGuid, DOT11_SSID* ssid, DOT11_BSS_TYPE bssType,
          BOOL securityEnabled, PVOID reserved, WLAN_BSS_LIST** bssList)) {
    return engine().api().WlanGetNetworkBssList(clientHandle, interfaceGuid, ssid, bssType,
                                                securityEnabled, reserved, bssList);
}

EXPORTED(void, WlanFreeMemory, (PVOID memory)) {
    engine().api().WlanFreeMemory(memory);
}

EXPORTED(PVOID, WlanAllocateMemory, (DWORD size)) {
    return engine().allocateMemory(size);
}

// Tells this DLL from the system's before anything of it is called: under Wine the system's own
// ends the process. Does nothing.
EXPORTED(DWORD, RadiosimInForce, ()) {
    return 1;
}

// The other documented functions. On x64 the caller cleans up arguments: none need be declared.
#define NOT_SIMULATED(name)                                                                        \
    EXPORTED(DWORD, name, ()) {                                                                    \
        return engine().notSimulated(#name);                                                       \
    }

NOT_SIMULATED(WlanConnect)
NOT_SIMULATED(WlanConnect2)
NOT_SIMULATED(WlanDeleteProfile)
NOT_SIMULATED(WlanDeviceServiceCommand)
NOT_SIMULATED(WlanDisconnect)
NOT_SIMULATED(WlanExtractPsdIEDataList)
NOT_SIMULATED(WlanGetFilterList)
NOT_SIMULATED(WlanGetInterfaceCapability)
NOT_SIMULATED(WlanGetProfile)
NOT_SIMULATED(WlanGetProfileCustomUserData)
NOT_SIMULATED(WlanGetProfileList)
NOT_SIMULATED(WlanGetSecuritySettings)
NOT_SIMULATED(WlanGetSupportedDeviceServices)
NOT_SIMULATED(WlanHostedNetworkForceStart)
NOT_SIMULATED(WlanHostedNetworkForceStop)
NOT_SIMULATED(WlanHostedNetworkInitSettings)
NOT_SIMULATED(WlanHostedNetworkQueryProperty)
NOT_SIMULATED(WlanHostedNetworkQuerySecondaryKey)
NOT_SIMULATED(WlanHostedNetworkQueryStatus)
NOT_SIMULATED(WlanHostedNetworkRefreshSecuritySettings)
NOT_SIMULATED(WlanHostedNetworkSetProperty)
NOT_SIMULATED(WlanHostedNetworkSetSecondaryKey)
NOT_SIMULATED(WlanHostedNetworkStartUsing)
NOT_SIMULATED(WlanHostedNetworkStopUsing)
NOT_SIMULATED(WlanIhvControl)
NOT_SIMULATED(WlanQueryAutoConfigParameter)
NOT_SIMULATED(WlanRegisterDeviceServiceNotification)
NOT_SIMULATED(WlanRegisterVirtualStationNotification)
NOT_SIMULATED(WlanRenameProfile)
NOT_SIMULATED(WlanSaveTemporaryProfile)
NOT_SIMULATED(WlanSetAutoConfigParameter)
NOT_SIMULATED(WlanSetFilterList)
NOT_SIMULATED(WlanSetProfile)
NOT_SIMULATED(WlanSetProfileCustomUserData)
NOT_SIMULATED(WlanSetProfileEapUserData)
NOT_SIMULATED(WlanSetProfileEapXmlUserData)
NOT_SIMULATED(WlanSetProfileList)
NOT_SIMULATED(WlanSetProfilePosition)
NOT_SIMULATED(WlanSetPsdIEDataList)
NOT_SIMULATED(WlanSetSecuritySettings)
NOT_SIMULATED(WFDCancelOpenSession)
NOT_SIMULATED(WFDCloseHandle)
NOT_SIMULATED(WFDCloseSession)
NOT_SIMULATED(WFDOpenHandle)
NOT_SIMULATED(WFDOpenLegacySession)
NOT_SIMULATED(WFDStartOpenSession)
NOT_SIMULATED(WFDUpdateDeviceVisibility)
