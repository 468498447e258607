#include <networkadapters/MachineDevices.h>

#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <mrl/LoggerStream.h>

#include <algorithm>

namespace networkadapters {

namespace {

using tesk5::DeviceCapability;
using tesk5::DeviceList;
using tesk5::DiagDevice;
using tesk5::Finding;
using tesk5::TeskString;

constexpr int PRIORITY = 1;

// What a failure of the first two calls means, and its remedy.
struct Explanation {
    DWORD error;
    const char* key;
};
constexpr Explanation explanations[] = {
    {ERROR_SERVICE_NOT_ACTIVE, "DOCTOR_SERVICE_STOPPED"},
    {ERROR_MOD_NOT_FOUND, "DOCTOR_NO_WLANAPI"},
    {ERROR_PROC_NOT_FOUND, "DOCTOR_WLANAPI_TOO_OLD"},
    {ERROR_ACCESS_DENIED, "DOCTOR_SERVICE_DENIED"},
    {ERROR_NOT_ENOUGH_MEMORY, "DOCTOR_MEMORY_SHORT"},
    {ERROR_REMOTE_SESSION_LIMIT_EXCEEDED, "DOCTOR_SERVICE_CROWDED"},
};

Finding failureOf(const char* function, DWORD error) {
    const auto* const known =
        std::find_if(std::begin(explanations), std::end(explanations),
                     [error](const Explanation& candidate) { return candidate.error == error; });
    mrl::Logger& logger = mrl::LogFactory::createLogger("networkadapters.devices");
    mrl::LoggerStream(logger.admitting(PRIORITY), PRIORITY)
        << function << " failed with error " << error;
    return {known != std::end(explanations) ? known->key : "DOCTOR_SERVICE_FAILS",
            false,
            {{"Function", function}, {"Error", error}}};
}

TeskString systemName(const GUID& guid) {
    return TeskString(nativewifi::deviceSystemName(guid));
}

TeskString descriptionOf(const WLAN_INTERFACE_INFO& info) {
    return TeskString(mrl::String(nativewifi::fixedText(info.strInterfaceDescription)));
}

struct WirelessInterfaces {
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
    std::optional<Finding> failure;
};

WirelessInterfaces wirelessInterfaces() {
    WirelessInterfaces found;
    nativewifi::ClientHandle client;
    DWORD negotiated = 0;
    DWORD result = nativewifi::api().WlanOpenHandle(nativewifi::CLIENT_VERSION, nullptr,
                                                    &negotiated, out(client));
    if (result != ERROR_SUCCESS) {
        found.failure = failureOf("WlanOpenHandle", result);
        return found;
    }
    result = nativewifi::api().WlanEnumInterfaces(client.get(), nullptr, out(found.list));
    if (result != ERROR_SUCCESS) {
        found.failure = failureOf("WlanEnumInterfaces", result);
    }
    return found;
}

DiagDevice wirelessDevice(const WLAN_INTERFACE_INFO& info) {
    return {descriptionOf(info),
            DeviceCapability::Wireless() | DeviceCapability::NetworkCard(),
            {{tesk5::DEVICE_SYSTEM_NAME, systemName(info.InterfaceGuid)},
             {"wlanAPISupported", "true"}}};
}

DiagDevice otherDevice(const NetworkAdapter& adapter) {
    DiagDevice::Properties properties = {{tesk5::DEVICE_SYSTEM_NAME, systemName(adapter.guid)}};
    if (adapter.mobileBroadband) {
        properties.emplace_back("WirelessWAN", "true");
    }
    return {TeskString(adapter.name), DeviceCapability::NetworkCard(), std::move(properties)};
}

} // namespace

DeviceList devicesAmong(const std::vector<NetworkAdapter>& adapters) {
    DeviceList all;
    WirelessInterfaces wireless = wirelessInterfaces();
    all.failure = std::move(wireless.failure);
    std::vector<GUID> listed;
    if (!all.failure && wireless.list) {
        for (DWORD i = 0; i < wireless.list->dwNumberOfItems; ++i) {
            const WLAN_INTERFACE_INFO& info = wireless.list->InterfaceInfo[i];
            all.devices.push_back(wirelessDevice(info));
            listed.push_back(info.InterfaceGuid);
        }
    }
    for (const NetworkAdapter& adapter : adapters) {
        const bool known = std::any_of(listed.begin(), listed.end(), [&adapter](const GUID& guid) {
            return nativewifi::sameGuid(guid, adapter.guid);
        });
        if (!known) {
            all.devices.push_back(otherDevice(adapter));
        }
    }
    return all;
}

DeviceList machineDevices() {
    return devicesAmong(networkAdapters());
}

std::vector<tesk5::AdapterIdentity> adapterIdentities() {
    std::vector<tesk5::AdapterIdentity> identities;
    for (const NetworkAdapter& adapter : networkAdapters()) {
        if (adapter.wireless) {
            identities.push_back({.device = systemName(adapter.guid).utf8(),
                                  .driver = adapter.driver,
                                  .version = adapter.version,
                                  .address = adapter.address});
        }
    }
    return identities;
}

Finding checkWirelessService() {
    return wirelessInterfaces().failure.value_or(Finding{"DOCTOR_SERVICE_ANSWERS", true, {}});
}

} // namespace networkadapters
