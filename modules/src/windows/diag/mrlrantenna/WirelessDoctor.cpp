#include "WirelessDoctor.h"

#include "MRLrAntenna.h"
#include "ModuleObjects.h"
#include "Radio.h"
#include "WirelessDevice.h"

#include <tesk5/ByteText.h>
#include <tesk5/TestRecorder.h>
#include <tesk5/Texts.h>

#include <networkadapters/MachineCheck.h>
#include <networkadapters/RadioFindings.h>

#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <functional>
#include <optional>

using mrl::String;
using nativewifi::api;
using tesk5::Finding;
using tesk5::Findings;
using tesk5::TeskString;

namespace {

constexpr mrl::Int32 TESTED_PHY = 0;
constexpr unsigned int SCAN_MS = 4000;
constexpr std::size_t MOST_NAMES_SHOWN = 10;

// One network of the list that has a name.
struct NamedNetwork {
    String name;    // as the tests read it
    String decoded; // the bytes taken for UTF-8, as other programs show it
    mrl::Uint32 quality;
    const NamedNetwork* keptInstead; // the one for which the tests' list drops this one, or null
};

// The networks with a name, and which of them the tests' list leaves out.
std::vector<NamedNetwork> namedNetworks(const WLAN_AVAILABLE_NETWORK_LIST& list) {
    std::vector<NamedNetwork> networks;
    networks.reserve(list.dwNumberOfItems); // keptInstead points into it
    for (DWORD i = 0; i < list.dwNumberOfItems; ++i) {
        const WLAN_AVAILABLE_NETWORK& entry = list.Network[i];
        NamedNetwork network{.name = nativewifi::ssidText(entry.dot11Ssid),
                             .decoded = String(nativewifi::ssidBytes(entry.dot11Ssid)),
                             .quality = entry.wlanSignalQuality,
                             .keptInstead = nullptr};
        if (network.name.empty()) {
            continue;
        }
        const auto kept =
            std::find_if(networks.begin(), networks.end(), [&](const NamedNetwork& earlier) {
                return earlier.keptInstead == nullptr && countsAs(network.name, earlier.name);
            });
        network.keptInstead = kept == networks.end() ? nullptr : &*kept;
        networks.push_back(std::move(network));
    }
    return networks;
}

bool contains(const String& name, const String& part) {
    return mrl::foldedCase(name.view()).find(mrl::foldedCase(part.view())) != mrl::CharString::npos;
}

bool isKept(const NamedNetwork& network) {
    return network.keptInstead == nullptr;
}

// The names in the tests' list, or those that it leaves out, each in quotes; the first
// MOST_NAMES_SHOWN of them.
std::string shownNames(const std::vector<NamedNetwork>& networks, bool kept) {
    std::string all;
    std::size_t count = 0;
    for (const NamedNetwork& network : networks) {
        if (isKept(network) != kept) {
            continue;
        }
        if (count++ == MOST_NAMES_SHOWN) {
            return all + ", ...";
        }
        all += (all.empty() ? "\"" : ", \"") +
               tesk5::withUtf8Reading(network.name.getUTF8String().bytes()) + "\"";
    }
    return all;
}

// One examination of one adapter.
class Examination {
public:
    Examination(const tesk5::DiagDevice& device, Findings& findings)
        : m_device(device), m_findings(findings) {}

    void run(tesk5::ExaminationDepth depth) {
        if (!open() || !findInterface() || !radioIsOn()) {
            return;
        }
        if (depth == tesk5::ExaminationDepth::THOROUGH) {
            scan();
        }
        checkNetworks();
    }

private:
    void add(const char* key, bool good, tesk5::Event::Variables variables = {}) {
        variables.insert(variables.begin(), {"Device", m_device.name()});
        m_findings.push_back({key, good, std::move(variables)});
    }
    void addFailure(const char* function, DWORD error) {
        m_findings.push_back(networkadapters::callFailed(m_device.name(), function, error));
    }
    void addSwitchedOff(bool byHardware) {
        m_findings.push_back(networkadapters::radioSwitchedOff(m_device.name(), byHardware));
    }

    bool open() {
        DWORD negotiated = 0;
        if (api().WlanOpenHandle(nativewifi::CLIENT_VERSION, nullptr, &negotiated, out(m_client)) !=
            ERROR_SUCCESS) {
            return false;
        }
        if (negotiated != nativewifi::CLIENT_VERSION) {
            add("DOCTOR_INTERFACE_TOO_OLD", false, {{"Version", negotiated}});
            return false;
        }
        return true;
    }

