// Delivers notifications when they become due, on a thread of its own, as the service's
// notification pool does.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/Clock.h>

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace radiosim {

/// Registrations by client number, and what is to be sent. Any thread; no lock is held while a
/// callback runs.
class Notifier {
public:
    struct Registration {
        DWORD source = 0;
        WLAN_NOTIFICATION_CALLBACK callback = nullptr;
        void* context = nullptr;
    };

    struct Event {
        GUID interfaceGuid{};
        DWORD source = 0;
        DWORD code = 0;
        std::vector<std::uint8_t> data = {};
    };

    explicit Notifier(mrl::Clock& clock);
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;
    ~Notifier() { stop(); }

    /// Waits for a running callback; what is still pending is dropped, now and from now on.
    void stop();

    /// Replaces the client's registration; with source 0 it has none afterwards, and a running
    /// callback of it has ended, except when called from a callback.
    /// \return the source before
    DWORD registerClient(std::uint32_t client, Registration registration);

    /// Events with the same time are delivered in the order of posting.
    void post(mrl::Clock::Duration due, Event event);

    /// Blocks until everything due by now has been delivered; from a callback returns at once.
    void settle();

private:
    void run();
    void deliver(std::unique_lock<std::mutex>& lock, Event event);
    void waitForCallback(std::unique_lock<std::mutex>& lock, std::uint32_t client);

    mrl::Clock& m_clock;
    std::mutex m_mutex;
    std::condition_variable m_changed; ///< something to do for the thread
    std::condition_variable m_idle;    ///< a callback or an event has ended
    std::multimap<mrl::Clock::Duration, Event> m_pending;
    std::map<std::uint32_t, Registration> m_registrations;
    std::uint32_t m_running = 0; ///< the client whose callback runs
    bool m_delivering = false;
    bool m_stopped = false;
    std::thread m_thread; ///< last: it starts when everything else is there
};

} // namespace radiosim
