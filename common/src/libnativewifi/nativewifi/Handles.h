// Owners for what the Native Wifi interface hands out. They free through the table that is in
// force when they end.
#pragma once

#include <nativewifi/Api.h>

#include <utility>

namespace nativewifi {

/// Owns a block from the interface; frees it with WlanFreeMemory.
template <typename T>
class WlanMemory {
public:
    WlanMemory() = default;
    WlanMemory(WlanMemory&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    WlanMemory& operator=(WlanMemory&& other) noexcept {
        std::swap(m_block, other.m_block);
        return *this;
    }
    WlanMemory(const WlanMemory&) = delete;
    WlanMemory& operator=(const WlanMemory&) = delete;
    ~WlanMemory() { reset(); }

    T* get() const { return m_block; }
    T* operator->() const { return m_block; }
    T& operator*() const { return *m_block; }
    explicit operator bool() const { return m_block != nullptr; }

    void reset() {
        if (T* block = std::exchange(m_block, nullptr)) {
            api().WlanFreeMemory(block);
        }
    }

    /// For the out-parameter of a call; frees what was owned before.
    friend T** out(WlanMemory& memory) {
        memory.reset();
        return &memory.m_block;
    }

private:
    T* m_block = nullptr;
};

/// Owns a client handle; closes it with WlanCloseHandle.
class ClientHandle {
public:
    ClientHandle() = default;
    ClientHandle(ClientHandle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, nullptr)) {}
    ClientHandle& operator=(ClientHandle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ClientHandle(const ClientHandle&) = delete;
    ClientHandle& operator=(const ClientHandle&) = delete;
    ~ClientHandle() { reset(); }

    HANDLE get() const { return m_handle; }

    void reset() {
        if (HANDLE handle = std::exchange(m_handle, nullptr)) {
            api().WlanCloseHandle(handle, nullptr);
        }
    }

    /// For the out-parameter of WlanOpenHandle; closes what was owned before.
    friend HANDLE* out(ClientHandle& handle) {
        handle.reset();
        return &handle.m_handle;
    }

private:
    HANDLE m_handle = nullptr;
};

/// Owns a text from UuidToStringW; frees it with RpcStringFreeW.
class RpcText {
public:
    RpcText() = default;
    RpcText(const RpcText&) = delete;
    RpcText& operator=(const RpcText&) = delete;
    ~RpcText() {
        if (m_text != nullptr) {
            api().RpcStringFreeW(&m_text);
        }
    }

    const mrl::Char* get() const { return m_text; }

    /// For the out-parameter of UuidToStringW; to be called once.
    friend mrl::Char** out(RpcText& text) { return &text.m_text; }

private:
    mrl::Char* m_text = nullptr;
};

} // namespace nativewifi
