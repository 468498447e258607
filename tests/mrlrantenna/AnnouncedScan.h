// The call that the service makes when something happened, made by the test itself, once or without
// end.
#pragma once

#include <ScanNotification.h>

#include <radiosim/Engine.h>

#include <nativewifi/WlanTypes.h>

#include <atomic>
#include <thread>
#include <vector>

namespace test {

/// Calls back as the service does at the end of a scan, or with another code or source.
inline void announceScan(DWORD code = wlan_notification_acm_scan_complete,
                         DWORD source = WLAN_NOTIFICATION_SOURCE_ACM) {
    WLAN_NOTIFICATION_DATA notification{};
    notification.NotificationSource = source;
    notification.NotificationCode = code;
    scanNotificationCallback(&notification, nullptr);
}

/// While it lives, calls back without end, from several threads and, with a `radio`, through the
/// simulated service too.
class AnnouncedScans {
public:
    static constexpr int THREADS = 4;

    explicit AnnouncedScans(radiosim::Engine* radio = nullptr) {
        if (radio != nullptr) {
            m_threads.emplace_back([this, radio] {
                while (!m_over) {
                    radio->notify(WLAN_NOTIFICATION_SOURCE_ACM,
                                  wlan_notification_acm_scan_complete);
                    radio->settle();
                }
            });
        }
        while (m_threads.size() < THREADS) {
            m_threads.emplace_back([this] {
                while (!m_over) {
                    announceScan();
                    ++m_count;
                    std::this_thread::yield();
                }
            });
        }
    }
    AnnouncedScans(const AnnouncedScans&) = delete;
    AnnouncedScans& operator=(const AnnouncedScans&) = delete;
    ~AnnouncedScans() {
        m_over = true;
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }

    /// Waits for more of them.
    void goOn() const {
        for (const long before = m_count; m_count < before + THREADS;) {
            std::this_thread::yield();
        }
    }

private:
    std::atomic<bool> m_over = false;
    std::atomic<long> m_count = 0;
    std::vector<std::thread> m_threads;
};

} // namespace test
