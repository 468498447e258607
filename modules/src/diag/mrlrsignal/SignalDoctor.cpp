#include "SignalDoctor.h"

#include <levels/TargetParameters.h>
#include <readings/Query.h>

#include <tesk5/Texts.h>

#include <networkadapters/MachineCheck.h>
#include <networkadapters/RadioFindings.h>

#include <algorithm>
#include <map>

using readings::Bssid;
using readings::Reading;
using readings::Target;
using tesk5::Findings;
using tesk5::TeskString;

namespace {

constexpr std::chrono::seconds LISTENING{6};
constexpr std::size_t MOST_SHOWN = 10;
constexpr const char* DBM = "dBm";

// The last fresh reading of each radio that was heard.
using Heard = std::map<Bssid, Reading>;

std::vector<Reading> strongestFirst(const Heard& heard) {
    std::vector<Reading> readings;
    readings.reserve(heard.size());
    for (const auto& [bssid, reading] : heard) {
        readings.push_back(reading);
    }
    std::ranges::stable_sort(readings, std::ranges::greater(), &Reading::dbm);
    return readings;
}

std::string levelText(const Reading& reading) {
    return std::to_string(reading.dbm) + " " + DBM;
}

// The names that were heard with the highest level of each, by falling level; for the rest "...". A
// name that is hidden is empty.
std::string namesIn(const Heard& heard) {
    std::vector<std::string> named;
    std::string all;
    for (const Reading& reading : strongestFirst(heard)) {
        if (std::ranges::count(named, reading.ssid) > 0) {
            continue;
        }
        if (named.size() == MOST_SHOWN) {
            return all + ", ...";
        }
        named.push_back(reading.ssid);
        all += (all.empty() ? "\"" : ", \"") + TeskString(reading.ssid).utf8() + "\" (" +
               levelText(reading) + ")";
    }
    return all;
}

class Examination {
public:
    Examination(const tesk5::DiagDevice& device, Findings& findings)
        : m_device(device), m_findings(findings) {}

    void run(tesk5::ExaminationDepth depth) {
        readings::LevelSource source(levels::interfaceOf(m_device), Target{});
        const auto end = mrl::Clock::current().now() + LISTENING;
        Heard heard;
        for (;;) {
            const readings::Look look = source.look();
            if (look.error != ERROR_SUCCESS) {
                addFailure("WlanGetNetworkBssList", look.error);
                return;
            }
            if (look.scanError == ERROR_ACCESS_DENIED ||
                look.scanError == ERROR_NDIS_DOT11_POWER_STATE_INVALID) {
                addFailure("WlanScan", look.scanError);
                return;
            }
            for (const Reading& reading : look.readings) {
                heard[reading.bssid] = reading;
            }
            if (depth == tesk5::ExaminationDepth::QUICK) {
                return;
            }
            if (mrl::Clock::current().now() >= end) {
                break;
            }
            mrl::Clock::current().sleep(source.pause());
        }
        addHeard(heard);
    }

private:
    void add(const char* key, bool good, tesk5::Event::Variables variables) {
        variables.insert(variables.begin(), {"Device", m_device.name()});
        m_findings.push_back({key, good, std::move(variables)});
    }

    void addFailure(const char* function, DWORD error) {
        switch (error) {
        case ERROR_SERVICE_NOT_ACTIVE: // the framework has asked the service
        case ERROR_INVALID_HANDLE:
            return;
        case ERROR_ACCESS_DENIED:
            tesk5::addOnce(networkadapters::accessDenied(m_device.name(), function, error),
                           m_findings);
            return;
        case ERROR_NDIS_DOT11_POWER_STATE_INVALID:
            if (!networkadapters::explainsRadio(m_findings)) {
                m_findings.push_back(
                    networkadapters::radioSwitchedOff(m_device.name(), isOffByHardware()));
            }
            return;
        default:
            m_findings.push_back(networkadapters::callFailed(m_device.name(), function, error));
        }
    }

    // Whether the switch of any part of the radio is off.
    bool isOffByHardware() const {
        nativewifi::ClientHandle client;
        if (readings::openClient(client) != ERROR_SUCCESS) {
            return false;
        }
        const auto state = readings::query<WLAN_RADIO_STATE>(
            client.get(), levels::interfaceOf(m_device), wlan_intf_opcode_radio_state);
        if (!state) {
            return false;
        }
        const DWORD phys = std::min<DWORD>(state->dwNumberOfPhys, WLAN_MAX_PHY_INDEX);
        return std::any_of(state->PhyRadioState, state->PhyRadioState + phys, [](const auto& phy) {
            return phy.dot11HardwareRadioState == dot11_radio_state_off;
        });
    }

    void addHeard(const Heard& heard) {
        if (heard.empty()) {
            m_findings.push_back(networkadapters::noNetworks(m_device.name()));
            return;
        }
        add("DOCTOR_RADIOS_HEARD", true, {{"Count", heard.size()}, {"Names", namesIn(heard)}});
        const Target target = levels::targetOfParameters();
        if (!target.ssid && !target.bssid) {
            return;
        }
        Heard meant;
        std::ranges::copy_if(heard, std::inserter(meant, meant.end()), [&target](const auto& each) {
            return target.matches(each.second.ssid, each.first, each.second.mhz);
        });
        addTarget(strongestFirst(meant), heard);
    }

    void addTarget(const std::vector<Reading>& meant, const Heard& heard) {
        if (meant.empty()) {
            add("DOCTOR_TARGET_NOT_HEARD", false,
                {{"Name", levels::nameOfTarget()}, {"Names", namesIn(heard)}});
            return;
        }
        std::string candidates;
        for (const Reading& reading : meant) {
            candidates += candidates.empty() ? "" : "; ";
            candidates += readings::bssidText(reading.bssid) + ", " + std::to_string(reading.mhz) +
                          " MHz, " + levelText(reading);
        }
        const bool differ =
            static_cast<double>(meant.front().dbm - meant.back().dbm) > readings::SAME_LEVEL;
        add(differ ? "DOCTOR_TARGET_AMBIGUOUS" : "DOCTOR_TARGET_HEARD", !differ,
            {{"Name", levels::nameOfTarget()}, {"Candidates", candidates}});
    }

    const tesk5::DiagDevice& m_device;
    Findings& m_findings;
};

} // namespace

void examineForLevels(const tesk5::DiagDevice& device, tesk5::ExaminationDepth depth,
                      Findings& findings) {
    Examination(device, findings).run(depth);
}
