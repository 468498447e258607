// The list of visible networks: asked for, logged, and merged into one record a name.
#include "ModuleObjects.h"
#include "WirelessDevice.h"
#include "WirelessDeviceLog.h"

#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <tesk5/DiagModule.h>

#include <algorithm>

using mrl::String;
using nativewifi::api;
using tesk5::TestResult;

namespace {

constexpr std::size_t SSID_BUFFER_SIZE = DOT11_SSID_MAX_LENGTH + 1;
constexpr DWORD REASON_BUFFER_SIZE = 256;

// Qualities that the current connection replaces where it is the same network.
constexpr ULONG DISTRUSTED_QUALITIES[] = {0, 100};

bool isDistrusted(ULONG quality) {
    return std::find(std::begin(DISTRUSTED_QUALITIES), std::end(DISTRUSTED_QUALITIES), quality) !=
           std::end(DISTRUSTED_QUALITIES);
}

// A failed list query: its line, the event to raise at the line below that one, and its meaning.
struct ListError {
    mrl::Uint32 error;
    int logLine;
    const char* sentence;
    tesk5::Event* const* event;
    TestResult (*result)();
};
constexpr ListError listErrors[] = {
    {ERROR_INVALID_PARAMETER, 1172,
     " returned an error related to Client Handle is NULL or invalid, Interface Guid is NULL, "
     "Reserved is not NULL, Available Network List is NULL, or the dwFlags parameter value is not "
     "set to one of the valid values",
     nullptr, &TestResult::INTERNALERROR},
    {ERROR_INVALID_HANDLE, 1180,
     " returned an error related to client handle where the client handle was not found in the "
     "handle table.",
     nullptr, &TestResult::INTERNALERROR},
    {ERROR_NDIS_DOT11_POWER_STATE_INVALID, 1188,
     " returned an error related to the radio being turned off. The radio for the interface is "
     "turned off. There are no available networks when the radio is off.",
     &events::errorNdisDot11PowerStateInvalid, &TestResult::CANNOTRUN},
    {ERROR_NOT_ENOUGH_MEMORY, 1195,
     " returned an error related to memory allocation. Failed to allocate memory for the query "
     "results.",
     &events::errorNotEnoughMemory, &TestResult::CANNOTRUN},
};

const String& bssTypeText(DOT11_BSS_TYPE bssType) {
    switch (static_cast<int>(bssType)) {
    case dot11_BSS_type_infrastructure:
        return texts::get(texts::infrastructure);
    case dot11_BSS_type_independent:
        return texts::get(texts::adHocIndependent);
    case dot11_BSS_type_any:
        return texts::get(texts::any);
    default:
        return texts::get(texts::unknownBssType);
    }
}

} // namespace

bool WirelessDevice::getVisibleNetworkList() {
    const mrl::TraceLogger trace = deviceTrace("getVisibleNetworkList()");
    if (!initialize()) {
        return false;
    }
    m_visibleNetworks.clear();
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    const DWORD result =
        api().WlanGetAvailableNetworkList(m_clientHandle, &m_interfaceGuid, 0, nullptr, out(list));
    if (result != ERROR_SUCCESS) {
        reportNetworkListError("WlanGetAvailableNetworkList", result);
        if (result == ERROR_ACCESS_DENIED) {
            tesk5::DiagModule::requestAdvice();
        }
        return false;
    }
    if (!list) {
        return false;
    }
    m_numVisibleNetworks = list->dwNumberOfItems;
    deviceLog(1154) << "Total " << list->dwNumberOfItems << " networks are visible.";
    for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
        deviceLog(1157) << "Network " << i << ":";
        printNetworkInfo(&list->Network[i]);
    }
    return true;
}

mrl::Uint32 WirelessDevice::getNumVisibleNetworks() {
    const mrl::TraceLogger trace = deviceTrace("getNumVisibleNetworks()");
    getVisibleNetworkList();
    m_numVisibleNetworks = m_visibleNetworks.size();
    return m_numVisibleNetworks;
}