    // Whether the system has the interface that the device's system name names.
    bool findInterface() {
        const char* const property = WirelessDevice::systemNameProperty(m_device);
        const String systemName = m_device.property(property).value().mrlString();
        const std::optional<GUID> guid =
            nativewifi::parseGuid(nativewifi::guidTextOf(systemName).view());
        nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
        if (api().WlanEnumInterfaces(m_client.get(), nullptr, out(list)) != ERROR_SUCCESS ||
            !list) {
            return false;
        }
        for (DWORD i = 0; guid && i < list->dwNumberOfItems; ++i) {
            if (nativewifi::sameGuid(list->InterfaceInfo[i].InterfaceGuid, *guid)) {
                m_interface = *guid;
                return true;
            }
        }
        add("DOCTOR_INTERFACE_GONE", false, {{"SystemName", TeskString(systemName)}});
        return false;
    }

    // By the PHY and the rule of the verification test.
    bool radioIsOn() {
        DWORD size = 0;
        PVOID data = nullptr;
        const DWORD result =
            api().WlanQueryInterface(m_client.get(), &m_interface, wlan_intf_opcode_radio_state,
                                     nullptr, &size, &data, nullptr);
        nativewifi::WlanMemory<WLAN_RADIO_STATE> state;
        *out(state) = static_cast<WLAN_RADIO_STATE*>(data);
        if (result != ERROR_SUCCESS) {
            addFailure("WlanQueryInterface", result);
            return false;
        }
        Radio radio;
        if (state && size == sizeof(WLAN_RADIO_STATE)) {
            radio.update(*state);
        }
        const Radio::Phy* phy = radio.phy(TESTED_PHY);
        if (phy == nullptr || phy->hardware == dot11_radio_state_unknown ||
            phy->software == dot11_radio_state_unknown) {
            add("DOCTOR_RADIO_UNKNOWN", false);
            return false;
        }
        const RadioStateFlags flags = radio.flags(TESTED_PHY);
        if ((flags & HARDWARE_OFF) != 0) {
            addSwitchedOff(true);
        }
        if ((flags & SOFTWARE_OFF) != 0 && !networkadapters::explainsRadio(m_findings)) {
            addSwitchedOff(false);
        }
        if (!radio.isOn(TESTED_PHY)) {
            return false;
        }
        add("DOCTOR_RADIO_ON", true);
        return true;
    }

    void addDenied(const char* function) {
        if (!m_denied) { // the check of the machine, or another device, may have said the same
            tesk5::addOnce(
                networkadapters::accessDenied(m_device.name(), function, ERROR_ACCESS_DENIED),
                m_findings);
        }
        m_denied = true;
    }

    // Goes on after a failed scan, as the tests do, unless access was denied.
    void scan() {
        const DWORD result =
            api().WlanScan(m_client.get(), &m_interface, nullptr, nullptr, nullptr);
        if (result == ERROR_ACCESS_DENIED) {
            addDenied("WlanScan");
        } else if (result == ERROR_SUCCESS) {
            mrl::System::mssleep(SCAN_MS);
        }
    }

    void checkNetworks() {
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
        const DWORD result =
            api().WlanGetAvailableNetworkList(m_client.get(), &m_interface, 0, nullptr, out(list));
        if (result == ERROR_ACCESS_DENIED) {
            addDenied("WlanGetAvailableNetworkList");
            return;
        }
        if (result != ERROR_SUCCESS) {
            if (result != ERROR_NDIS_DOT11_POWER_STATE_INVALID ||
                !networkadapters::explainsRadio(m_findings)) {
                addFailure("WlanGetAvailableNetworkList", result);
            }
            return;
        }
        const std::vector<NamedNetwork> networks =
            list ? namedNetworks(*list) : std::vector<NamedNetwork>();
        if (networks.empty() && m_denied) {
            return; // nothing could be scanned: an empty list says nothing of the antennas
        }
        if (networks.empty()) {
            const DWORD nameless = list ? list->dwNumberOfItems : 0;
            if (nameless == 0) {
                m_findings.push_back(networkadapters::noNetworks(m_device.name()));
            } else {
                add("DOCTOR_ONLY_NAMELESS_NETWORKS", false, {{"Count", nameless}});
            }
            return;
        }
        const auto kept = std::count_if(networks.begin(), networks.end(), &isKept);
        add("DOCTOR_NETWORKS", true, {{"Count", static_cast<mrl::Uint32>(kept)}});
        if (const std::string leftOut = shownNames(networks, false); !leftOut.empty()) {
            add("DOCTOR_NETWORKS_LEFT_OUT", true, {{"Names", leftOut}});
        }
        const String wanted = parameters::ssid->value().valueString().mrlString();
        if (!wanted.empty()) {
            m_findings.push_back(findingOnName(m_device.name(), wanted, *list));
        }
    }

