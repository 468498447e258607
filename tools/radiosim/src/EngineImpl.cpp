// The meaning of each client function, as its public documentation gives it.
#include "EngineImpl.h"

#include <nativewifi/Block.h>
#include <nativewifi/Guid.h>
#include <nativewifi/LinuxRadio.h>
#include <nativewifi/Reasons.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace radiosim {

namespace {

constinit std::atomic<Engine::Impl*> g_current{nullptr};

constexpr DWORD HIGHEST_VERSION = 2;
constexpr DWORD NETWORK_LIST_FLAGS = 0x3; // ad hoc profiles, hidden profiles
constexpr DWORD RADIO_STATE_CHANGE = 7;   // of the media-specific module
constexpr Milliseconds CHANNEL_SCAN{140}; // of one channel alone
constexpr std::int32_t RADIO_ON = 1;
constexpr std::int32_t RADIO_OFF = 2;

std::vector<std::uint8_t> bytesOfPhy(std::size_t index, const Phy& phy) {
    const WLAN_PHY_RADIO_STATE state{static_cast<DWORD>(index),
                                     static_cast<DOT11_RADIO_STATE>(phy.software),
                                     static_cast<DOT11_RADIO_STATE>(phy.hardware)};
    std::vector<std::uint8_t> bytes(sizeof state);
    std::memcpy(bytes.data(), &state, sizeof state);
    return bytes;
}

} // namespace

Engine::Impl* Engine::Impl::current() {
    return g_current.load(std::memory_order_acquire);
}

Engine::Impl::Impl(Scenario scenario)
    : m_clock(mrl::Clock::current()), m_start(m_clock.now()),
      m_serviceVersion(scenario.serviceVersion), m_captured(std::move(scenario.captured)),
      m_notifier(m_clock) {
    scenario.check();
    for (Interface& facts : scenario.interfaces) {
        const GUID guid = *nativewifi::parseGuid(mrl::toUtf16(facts.guid));
        m_interfaces.push_back({.facts = std::move(facts), .guid = guid});
    }
    for (Fault& fault : scenario.faults) {
        addFault(std::move(fault));
    }
    for (Notification& notification : scenario.notifications) {
        if (!notification.at) {
            m_scanNotifications.push_back(std::move(notification));
            continue;
        }
        m_notifier.post(m_start + *notification.at,
                        {m_interfaces[notification.interfaceIndex].guid, notification.source,
                         notification.code, std::move(notification.data)});
    }
    Impl* none = nullptr;
    if (!g_current.compare_exchange_strong(none, this)) {
        throw std::logic_error("another radio simulator is in force");
    }
    m_inForce.emplace(table);
}

Engine::Impl::~Impl() {
    g_current.store(nullptr);
}

// --- handles and interfaces ---

