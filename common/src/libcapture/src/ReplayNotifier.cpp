#include "ReplayNotifier.h"

namespace capture {

ReplayNotifier::~ReplayNotifier() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void ReplayNotifier::deliver(const Registration& registration, const Notification& notification) {
    if (isOwnThread()) {
        return;
    }
    std::unique_lock lock(m_mutex);
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { run(); });
    }
    m_registration = &registration;
    m_notification = &notification;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_registration == nullptr; });
}

void ReplayNotifier::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_stopped || m_registration != nullptr; });
        if (m_stopped) {
            return;
        }
        Bytes bytes = m_notification->data;
        WLAN_NOTIFICATION_DATA data{};
        data.NotificationSource = m_notification->source;
        data.NotificationCode = m_notification->code;
        data.InterfaceGuid = m_notification->interfaceGuid;
        data.dwDataSize = static_cast<DWORD>(bytes.size());
        data.pData = bytes.empty() ? nullptr : bytes.data();
        const Registration to = *m_registration;
        lock.unlock();
        to.callback(&data, to.context);
        lock.lock();
        m_registration = nullptr;
        m_changed.notify_all();
    }
}

} // namespace capture
