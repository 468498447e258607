#include "Notifier.h"

#include <chrono>
#include <utility>

namespace radiosim {

namespace {
// How long the thread waits when nothing is pending; a new event wakes it before.
constexpr std::chrono::hours IDLE{1};
} // namespace

Notifier::Notifier(mrl::Clock& clock) : m_clock(clock), m_thread([this] { run(); }) {}

void Notifier::stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

DWORD Notifier::registerClient(std::uint32_t client, Registration registration) {
    std::unique_lock lock(m_mutex);
    const auto found = m_registrations.find(client);
    const DWORD previous = found == m_registrations.end() ? 0 : found->second.source;
    if (registration.source != 0) {
        m_registrations[client] = registration;
        return previous;
    }
    if (found != m_registrations.end()) {
        m_registrations.erase(found);
    }
    waitForCallback(lock, client);
    return previous;
}

void Notifier::post(mrl::Clock::Duration due, Event event) {
    {
        const std::lock_guard lock(m_mutex);
        m_pending.emplace(due, std::move(event));
    }
    m_changed.notify_all();
}

void Notifier::settle() {
    if (std::this_thread::get_id() == m_thread.get_id()) {
        return;
    }
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] {
        return !m_delivering && (m_pending.empty() || m_pending.begin()->first > m_clock.now());
    });
}

void Notifier::run() {
    std::unique_lock lock(m_mutex);
    while (!m_stopped) {
        const mrl::Clock::Duration now = m_clock.now();
        const auto first = m_pending.begin();
        if (first == m_pending.end() || first->first > now) {
            m_clock.waitUntil(lock, m_changed,
                              first == m_pending.end() ? now + IDLE : first->first);
            continue;
        }
        Event event = std::move(first->second);
        m_pending.erase(first);
        deliver(lock, std::move(event));
    }
}

void Notifier::deliver(std::unique_lock<std::mutex>& lock, Event event) {
    m_delivering = true;
    std::vector<std::uint32_t> clients;
    for (const auto& [client, registration] : m_registrations) {
        clients.push_back(client);
    }
    for (const std::uint32_t client : clients) {
        // Looked up again each time: the callback before may have closed this client.
        const auto found = m_registrations.find(client);
        if (m_stopped || found == m_registrations.end() ||
            (found->second.source & event.source) == 0) {
            continue;
        }
        const Registration registration = found->second;
        m_running = client;
        lock.unlock();
        WLAN_NOTIFICATION_DATA data{};
        data.NotificationSource = event.source;
        data.NotificationCode = event.code;
        data.InterfaceGuid = event.interfaceGuid;
        data.dwDataSize = static_cast<DWORD>(event.data.size());
        data.pData = event.data.empty() ? nullptr : event.data.data();
        registration.callback(&data, registration.context);
        lock.lock();
        m_running = 0;
        m_idle.notify_all();
    }
    m_delivering = false;
    m_idle.notify_all();
}

void Notifier::waitForCallback(std::unique_lock<std::mutex>& lock, std::uint32_t client) {
    // The real service never returns here. The simulator does: a test that hangs shows no reason.
    if (std::this_thread::get_id() == m_thread.get_id()) {
        return;
    }
    m_idle.wait(lock, [this, client] { return m_running != client; });
}

} // namespace radiosim
