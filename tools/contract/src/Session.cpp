#include "Session.h"

#include <nativewifi/Guid.h>

#include <mrl/Clock.h>

#include <algorithm>
#include <thread>

using nativewifi::api;
using nativewifi::CLIENT_VERSION;

namespace contract {

namespace {

constexpr std::chrono::milliseconds STEP(20);

std::chrono::milliseconds now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(mrl::Clock::current().now());
}

} // namespace

struct Listener::State {
    GUID guid;
    std::thread::id caller = std::this_thread::get_id();
    mutable std::mutex mutex;
    std::vector<Notice> notices;
};

Listener::Listener(const GUID& guid) : m_state(std::make_unique<State>()) {
    m_state->guid = guid;
    DWORD version = 0;
    // Without a handle there are no notices, which the check then says.
    if (api().WlanOpenHandle(CLIENT_VERSION, nullptr, &version, out(m_handle)) == ERROR_SUCCESS) {
        api().WlanRegisterNotification(m_handle.get(), WLAN_NOTIFICATION_SOURCE_ALL, TRUE, &receive,
                                       m_state.get(), nullptr, nullptr);
    }
}

Listener::~Listener() {
    if (m_handle) {
        api().WlanRegisterNotification(m_handle.get(), WLAN_NOTIFICATION_SOURCE_NONE, TRUE, nullptr,
                                       nullptr, nullptr, nullptr);
    }
}

void CALLBACK Listener::receive(WLAN_NOTIFICATION_DATA* data, PVOID context) {
    auto& state = *static_cast<State*>(context);
    if (!nativewifi::sameGuid(data->InterfaceGuid, state.guid)) {
        return;
    }
    const std::lock_guard lock(state.mutex);
    state.notices.push_back({.source = data->NotificationSource,
                             .code = data->NotificationCode,
                             .onCallersThread = std::this_thread::get_id() == state.caller,
                             .at = now()});
}

std::optional<Notice> Listener::first(DWORD source, std::initializer_list<DWORD> codes) const {
    const std::lock_guard lock(m_state->mutex);
    for (const Notice& notice : m_state->notices) {
        if (notice.source == source &&
            std::find(codes.begin(), codes.end(), notice.code) != codes.end()) {
            return notice;
        }
    }
    return {};
}

mrl::Json Listener::all() const {
    const std::lock_guard lock(m_state->mutex);
    mrl::Json list = mrl::Json::array();
    for (const Notice& notice : m_state->notices) {
        list.push_back({{"source", notice.source}, {"code", notice.code}});
    }
    return list;
}

Session::Session(const Options& options, const std::atomic<bool>& interrupted)
    : m_options(options), m_interrupted(interrupted),
      m_openResult(api().WlanOpenHandle(CLIENT_VERSION, nullptr, &m_version, out(m_handle))) {
    if (m_openResult != ERROR_SUCCESS) {
        return;
    }
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
    m_listResult = api().WlanEnumInterfaces(m_handle.get(), nullptr, out(interfaces));
    if (m_listResult == ERROR_SUCCESS && interfaces && interfaces->dwNumberOfItems > 0) {
        m_interfaces = interfaces->dwNumberOfItems;
        m_guid = interfaces->InterfaceInfo[0].InterfaceGuid;
    }
}

std::string Session::missing(Need need) const {
    if (need == Need::NOTHING) {
        return {};
    }
    if (m_openResult != ERROR_SUCCESS) {
        return "WlanOpenHandle returned " + std::to_string(m_openResult);
    }
    if (need == Need::ADAPTER && m_interfaces == 0) {
        return m_listResult == ERROR_SUCCESS
                   ? std::string("there is no wireless interface")
                   : "WlanEnumInterfaces returned " + std::to_string(m_listResult);
    }
    return {};
}

bool Session::wait(std::chrono::milliseconds limit, const std::function<bool()>& condition) const {
    const std::chrono::milliseconds end = now() + limit;
    while (!condition()) {
        if (m_interrupted || now() >= end) {
            return false;
        }
        mrl::Clock::current().sleep(STEP);
    }
    return true;
}

std::optional<WLAN_RADIO_STATE> Session::radio() const {
    const auto state = query<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state);
    if (!state.succeeded() || !state.has() || state.block->dwNumberOfPhys > WLAN_MAX_PHY_INDEX) {
        return {};
    }
    return *state.block;
}

bool anyPhyOn(const WLAN_RADIO_STATE& state) {
    return std::any_of(state.PhyRadioState, state.PhyRadioState + state.dwNumberOfPhys,
                       [](const WLAN_PHY_RADIO_STATE& phy) {
                           return phy.dot11SoftwareRadioState != dot11_radio_state_off &&
                                  phy.dot11HardwareRadioState != dot11_radio_state_off;
                       });
}

} // namespace contract
