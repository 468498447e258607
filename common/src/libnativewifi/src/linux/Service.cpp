#include "Service.h"

#include "CallError.h"
#include "NetlinkKernel.h"

#include <atomic>
#include <utility>

namespace nativewifi::linux_radio {

namespace {

constinit std::atomic<Service*> g_replacement{nullptr};

} // namespace

Service::~Service() {
    for (const auto& [handle, client] : m_clients) {
        client->close();
    }
}

HANDLE Service::open() {
    auto client = std::make_shared<Client>(m_kernel);
    const std::lock_guard lock(m_mutex);
    // A number, never used twice: a closed handle stays unknown.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    auto* const handle = reinterpret_cast<HANDLE>(++m_lastHandle);
    m_clients.emplace(handle, std::move(client));
    return handle;
}

std::shared_ptr<Client> Service::client(HANDLE handle) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_clients.find(handle);
    if (found == m_clients.end()) {
        throw CallError(ERROR_INVALID_HANDLE);
    }
    return found->second;
}

void Service::close(HANDLE handle) {
    const std::shared_ptr<Client> closed = client(handle);
    {
        const std::lock_guard lock(m_mutex);
        if (m_clients.erase(handle) == 0) {
            throw CallError(ERROR_INVALID_HANDLE);
        }
    }
    closed->close();
}

std::size_t Service::openHandles() const {
    const std::lock_guard lock(m_mutex);
    return m_clients.size();
}

Service& Service::current() {
    Service* const replacement = g_replacement.load(std::memory_order_acquire);
    // Never destroyed: threads of clients that stay open run until the process ends.
    static Service* const system = new Service(*new NetlinkKernel);
    return *(replacement != nullptr ? replacement : system);
}

ScopedService::ScopedService(Service& service) : m_previous(g_replacement.exchange(&service)) {}

ScopedService::~ScopedService() {
    g_replacement.store(m_previous);
}

} // namespace nativewifi::linux_radio