    const tesk5::DiagDevice& m_device;
    Findings& m_findings;
    nativewifi::ClientHandle m_client;
    GUID m_interface = {};
    bool m_denied = false;
};

} // namespace

Findings checkTestParameters(bool complete) {
    Findings findings;
    const auto refuse = [&findings](const TeskString& reason) {
        findings.push_back({"DOCTOR_PARAMETER_REFUSED", false, {{"Reason", reason}}});
    };
    const String name = parameters::ssid->value().valueString().mrlString();
    if (name.empty() && complete) {
        refuse(tesk5::translation(events::ssidNotSet->key()));
    }
    if (name.view().size() > DOT11_SSID_MAX_LENGTH) { // read as one character a byte
        findings.push_back({"DOCTOR_NAME_TOO_LONG",
                            false,
                            {{"Name", TeskString(name)},
                             {"Count", static_cast<mrl::Uint32>(name.view().size())}}});
    }
    for (const tesk5::Parameter* threshold :
         {parameters::warningSignalStrength, parameters::failingSignalStrength}) {
        if (contains(name, String("," + threshold->name().utf8() + "="))) {
            findings.push_back({"DOCTOR_NAME_HAS_SETTING",
                                false,
                                {{"Name", TeskString(name)}, {"Parameter", threshold->name()}}});
        }
    }
    const unsigned int warn = parameters::warningSignalStrength->value().valueUint32();
    const unsigned int fail = parameters::failingSignalStrength->value().valueUint32();
    const tesk5::TestRecorder recorder;
    if ((complete || warn != 0 || fail != 0) && !signalStrengthParametersValid(warn, fail)) {
        refuse(TeskString(recorder.events().back().text));
    }
    if (findings.empty() && complete) {
        findings.push_back({"DOCTOR_PARAMETERS_USABLE", true, {}});
    }
    return findings;
}

void examineWirelessDevice(const tesk5::DiagDevice& device, tesk5::ExaminationDepth depth,
                           Findings& findings) {
    Examination(device, findings).run(depth);
}

Finding findingOnName(const TeskString& device, const String& wanted,
                      const WLAN_AVAILABLE_NETWORK_LIST& list) {
    String name = wanted;
    name.trim();
    const std::vector<NamedNetwork> networks = namedNetworks(list);
    Finding finding{"DOCTOR_NAME_NOT_VISIBLE", false, {{"Device", device}}};
    finding.variables.emplace_back("Name", TeskString(name));
    if (name.empty()) {
        finding.key = "DOCTOR_NAME_BLANK";
        return finding;
    }
    using Condition = std::function<bool(const NamedNetwork&)>;
    const std::pair<const char*, Condition> explanations[] = {
        {"DOCTOR_NAME_VISIBLE",
         [&name](const auto& network) {
             return network.keptInstead == nullptr && isAccessPoint(network.name, name);
         }},
        {"DOCTOR_NAME_HIDDEN",
         [&name](const auto& network) { return isAccessPoint(network.name, name); }},
        {"DOCTOR_NAME_ENCODED",
         [&name](const auto& network) { return isAccessPoint(network.decoded, name); }},
        {"DOCTOR_NAME_PART", [&name](const auto& network) { return contains(network.name, name); }},
    };
    for (const auto& [key, applies] : explanations) {
        const auto found = std::find_if(networks.begin(), networks.end(), applies);
        if (found == networks.end()) {
            continue;
        }
        finding.good = key == explanations[0].first;
        finding.key = finding.good && found->name != name ? "DOCTOR_NAME_SPELT_OTHERWISE" : key;
        finding.variables.emplace_back("Found", TeskString(found->name));
        finding.variables.emplace_back("Quality", found->quality);
        finding.variables.emplace_back("Bytes", tesk5::toHexForm(TeskString(found->name)));
        if (found->keptInstead != nullptr) {
            finding.variables.emplace_back("Hider", TeskString(found->keptInstead->name));
        }
        return finding;
    }
    finding.variables.emplace_back("Visible", shownNames(networks, true));
    return finding;
}
