// One client handle: what its calls answer, as the blocks that the interface documents.
#pragma once

#include "Notifications.h"
#include "Radios.h"

#include <nativewifi/Block.h>

#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace nativewifi::linux_radio {

/// Any thread. Failure of every operation but close(): throws CallError.
class Client {
public:
    explicit Client(Kernel& kernel);

    Block interfaceList();
    Block query(const GUID& guid, DWORD opcode);
    void set(const GUID& guid, DWORD opcode, std::span<const std::byte> data);
    Block networkList(const GUID& guid);
    /// \param ssid null for all
    Block bssList(const GUID& guid, const DOT11_SSID* ssid, DOT11_BSS_TYPE type, bool secured);
    /// \param ssid null for all
    void scan(const GUID& guid, const DOT11_SSID* ssid);

    /// \return the source before
    DWORD registerNotification(const Registration& registration);
    /// Ends the notifications; waits for a running callback, unless called from it.
    void close();

private:
    void endNotifications(std::unique_lock<std::mutex>& lock);

    Kernel& m_kernel;
    const std::shared_ptr<Radios> m_radios;
    /// Read once: an entry that was not heard again keeps its timestamp, also when the wall clock
    /// is set.
    const std::uint64_t m_fileTimeOfBoot;
    std::mutex m_mutex; ///< of all below; not held while a callback is waited for
    bool m_closed = false;
    std::shared_ptr<Notifications> m_notifications;         ///< null without a registration
    std::vector<std::shared_ptr<Notifications>> m_stopping; ///< their callbacks may still run
};

} // namespace nativewifi::linux_radio
