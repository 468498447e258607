// Delivers notifications on a thread of its own, as the service does.
#pragma once

#include "Exchange.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace capture {

class ReplayNotifier {
public:
    ReplayNotifier() = default;
    ReplayNotifier(const ReplayNotifier&) = delete;
    ReplayNotifier& operator=(const ReplayNotifier&) = delete;
    ~ReplayNotifier();

    /// Calls back and returns when the callback has ended. Called from a callback it does nothing:
    /// the notification of a capture whose steps are out of order.
    void deliver(const Registration& registration, const Notification& notification);
    bool isOwnThread() const { return std::this_thread::get_id() == m_thread.get_id(); }

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    const Registration* m_registration = nullptr; ///< of what is delivered; null when it is over
    const Notification* m_notification = nullptr;
    bool m_stopped = false;
    std::thread m_thread; ///< starts with the first notification
};

} // namespace capture
