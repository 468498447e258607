// The clients of the process by their handles.
#pragma once

#include "Client.h"
#include "Transport.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace nativewifi::linux_radio {

/// Any thread.
class Service {
public:
    explicit Service(Kernel& kernel) : m_kernel(kernel) {}
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    /// Closes what is open.
    ~Service();

    /// Failure: throws CallError
    HANDLE open();
    /// Failure: throws CallError for a handle that is not open
    std::shared_ptr<Client> client(HANDLE handle) const;
    /// Waits for a running callback, unless called from it.
    /// Failure: as client()
    void close(HANDLE handle);
    std::size_t openHandles() const;

    /// The one that the table's functions use.
    static Service& current();

private:
    Kernel& m_kernel;
    mutable std::mutex m_mutex;
    std::uintptr_t m_lastHandle = 0;
    std::map<HANDLE, std::shared_ptr<Client>> m_clients;
};

/// Makes another service current() while it lives. For tests.
class ScopedService {
public:
    explicit ScopedService(Service& service);
    ScopedService(const ScopedService&) = delete;
    ScopedService& operator=(const ScopedService&) = delete;
    ~ScopedService();

private:
    Service* m_previous;
};

} // namespace nativewifi::linux_radio