Json Engine::Impl::handleName(HANDLE clientHandle) const {
    if (clientHandle == nullptr) {
        return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    for (const Handle& handle : m_handles) {
        if (&handle == clientHandle) {
            return "h" + std::to_string(handle.number);
        }
    }
    return "?";
}

DWORD Engine::Impl::checkHandle(HANDLE clientHandle, bool argumentsAreGood) const {
    if (clientHandle == nullptr || !argumentsAreGood) {
        return ERROR_INVALID_PARAMETER;
    }
    const bool open =
        std::any_of(m_handles.begin(), m_handles.end(), [clientHandle](const Handle& handle) {
            return &handle == clientHandle && handle.open;
        });
    return open ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

Engine::Impl::LiveInterface* Engine::Impl::find(const GUID& guid) {
    const auto found =
        std::find_if(m_interfaces.begin(), m_interfaces.end(), [&guid](const LiveInterface& live) {
            return !live.removed && nativewifi::sameGuid(live.guid, guid);
        });
    return found == m_interfaces.end() ? nullptr : &*found;
}

DWORD Engine::Impl::findFor(HANDLE clientHandle, const GUID* guid, bool argumentsAreGood,
                            LiveInterface*& live) {
    const DWORD mistake = checkHandle(clientHandle, guid != nullptr && argumentsAreGood);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    live = find(*guid);
    return live == nullptr ? ERROR_NOT_FOUND : ERROR_SUCCESS;
}

const CapturedAnswer* Engine::Impl::captured(std::string_view function, const LiveInterface* live,
                                             std::optional<DWORD> opcode) const {
    const bool ofRadio = opcode == wlan_intf_opcode_radio_state;
    if (live != nullptr && live->switched && (ofRadio || view(*live).radioOff())) {
        return nullptr;
    }
    const std::string guid = live == nullptr ? std::string() : live->facts.guid;
    const auto now = std::chrono::duration_cast<Milliseconds>(elapsed());
    for (const CapturedAnswers& each : m_captured) {
        if (each.function != function || each.guid != guid || each.opcode != opcode) {
            continue;
        }
        const CapturedAnswer* last = &each.answers.front();
        for (const CapturedAnswer& answer : each.answers) {
            last = answer.at <= now ? &answer : last;
        }
        // With its radio switched on again, an interface shows what it showed when it was on.
        for (const CapturedAnswer& answer : each.answers) {
            if (live != nullptr && live->switched &&
                last->result == ERROR_NDIS_DOT11_POWER_STATE_INVALID) {
                last = &answer;
            }
        }
        return last;
    }
    return nullptr;
}

template <typename List>
DWORD Engine::Impl::answerCaptured(const CapturedAnswer& answer, const char* function, List** list,
                                   const Effects& effects) {
    if (answer.result == ERROR_SUCCESS) {
        *list = nullptr;
        if (answer.block) {
            const auto* const bytes = reinterpret_cast<const std::byte*>(answer.block->data());
            *list = static_cast<List*>(handOut(function, Bytes(bytes, bytes + answer.block->size()),
                                               std::nullopt, effects));
        }
    }
    return answer.result;
}

View Engine::Impl::view(const LiveInterface& live) const {
    const mrl::Clock::Duration now = elapsed();
    const auto ended = std::count_if(live.scanEnds.begin(), live.scanEnds.end(),
                                     [now](mrl::Clock::Duration end) { return end <= now; });
    return {live.facts, static_cast<std::size_t>(&live - m_interfaces.data()),
            std::chrono::duration_cast<Milliseconds>(now), static_cast<std::size_t>(ended)};
}

void* Engine::Impl::handOut(const char* function, Bytes block,
                            std::optional<std::size_t> countOffset, const Effects& effects) {
    effects.blockHandedOut();
    if (effects.noData()) {
        return nullptr;
    }
    if (effects.count() && countOffset) {
        overwrite(block, *countOffset, *effects.count());
    }
    if (effects.dataSize()) {
        block.resize(*effects.dataSize());
    }
    return m_blocks.handOut(block, function);
}

// --- the client functions ---

DWORD Engine::Impl::openHandle(DWORD clientVersion, const void* reserved, DWORD* negotiatedVersion,
                               HANDLE* clientHandle, const Effects& effects, Json& output) {
    if (reserved != nullptr || negotiatedVersion == nullptr || clientHandle == nullptr ||
        clientVersion == 0) {
        return ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    if (const CapturedAnswer* answer = captured("WlanOpenHandle");
        answer != nullptr && answer->result != ERROR_SUCCESS) {
        return answer->result;
    }
    const auto number = static_cast<std::uint32_t>(m_handles.size() + 1);
    Handle& handle = m_handles.emplace_back(Handle{number, true});
    const DWORD common = std::min(clientVersion, HIGHEST_VERSION);
    *negotiatedVersion = effects.version().value_or(m_serviceVersion.value_or(common));
    *clientHandle = &handle;
    output["negotiatedVersion"] = *negotiatedVersion;
    output["handle"] = "h" + std::to_string(number);
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::closeHandle(HANDLE clientHandle, const void* reserved) {
    std::uint32_t number = 0;
    {
        const std::lock_guard lock(m_mutex);
        const DWORD mistake = checkHandle(clientHandle, reserved == nullptr);
        if (mistake != ERROR_SUCCESS) {
            return mistake;
        }
        auto* const handle = static_cast<Handle*>(clientHandle);
        handle->open = false;
        number = handle->number;
    }
    m_notifier.registerClient(number, {});
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::enumInterfaces(HANDLE clientHandle, const void* reserved,
                                   WLAN_INTERFACE_INFO_LIST** interfaceList, const Effects& effects,
                                   Json& output) {
    const std::lock_guard lock(m_mutex);
    const DWORD mistake =
        checkHandle(clientHandle, reserved == nullptr && interfaceList != nullptr);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    if (const CapturedAnswer* answer = captured("WlanEnumInterfaces")) {
        return answerCaptured(*answer, "WlanEnumInterfaces", interfaceList, effects);
    }
    std::vector<WLAN_INTERFACE_INFO> interfaces;
    for (const LiveInterface& live : m_interfaces) {
        if (!live.removed) {
            interfaces.push_back(view(live).info(live.guid));
        }
    }
    constexpr std::size_t COUNT = offsetof(WLAN_INTERFACE_INFO_LIST, dwNumberOfItems);
    Bytes block =
        nativewifi::listBlock(COUNT, offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo), interfaces);
    output["interfaces"] = interfaces.size();
    *interfaceList = static_cast<WLAN_INTERFACE_INFO_LIST*>(
        handOut("WlanEnumInterfaces", std::move(block), COUNT, effects));
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::queryInterface(HANDLE clientHandle, const GUID* interfaceGuid, DWORD opcode,
                                   const void* reserved, DWORD* dataSize, void** data,
                                   WLAN_OPCODE_VALUE_TYPE* valueType, const Effects& effects,
                                   Json& output) {
    const std::lock_guard lock(m_mutex);
    LiveInterface* live = nullptr;
    const DWORD mistake =
        findFor(clientHandle, interfaceGuid,
                reserved == nullptr && dataSize != nullptr && data != nullptr, live);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    if (const CapturedAnswer* known = captured("WlanQueryInterface", live, opcode)) {
        if (known->result == ERROR_SUCCESS) {
            *dataSize = known->dataSize;
            output["dataSize"] = *dataSize;
        }
        if (known->result == ERROR_SUCCESS && valueType != nullptr) {
            *valueType = wlan_opcode_value_type_query_only;
        }
        return answerCaptured(*known, "WlanQueryInterface", data, effects);
    }
    View::Answer answer = view(*live).query(opcode);
    if (answer.code != ERROR_SUCCESS) {
        return answer.code;
    }
    *dataSize = effects.dataSize().value_or(static_cast<std::uint32_t>(answer.block.size()));
    *data = handOut("WlanQueryInterface", std::move(answer.block),
                    answer.counted ? std::optional(answer.countOffset) : std::nullopt, effects);
    if (valueType != nullptr) {
        *valueType = wlan_opcode_value_type_query_only;
    }
    output["dataSize"] = *dataSize;
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::setInterface(HANDLE clientHandle, const GUID* interfaceGuid, DWORD opcode,
                                 DWORD dataSize, const void* data, const void* reserved) {
    const std::lock_guard lock(m_mutex);
    LiveInterface* live = nullptr;
    const DWORD mistake = findFor(clientHandle, interfaceGuid,
                                  reserved == nullptr && data != nullptr && dataSize != 0, live);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    Interface& facts = live->facts;
    if (opcode == wlan_intf_opcode_radio_state) {
        WLAN_PHY_RADIO_STATE wanted{};
        if (dataSize != sizeof wanted) {
            return ERROR_INVALID_PARAMETER;
        }
        std::memcpy(&wanted, data, sizeof wanted);
        const auto software = static_cast<std::int32_t>(wanted.dot11SoftwareRadioState);
        if (wanted.dwPhyIndex >= facts.phys.size() ||
            (software != RADIO_ON && software != RADIO_OFF)) {
            return ERROR_INVALID_PARAMETER;
        }
        Phy& phy = facts.phys[wanted.dwPhyIndex];
        if (phy.hardware == RADIO_OFF) {
            return ERROR_INVALID_STATE;
        }
        if (phy.software != software) {
            phy.software = software;
            live->switched = true;
            radioChanged(*live, wanted.dwPhyIndex);
        }
        return ERROR_SUCCESS;
    }
    if (opcode == nativewifi::wlan_intf_opcode_scan_channel) {
        if (dataSize != sizeof(nativewifi::ChannelScan)) {
            return ERROR_INVALID_PARAMETER;
        }
        if (view(*live).radioOff()) {
            return ERROR_NDIS_DOT11_POWER_STATE_INVALID;
        }
        beginScan(*live, std::min(facts.scanDuration, CHANNEL_SCAN));
        return ERROR_SUCCESS;
    }
    std::int32_t value = 0;
    if (dataSize != sizeof value) {
        return ERROR_INVALID_PARAMETER;
    }
    std::memcpy(&value, data, sizeof value);
    if (bool Interface::*const flag = flagOf(opcode)) {
        facts.*flag = value != FALSE;
    } else if (opcode == wlan_intf_opcode_bss_type) {
        facts.bssType = value;
    } else {
        return ERROR_INVALID_PARAMETER;
    }
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::registerNotification(HANDLE clientHandle, DWORD source,
                                         WLAN_NOTIFICATION_CALLBACK callback, void* context,
                                         const void* reserved, DWORD* previousSource,
                                         Json& output) {
    std::uint32_t number = 0;
    {
        const std::lock_guard lock(m_mutex);
        const DWORD mistake =
            checkHandle(clientHandle, reserved == nullptr && (source == 0 || callback != nullptr));
        if (mistake != ERROR_SUCCESS) {
            return mistake;
        }
        number = static_cast<const Handle*>(clientHandle)->number;
    }
    const DWORD previous = m_notifier.registerClient(number, {source, callback, context});
    if (previousSource != nullptr) {
        *previousSource = previous;
        output["previousSource"] = previous;
    }
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::networkList(HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags,
                                const void* reserved, WLAN_AVAILABLE_NETWORK_LIST** list,
                                const Effects& effects, Json& output) {
    const std::lock_guard lock(m_mutex);
    LiveInterface* live = nullptr;
    const bool good = reserved == nullptr && list != nullptr && (flags & ~NETWORK_LIST_FLAGS) == 0;
    const DWORD mistake = findFor(clientHandle, interfaceGuid, good, live);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    if (const CapturedAnswer* answer = captured("WlanGetAvailableNetworkList", live)) {
        return answerCaptured(*answer, "WlanGetAvailableNetworkList", list, effects);
    }
    const View now = view(*live);
    if (now.radioOff()) {
        return ERROR_NDIS_DOT11_POWER_STATE_INVALID;
    }
    Bytes block = now.networkList();
    constexpr std::size_t COUNT = offsetof(WLAN_AVAILABLE_NETWORK_LIST, dwNumberOfItems);
    output["networks"] = (block.size() - offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network)) /
                         sizeof(WLAN_AVAILABLE_NETWORK);
    *list = static_cast<WLAN_AVAILABLE_NETWORK_LIST*>(
        handOut("WlanGetAvailableNetworkList", std::move(block), COUNT, effects));
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::reasonToString(DWORD reasonCode, DWORD bufferSize, WCHAR* buffer,
                                   const void* reserved, Json& output) {
    if (bufferSize == 0 || buffer == nullptr || reserved != nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    nativewifi::copyReason(reasonCode, bufferSize, buffer);
    output["text"] = mrl::toUtf8(buffer);
    return ERROR_SUCCESS;
}

DWORD Engine::Impl::scan(HANDLE clientHandle, const GUID* interfaceGuid, const DOT11_SSID* ssid,
                         const void* reserved) {
    const std::lock_guard lock(m_mutex);
    LiveInterface* live = nullptr;
    const bool good =
        reserved == nullptr && (ssid == nullptr || ssid->uSSIDLength <= DOT11_SSID_MAX_LENGTH);
    const DWORD mistake = findFor(clientHandle, interfaceGuid, good, live);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    const CapturedAnswer* const known = captured("WlanScan", live);
    if (known != nullptr && known->result != ERROR_SUCCESS) {
        return known->result;
    }
    if (known == nullptr && view(*live).radioOff()) {
        return ERROR_NDIS_DOT11_POWER_STATE_INVALID;
    }
    beginScan(*live, live->facts.scanDuration);
    return ERROR_SUCCESS;
}

// The lock is held.
void Engine::Impl::beginScan(LiveInterface& live, Milliseconds duration) {
    const mrl::Clock::Duration now = elapsed();
    if (now < live.busyUntil) {
        return; // the scan under way serves this caller too
    }
    const mrl::Clock::Duration end = now + duration;
    live.busyUntil = end;
    ++live.scansStarted;
    if (live.facts.scanEnd != ScanEnd::FAIL) {
        live.scanEnds.push_back(end);
    }
    if (live.facts.scanEnd != ScanEnd::SILENT) {
        Notifier::Event event{live.guid, WLAN_NOTIFICATION_SOURCE_ACM,
                              wlan_notification_acm_scan_complete};
        if (live.facts.scanEnd == ScanEnd::FAIL) {
            event.code = wlan_notification_acm_scan_fail;
            event.data = {0x01, 0x00, 0x01, 0x00}; // an unknown reason
        }
        m_notifier.post(m_start + end, std::move(event));
    }
    const auto index = static_cast<std::size_t>(&live - m_interfaces.data());
    for (const Notification& notification : m_scanNotifications) {
        if (notification.interfaceIndex == index &&
            (notification.afterScan == 0 || notification.afterScan == live.scansStarted)) {
            m_notifier.post(m_start + end,
                            {live.guid, notification.source, notification.code, notification.data});
        }
    }
}

DWORD Engine::Impl::bssList(HANDLE clientHandle, const GUID* interfaceGuid, const DOT11_SSID* ssid,
                            DOT11_BSS_TYPE bssType, BOOL secured, const void* reserved,
                            WLAN_BSS_LIST** list, const Effects& effects, Json& output) {
    const std::lock_guard lock(m_mutex);
    LiveInterface* live = nullptr;
    const bool ssidIsGood =
        ssid == nullptr ||
        (ssid->uSSIDLength <= DOT11_SSID_MAX_LENGTH &&
         (bssType == dot11_BSS_type_infrastructure || bssType == dot11_BSS_type_independent));
    const DWORD mistake = findFor(clientHandle, interfaceGuid,
                                  reserved == nullptr && list != nullptr && ssidIsGood, live);
    if (mistake != ERROR_SUCCESS) {
        return mistake;
    }
    if (const CapturedAnswer* answer = captured("WlanGetNetworkBssList", live)) {
        return answerCaptured(*answer, "WlanGetNetworkBssList", list, effects);
    }
    const View now = view(*live);
    if (now.radioOff()) {
        return ERROR_NDIS_DOT11_POWER_STATE_INVALID;
    }
    std::optional<BssFilter> filter;
    if (ssid != nullptr) {
        filter = BssFilter{std::string(ssid->ucSSID, ssid->ucSSID + ssid->uSSIDLength),
                           static_cast<std::int32_t>(bssType), secured != FALSE};
    }
    Bytes block = now.bssList(filter);
    constexpr std::size_t COUNT = offsetof(WLAN_BSS_LIST, dwNumberOfItems);
    DWORD count = 0;
    std::memcpy(&count, block.data() + COUNT, sizeof count);
    output["entries"] = count;
    *list = static_cast<WLAN_BSS_LIST*>(
        handOut("WlanGetNetworkBssList", std::move(block), COUNT, effects));
    return ERROR_SUCCESS;
}

// --- changes while it runs ---

void Engine::Impl::radioChanged(const LiveInterface& live, std::size_t phy) {
    m_notifier.post(m_clock.now(), {live.guid, WLAN_NOTIFICATION_SOURCE_MSM, RADIO_STATE_CHANGE,
                                    bytesOfPhy(phy, live.facts.phys[phy])});
}

void Engine::Impl::setRadio(std::size_t index, std::size_t phy,
                            std::optional<std::int32_t> software,
                            std::optional<std::int32_t> hardware) {
    change(index, [&](LiveInterface& live) {
        Phy& state = live.facts.phys.at(phy);
        state.software = software.value_or(state.software);
        state.hardware = hardware.value_or(state.hardware);
        radioChanged(live, phy);
    });
}

void Engine::Impl::addFault(Fault fault) {
    const std::string mistake = faultMistake(fault);
    if (!mistake.empty()) {
        throw ScenarioError("/faults", mistake);
    }
    faults.add(std::move(fault));
}

void Engine::Impl::stopService(DWORD code) {
    std::vector<std::uint32_t> ended;
    {
        const std::lock_guard lock(m_mutex);
        m_stoppedWith = code;
        for (Handle& handle : m_handles) {
            if (std::exchange(handle.open, false)) {
                ended.push_back(handle.number);
            }
        }
    }
    for (const std::uint32_t number : ended) {
        m_notifier.registerClient(number, {});
    }
}

DWORD Engine::Impl::stoppedCode(std::string_view function) const {
    // What the client's own DLL does by itself.
    constexpr std::string_view WITHOUT_SERVICE[] = {"WlanFreeMemory", "WlanAllocateMemory",
                                                    "WlanReasonCodeToString"};
    const bool needsService = function.starts_with("Wlan") &&
                              std::find(std::begin(WITHOUT_SERVICE), std::end(WITHOUT_SERVICE),
                                        function) == std::end(WITHOUT_SERVICE);
    return needsService ? m_stoppedWith.load() : DWORD{ERROR_SUCCESS};
}

void Engine::Impl::notify(std::size_t index, Notifier::Event event) {
    change(index, [&](const LiveInterface& live) {
        event.interfaceGuid = live.guid;
        m_notifier.post(m_clock.now(), std::move(event));
    });
}

std::size_t Engine::Impl::openHandles() const {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(std::count_if(
        m_handles.begin(), m_handles.end(), [](const Handle& handle) { return handle.open; }));
}

Leaks Engine::Impl::leaks() const {
    const Blocks::Sum live = m_blocks.live();
    return {openHandles(), live.count, live.bytes,
            static_cast<std::size_t>(std::max(m_texts.load(), 0))};
}

} // namespace radiosim
