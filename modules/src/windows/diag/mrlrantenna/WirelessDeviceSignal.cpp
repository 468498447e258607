// Signal strengths: a mean over the list of visible networks, a forced scan, the connection's
// rates.
#include "WirelessDevice.h"
#include "WirelessDeviceLog.h"

#include <tesk5/DiagModule.h>

#include <nativewifi/Api.h>

#include <mrl/System.h>

using mrl::String;
using nativewifi::api;

namespace {

constexpr int REFRESHES = 3;
constexpr unsigned int REFRESH_PAUSE_MS = 100;

constexpr DWORD SCAN_CLIENT_VERSION = 1;
// A fixed wait: the report of the scan's end is not awaited.
constexpr unsigned int SCAN_PAUSE_MS = 7000;

} // namespace

mrl::Int32 WirelessDevice::getSignalStrength(const VisibleNetwork& network) {
    const mrl::TraceLogger trace = deviceTrace("getSignalStrength()");
    mrl::MRLArray<VisibleNetwork> snapshots[REFRESHES];
    for (mrl::MRLArray<VisibleNetwork>& snapshot : snapshots) {
        getVisibleNetworkList();
        snapshot = m_visibleNetworks;
        mrl::System::mssleep(REFRESH_PAUSE_MS);
    }
    mrl::Uint32 sum = 0; // unsigned: absurd reports wrap
    mrl::Int32 count = 0;
    for (const mrl::MRLArray<VisibleNetwork>& snapshot : snapshots) {
        for (const VisibleNetwork& entry : snapshot) {
            // By the rule that merges names: Lab counts for Lab-5G.
            if (isSame(network, entry)) {
                sum += static_cast<mrl::Uint32>(entry.m_signalQuality);
                ++count;
            }
        }
    }
    const auto total = static_cast<mrl::Int32>(sum);
    return count > 1 ? total / count : total;
}

bool WirelessDevice::forceScanMatched(const String& ssid, mrl::Uint32& signalStrength) {
    // A client handle of its own. Deliberately, it is never closed and neither list is freed; a run
    // leaves two of each behind at most, until the process ends.
    HANDLE scanHandle = nullptr;
    DWORD negotiatedVersion = 0;
    if (api().WlanOpenHandle(SCAN_CLIENT_VERSION, nullptr, &negotiatedVersion, &scanHandle) !=
        ERROR_SUCCESS) {
        return false;
    }
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    if (api().WlanEnumInterfaces(scanHandle, nullptr, &interfaces) != ERROR_SUCCESS) {
        return false;
    }
    // Always the first interface, whatever the device's own is. A list without one has nothing to
    // read there; the scan of a null GUID then fails by itself.
    GUID interfaceGuid = {};
    if (interfaces != nullptr && interfaces->dwNumberOfItems != 0) {
        interfaceGuid = interfaces->InterfaceInfo[0].InterfaceGuid;
    }
    const DWORD scanned = api().WlanScan(scanHandle, &interfaceGuid, nullptr, nullptr, nullptr);
    if (scanned != ERROR_SUCCESS) {
        if (scanned == ERROR_ACCESS_DENIED) {
            tesk5::DiagModule::requestAdvice();
        }
        return false;
    }
    mrl::System::mssleep(SCAN_PAUSE_MS);
    WLAN_BSS_LIST* heard = nullptr;
    if (api().WlanGetNetworkBssList(scanHandle, &interfaceGuid, nullptr, dot11_BSS_type_any, FALSE,
                                    nullptr, &heard) != ERROR_SUCCESS ||
        heard == nullptr) {
        return false;
    }
    for (DWORD i = 0; i < heard->dwNumberOfItems; ++i) {
        const WLAN_BSS_ENTRY& entry = heard->wlanBssEntries[i];
        mrl::Char buffer[DOT11_SSID_MAX_LENGTH + 1];
        const String name(SsidToStringW(buffer, std::size(buffer), &entry.dot11Ssid));
        if (name.empty()) {
            continue;
        }
        deviceLog(1601) << "forceScanMatched::Enumerated SSID: " << name;
        deviceLog(1603) << "forceScanMatched::Test SSID: " << ssid;
        if (isAccessPoint(name, ssid)) {
            signalStrength = entry.uLinkQuality;
            return true;
        }
    }
    return false;
}

bool WirelessDevice::getSigTransReceieveRate() {
    const mrl::TraceLogger trace = deviceTrace("getSigTransReceieveRate()");
    if (m_connectionQueryBlocked) {
        return false;
    }
    if (!populateWLANConnectionAtrributes() || m_connectionAttributes == nullptr) {
        m_signalQuality = 0;
        m_rxRate = 0;
        m_txRate = 0;
        return false;
    }
    const WLAN_ASSOCIATION_ATTRIBUTES& association =
        m_connectionAttributes->wlanAssociationAttributes;
    m_signalQuality = association.wlanSignalQuality;
    m_rxRate = association.ulRxRate;
    m_txRate = association.ulTxRate;
    return true;
}