void WirelessDevice::printNetworkInfo(const WLAN_AVAILABLE_NETWORK* network) {
    const mrl::TraceLogger trace = deviceTrace("printNetworkInfo()");
    if (network == nullptr) {
        return;
    }
    VisibleNetwork record;
    mrl::Char ssid[SSID_BUFFER_SIZE];
    record.m_ssid = String(SsidToStringW(ssid, SSID_BUFFER_SIZE, &network->dot11Ssid));
    if (record.m_ssid.empty()) {
        return; // hidden
    }
    deviceLog(1268) << "SSID: " << record.m_ssid;

    if (network->bSecurityEnabled != FALSE) {
        deviceLog(1273) << "Security enabled.";
        record.m_security = texts::get(texts::enabled);
    } else {
        deviceLog(1279) << "Security not enabled.";
        record.m_security = texts::get(texts::notEnabled);
    }

    const String& yes = texts::get(texts::yes);
    const String& no = texts::get(texts::no);
    deviceLog(1288) << "Contains " << network->uNumberOfBssids << " BSSIDs.";
    if ((network->dwFlags & WLAN_AVAILABLE_NETWORK_HAS_PROFILE) != 0) {
        deviceLog(1293) << "Has a matching profile: "
                        << nativewifi::fixedText(network->strProfileName) << ".";
    }
    record.m_isConnected = (network->dwFlags & WLAN_AVAILABLE_NETWORK_CONNECTED) != 0;
    if (record.m_isConnected) {
        deviceLog(1299) << "Currently connected.";
        record.m_connectedText = yes;
    } else {
        deviceLog(1305) << "Currently not connected.";
        record.m_connectedText = no;
    }
    if (network->bNetworkConnectable != FALSE) {
        deviceLog(1320) << "The network is connectable.";
        record.m_connectable = yes;
    } else {
        deviceLog(1314) << "The network is not connectable. ";
        printReason(network->wlanNotConnectableReason);
        record.m_connectable = no;
    }
    record.m_bssType = getBssTypeString(network->dot11BssType);
    deviceLog(1326) << "BSS type: " << record.m_bssType;

    int qualityLine = 1346;
    record.m_signalQuality = static_cast<mrl::Int32>(network->wlanSignalQuality);
    if (isDistrusted(network->wlanSignalQuality) && populateWLANConnectionAtrributes() &&
        m_connectionAttributes != nullptr) {
        const WLAN_ASSOCIATION_ATTRIBUTES& association =
            m_connectionAttributes->wlanAssociationAttributes;
        mrl::Char associated[SSID_BUFFER_SIZE];
        SsidToStringW(associated, SSID_BUFFER_SIZE, &association.dot11Ssid);
        if (record.m_ssid.view() == mrl::CharView(associated)) {
            m_signalQuality = association.wlanSignalQuality;
            record.m_signalQuality = static_cast<mrl::Int32>(m_signalQuality);
            qualityLine = 1339;
        }
    }
    deviceLog(qualityLine) << "Signal quality: " << record.m_signalQuality << "%";

    record.m_authAlgorithm = getAuthAlgoString(network->dot11DefaultAuthAlgorithm);
    deviceLog(1351) << "Default authentication algorithm: " << record.m_authAlgorithm;
    // The authentication's words, not the cipher's: log readers compare this line.
    deviceLog(1355) << "Default cipher algorithm: " << record.m_authAlgorithm;

    addVisibleNetwork(record);
}

// The first record of a name stays, and a longer name that contains it counts as the same network:
// cards report one network per profile, and technicians know it by its shortest name.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the record may lie in the list that grows
void WirelessDevice::addVisibleNetwork(VisibleNetwork network) {
    const mrl::TraceLogger trace = deviceTrace("addVisibleNetwork()");
    const bool isKnown = std::any_of(
        m_visibleNetworks.begin(), m_visibleNetworks.end(),
        [&network](const VisibleNetwork& known) { return countsAs(network.m_ssid, known.m_ssid); });
    if (!isKnown) {
        m_visibleNetworks.append(network);
    }
}

// By value, as addVisibleNetwork() is: a caller's record may lie in the list that the next refresh
// replaces.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool WirelessDevice::isSame(VisibleNetwork first, VisibleNetwork second) {
    const mrl::TraceLogger trace = deviceTrace("isSame()");
    return countsAs(first.m_ssid, second.m_ssid);
}

void WirelessDevice::printReason(WLAN_REASON_CODE reasonCode) {
    const mrl::TraceLogger trace = deviceTrace("printReason()");
    WCHAR reason[REASON_BUFFER_SIZE] = {};
    if (api().WlanReasonCodeToString(reasonCode, REASON_BUFFER_SIZE, reason, nullptr) ==
        ERROR_SUCCESS) {
        deviceLog(1377) << " The reason is \"" << nativewifi::fixedText(reason) << "\".";
    } else {
        deviceLog(1381) << " The reason code is " << reasonCode << ".";
    }
}

String WirelessDevice::getBssTypeString(DOT11_BSS_TYPE bssType) {
    const mrl::TraceLogger trace = deviceTrace("getBssTypeString()");
    static String text;
    text = bssTypeText(bssType);
    return text;
}

mrl::Char* WirelessDevice::SsidToStringW(mrl::Char* buffer, std::size_t capacity,
                                         const DOT11_SSID* ssid) {
    const mrl::TraceLogger trace = deviceTrace("SsidToStringW()");
    if (capacity == 0) {
        return buffer;
    }
    const String name = nativewifi::ssidText(*ssid);
    const std::size_t length = std::min(name.length(), capacity - 1);
    std::copy_n(name.getUCS2Buffer(), length, buffer);
    buffer[length] = 0;
    return buffer;
}

TestResult WirelessDevice::reportNetworkListError(const String& call, mrl::Uint32 error) {
    for (const ListError& entry : listErrors) {
        if (entry.error != error) {
            continue;
        }
        deviceLog(entry.logLine) << "The win32 call of " << call << entry.sentence;
        if (entry.event != nullptr) {
            tesk5::DiagModule::error(*entry.event, DEVICE_SOURCE_FILE, entry.logLine + 1);
        }
        return entry.result();
    }
    return TestResult::FAIL();
}
