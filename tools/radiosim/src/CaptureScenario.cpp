// A capture as a scenario: the interfaces that it shows, and what they answered at which time.
// Unlike a replay, it answers whatever is asked, so that a dialog can be opened on it.
#include <radiosim/Scenario.h>

#include <capture/CaptureFile.h>

#include <nativewifi/Guid.h>
#include <nativewifi/Ssid.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstring>

namespace radiosim {

namespace {

using capture::Step;

// The steps' times begin with the first call, as the engine's do.
Milliseconds startOf(const capture::Capture& capture) {
    for (const Step& step : capture.steps) {
        if (std::holds_alternative<capture::Call>(step.what)) {
            return std::chrono::duration_cast<Milliseconds>(step.at);
        }
    }
    return Milliseconds(0);
}

std::string argument(const capture::Call& call, const char* key) {
    const auto found = call.request.arguments.find(key);
    return found != call.request.arguments.end() && found->is_string() ? found->get<std::string>()
                                                                       : std::string();
}

std::optional<std::uint32_t> opcodeOf(const capture::Call& call) {
    const auto found = call.request.arguments.find("opcode");
    return found != call.request.arguments.end() && found->is_number_unsigned()
               ? std::optional(found->get<std::uint32_t>())
               : std::nullopt;
}

// A block as a structure; nothing when there is none of this size.
template <typename T>
std::optional<T> structureIn(const capture::Call& call) {
    if (!call.answer.block || !call.answer.block->bytes ||
        call.answer.block->bytes->size() != sizeof(T)) {
        return std::nullopt;
    }
    T value{};
    std::memcpy(&value, call.answer.block->bytes->data(), sizeof value);
    return value;
}

class Builder {
public:
    explicit Builder(const capture::Capture& capture) : m_start(startOf(capture)) {
        m_scenario.interfaces.clear();
        for (const Step& step : capture.steps) {
            if (const auto* call = std::get_if<capture::Call>(&step.what)) {
                addInterfaces(*call);
            }
        }
        for (const Step& step : capture.steps) {
            const Milliseconds at = std::max(
                std::chrono::duration_cast<Milliseconds>(step.at) - m_start, Milliseconds(0));
            if (const auto* call = std::get_if<capture::Call>(&step.what)) {
                add(*call, at);
            } else if (const auto* sent = std::get_if<capture::Notification>(&step.what)) {
                add(*sent, at);
            }
        }
    }

    Scenario scenario() && { return std::move(m_scenario); }

private:
    Interface* interfaceOf(const GUID& guid) {
        const auto found = std::find_if(
            m_scenario.interfaces.begin(), m_scenario.interfaces.end(),
            [&guid](const Interface& facts) {
                return nativewifi::sameGuid(*nativewifi::parseGuid(mrl::toUtf16(facts.guid)), guid);
            });
        return found == m_scenario.interfaces.end() ? nullptr : &*found;
    }

    void addInterfaces(const capture::Call& call) {
        if (call.request.function != "WlanEnumInterfaces" || !call.answer.block ||
            !call.answer.block->bytes) {
            return;
        }
        // The reader of captures has held the count against the size.
        const capture::Bytes& bytes = *call.answer.block->bytes;
        DWORD count = 0;
        std::memcpy(&count, bytes.data(), sizeof count);
        for (DWORD i = 0; i < count; ++i) {
            WLAN_INTERFACE_INFO info{};
            std::memcpy(&info,
                        bytes.data() + offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo) +
                            i * sizeof info,
                        sizeof info);
            if (interfaceOf(info.InterfaceGuid) == nullptr) {
                m_scenario.interfaces.push_back(
                    {.guid = mrl::toUtf8(nativewifi::guidText(info.InterfaceGuid).view()),
                     .description =
                         mrl::toUtf8(nativewifi::fixedText(info.strInterfaceDescription))});
            }
        }
    }

