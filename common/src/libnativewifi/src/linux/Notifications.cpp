#include "Notifications.h"

#include "CallError.h"

#include <nativewifi/Guid.h>
#include <nativewifi/Ssid.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <utility>

namespace nativewifi::linux_radio {

namespace {

// Of the auto-configuration source.
constexpr DWORD SCAN_COMPLETE = wlan_notification_acm_scan_complete;
constexpr DWORD SCAN_FAIL = wlan_notification_acm_scan_fail;
constexpr DWORD CONNECTION_COMPLETE = 10;
constexpr DWORD CONNECTION_ATTEMPT_FAIL = 11;
constexpr DWORD INTERFACE_ARRIVAL = 13;
constexpr DWORD INTERFACE_REMOVAL = 14;
constexpr DWORD DISCONNECTED = 21;
constexpr DWORD SCAN_LIST_REFRESH = 26;
// Of the media-specific module.
constexpr DWORD RADIO_STATE_CHANGE = 7;

constexpr WLAN_REASON_CODE REASON_SUCCESS = 0;
constexpr WLAN_REASON_CODE REASON_UNKNOWN = 0x10001;

// Signals are for the program's own threads. A new thread inherits the mask.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

bool isSame(const WLAN_PHY_RADIO_STATE& a, const WLAN_PHY_RADIO_STATE& b) {
    return a.dot11SoftwareRadioState == b.dot11SoftwareRadioState &&
           a.dot11HardwareRadioState == b.dot11HardwareRadioState;
}

} // namespace

std::shared_ptr<Notifications> Notifications::start(std::shared_ptr<Radios> radios,
                                                    std::unique_ptr<Announcements> announcements,
                                                    const Registration& registration) {
    // The constructor is private.
    std::shared_ptr<Notifications> self(
        new Notifications(std::move(radios), std::move(announcements), registration));
    const SignalsBlocked blocked;
    // Detached, because a callback may stop it, which cannot join its own thread.
    std::thread([self] { self->run(); }).detach();
    return self;
}

Notifications::Notifications(std::shared_ptr<Radios> radios,
                             std::unique_ptr<Announcements> announcements,
                             const Registration& registration)
    : m_radios(std::move(radios)), m_announcements(std::move(announcements)),
      m_seen(m_radios->adapters()), m_registration(registration) {
    for (const Adapter& adapter : m_seen) {
        m_radioStates[adapter.interface.index] = m_radios->radio(adapter);
    }
}

void Notifications::replace(const Registration& registration) {
    const std::lock_guard lock(m_mutex);
    m_registration = registration;
}

Registration Notifications::registration() const {
    const std::lock_guard lock(m_mutex);
    return m_registration;
}

void Notifications::stop() {
    std::unique_lock lock(m_mutex);
    m_stopped = true;
    if (m_announcements) {
        m_announcements->stop();
    }
    if (m_thread != std::this_thread::get_id()) {
        m_end.wait(lock, [this] { return m_ended; });
    }
}

bool Notifications::ended() const {
    const std::lock_guard lock(m_mutex);
    return m_ended;
}

void Notifications::run() {
    {
        const std::lock_guard lock(m_mutex);
        m_thread = std::this_thread::get_id();
    }
    while (!m_stopped && waitOnce()) {
    }
    m_radios.reset();
    const std::lock_guard lock(m_mutex);
    m_announcements.reset();
    m_ended = true;
    m_end.notify_all();
}

// What one message cannot tell, for example because its interface has gone meanwhile, the next one
// may.
bool Notifications::waitOnce() {
    try {
        return m_announcements->wait(*this);
    } catch (const std::exception&) {
        return true;
    }
}

void Notifications::deliver(DWORD source, DWORD code, const GUID& guid, Block data) {
    const Registration to = registration();
    if (m_stopped || (to.source & source) == 0) {
        return;
    }
    WLAN_NOTIFICATION_DATA notification{};
    notification.NotificationSource = source;
    notification.NotificationCode = code;
    notification.InterfaceGuid = guid;
    notification.dwDataSize = static_cast<DWORD>(data.size());
    notification.pData = data.empty() ? nullptr : data.data();
    to.callback(&notification, to.context);
}

void Notifications::onMessage(std::uint8_t command, Attributes attributes) {
    const Event event = readEvent(command, attributes);
    switch (event.kind) {
    case Event::Kind::SCAN_COMPLETED:
    case Event::Kind::SCAN_ABORTED:
        return onScanEnd(event);
    case Event::Kind::CONNECTED:
    case Event::Kind::DISCONNECTED:
        return onConnection(event);
    case Event::Kind::INTERFACE_ADDED:
        return onInterfaces(std::nullopt);
    case Event::Kind::INTERFACE_REMOVED:
        return onInterfaces(event.interface);
    case Event::Kind::SCAN_STARTED:
    case Event::Kind::OTHER:
        return;
    }
}

void Notifications::onScanEnd(const Event& event) {
    for (const GUID& guid : m_radios->scanEnded(event)) {
        if (event.kind == Event::Kind::SCAN_COMPLETED) {
            deliver(WLAN_NOTIFICATION_SOURCE_ACM, SCAN_COMPLETE, guid);
            deliver(WLAN_NOTIFICATION_SOURCE_ACM, SCAN_LIST_REFRESH, guid);
        } else {
            deliver(WLAN_NOTIFICATION_SOURCE_ACM, SCAN_FAIL, guid, blockOf(REASON_UNKNOWN));
        }
    }
}

std::optional<Adapter> Notifications::adapterOf(const Event& event) {
    if (!event.interface) {
        return std::nullopt;
    }
    for (const std::vector<Adapter>& adapters : {m_seen, m_radios->adapters()}) {
        if (const Adapter* const adapter = findByIndex(adapters, *event.interface)) {
            return *adapter;
        }
    }
    return std::nullopt;
}

void Notifications::onConnection(const Event& event) {
    const std::optional<Adapter> adapter = adapterOf(event);
    if (!adapter) {
        return;
    }
    const bool refused = event.statusCode.value_or(0) != 0;
    WLAN_CONNECTION_NOTIFICATION_DATA data{};
    data.wlanConnectionMode = wlan_connection_mode_profile;
    data.dot11Ssid = toSsid({reinterpret_cast<const char*>(event.ssid.data()), event.ssid.size()});
    data.dot11BssType = dot11_BSS_type_infrastructure;
    data.wlanReasonCode = refused ? REASON_UNKNOWN : REASON_SUCCESS;
    const DWORD code = event.kind == Event::Kind::DISCONNECTED ? DISCONNECTED
                       : refused                               ? CONNECTION_ATTEMPT_FAIL
                                                               : CONNECTION_COMPLETE;
    deliver(WLAN_NOTIFICATION_SOURCE_ACM, code, adapter->guid, blockOf(data));
}

void Notifications::onInterfaces(std::optional<std::uint32_t> removed) {
    std::vector<Adapter> present = m_radios->adapters();
    // Announced before it is gone.
    std::erase_if(present,
                  [removed](const Adapter& adapter) { return adapter.interface.index == removed; });
    const std::vector<Adapter> before = std::exchange(m_seen, present);
    for (const Adapter& adapter : before) {
        if (findByGuid(present, adapter.guid) == nullptr) {
            m_radioStates.erase(adapter.interface.index);
            deliver(WLAN_NOTIFICATION_SOURCE_ACM, INTERFACE_REMOVAL, adapter.guid);
        }
    }
    for (const Adapter& adapter : present) {
        if (findByGuid(before, adapter.guid) == nullptr) {
            m_radioStates[adapter.interface.index] = m_radios->radio(adapter);
            deliver(WLAN_NOTIFICATION_SOURCE_ACM, INTERFACE_ARRIVAL, adapter.guid);
        }
    }
}

void Notifications::onSwitch() {
    for (const Adapter& adapter : m_radios->adapters()) {
        const WLAN_PHY_RADIO_STATE now = m_radios->radio(adapter);
        const auto [known, isNew] = m_radioStates.try_emplace(adapter.interface.index, now);
        const WLAN_PHY_RADIO_STATE before = std::exchange(known->second, now);
        if (!isNew && !isSame(now, before)) {
            deliver(WLAN_NOTIFICATION_SOURCE_MSM, RADIO_STATE_CHANGE, adapter.guid, blockOf(now));
        }
    }
}

// The end of a scan may be among the lost messages, and a client that waits for it would wait
// for ever: one too many is the lesser evil.
void Notifications::onLoss() {
    onInterfaces(std::nullopt);
    for (const Adapter& adapter : m_seen) {
        Event end;
        end.kind = Event::Kind::SCAN_COMPLETED;
        end.interface = adapter.interface.index;
        end.wiphy = adapter.interface.wiphy;
        onScanEnd(end);
    }
}

} // namespace nativewifi::linux_radio
