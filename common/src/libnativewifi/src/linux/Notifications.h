// A client's notifications, on a thread of its own.
#pragma once

#include "Radios.h"
#include "Transport.h"

#include <nativewifi/Block.h>
#include <nativewifi/WlanTypes.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace nativewifi::linux_radio {

/// What WlanRegisterNotification says.
struct Registration {
    DWORD source = WLAN_NOTIFICATION_SOURCE_NONE;
    WLAN_NOTIFICATION_CALLBACK callback = nullptr;
    void* context = nullptr;
};

/// The thread blocks until the kernel announces something, makes notifications of it and calls back
/// without a lock. Any thread.
class Notifications final : private Announcements::Receiver {
public:
    /// Failure: throws CallError, std::system_error without a thread
    static std::shared_ptr<Notifications> start(std::shared_ptr<Radios> radios,
                                                std::unique_ptr<Announcements> announcements,
                                                const Registration& registration);

    void replace(const Registration& registration);
    Registration registration() const;
    /// Nothing is delivered from now on. Waits for a running callback, unless called from it.
    void stop();
    /// Whether the thread is done.
    bool ended() const;

private:
    using RadioStates = std::map<std::uint32_t, WLAN_PHY_RADIO_STATE>;

    Notifications(std::shared_ptr<Radios> radios, std::unique_ptr<Announcements> announcements,
                  const Registration& registration);

    void run();
    bool waitOnce();

    void onMessage(std::uint8_t command, Attributes attributes) override;
    void onSwitch() override;
    void onLoss() override;

    void onScanEnd(const Event& event);
    void onConnection(const Event& event);
    void onInterfaces(std::optional<std::uint32_t> removed);
    std::optional<Adapter> adapterOf(const Event& event);
    void deliver(DWORD source, DWORD code, const GUID& guid, Block data = {});

    std::shared_ptr<Radios> m_radios;
    std::unique_ptr<Announcements> m_announcements;
    // Of the thread alone.
    std::vector<Adapter> m_seen;
    RadioStates m_radioStates;

    std::atomic<bool> m_stopped{false};
    mutable std::mutex m_mutex;
    std::condition_variable m_end;
    Registration m_registration;
    std::thread::id m_thread;
    bool m_ended = false;
};

} // namespace nativewifi::linux_radio