    void add(const capture::Call& call, Milliseconds at) {
        const std::string guid = argument(call, "interface");
        const std::optional<std::uint32_t> opcode = opcodeOf(call);
        if (call.request.function == "WlanOpenHandle" && call.answer.version) {
            // Each client gets the version it asks for, as from the service, unless that is old.
            m_scenario.serviceVersion =
                *call.answer.version == 1 && call.request.arguments.value("clientVersion", 1U) > 1
                    ? std::optional(1U)
                    : m_scenario.serviceVersion;
        }
        if (opcode == wlan_intf_opcode_radio_state) {
            addPhys(call, guid);
        }
        if (call.request.function == "WlanScan" && call.answer.result == ERROR_SUCCESS) {
            m_scanned.emplace_back(guid, at);
        }
        auto& all = m_scenario.captured;
        auto known = std::find_if(all.begin(), all.end(), [&](const CapturedAnswers& each) {
            return each.function == call.request.function && each.guid == guid &&
                   each.opcode == opcode;
        });
        if (known == all.end()) {
            known = all.insert(all.end(),
                               {.function = call.request.function, .guid = guid, .opcode = opcode});
        }
        CapturedAnswer answer{.at = at, .result = call.answer.result};
        if (call.answer.block) {
            answer.block = call.answer.block->bytes;
        }
        answer.dataSize = call.answer.dataSize.value_or(0);
        known->answers.push_back(std::move(answer));
    }

    // The radio as it is first seen: where switching it begins.
    void addPhys(const capture::Call& call, const std::string& guid) {
        const auto state = structureIn<WLAN_RADIO_STATE>(call);
        const auto parsed = nativewifi::parseGuid(mrl::toUtf16(guid));
        Interface* const facts = state && parsed ? interfaceOf(*parsed) : nullptr;
        if (facts == nullptr ||
            std::find(m_withPhys.begin(), m_withPhys.end(), guid) != m_withPhys.end()) {
            return;
        }
        m_withPhys.push_back(guid);
        facts->phys.clear();
        for (DWORD i = 0; i < std::min<DWORD>(state->dwNumberOfPhys, WLAN_MAX_PHY_INDEX); ++i) {
            facts->phys.push_back(
                {static_cast<std::int32_t>(state->PhyRadioState[i].dot11SoftwareRadioState),
                 static_cast<std::int32_t>(state->PhyRadioState[i].dot11HardwareRadioState)});
        }
    }

    void add(const capture::Notification& sent, Milliseconds at) {
        Interface* const facts = interfaceOf(sent.interfaceGuid);
        if (facts == nullptr) {
            return;
        }
        const bool endsScan = sent.source == WLAN_NOTIFICATION_SOURCE_ACM &&
                              (sent.code == wlan_notification_acm_scan_complete ||
                               sent.code == wlan_notification_acm_scan_fail);
        for (const auto& [guid, begun] : m_scanned) {
            if (endsScan && guid == facts->guid) {
                facts->scanDuration = at - begun; // of the first scan that ended so
                m_scanned.clear();
                break;
            }
        }
        m_scenario.notifications.push_back(
            {.at = at,
             .interfaceIndex = static_cast<std::uint32_t>(facts - m_scenario.interfaces.data()),
             .source = sent.source,
             .code = sent.code,
             .data = {sent.data.begin(), sent.data.end()}});
    }

    Scenario m_scenario;
    const Milliseconds m_start;
    std::vector<std::string> m_withPhys; ///< GUIDs of the interfaces whose radio was seen
    std::vector<std::pair<std::string, Milliseconds>> m_scanned;
};

} // namespace

Scenario Scenario::fromCapture(std::string_view text) {
    try {
        Scenario scenario = Builder(capture::readCapture(text)).scenario();
        scenario.check();
        return scenario;
    } catch (const capture::CaptureError& error) {
        throw ScenarioError("line " + std::to_string(error.line), error.what());
    }
}

} // namespace radiosim
