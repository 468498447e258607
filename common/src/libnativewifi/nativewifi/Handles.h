// Owners for what the Native Wifi interface hands out. They free through the table that is in
// force when they end.
#pragma once

#include <nativewifi/Api.h>

#include <utility>

namespace nativewifi {

/// The version of the interface to ask WlanOpenHandle for: Windows Vista and later.
constexpr DWORD CLIENT_VERSION = 2;

/// Owns a value that `RELEASE` gives back; null is nothing.
template <typename Value, void (*RELEASE)(Value)>
class Owner {
public:
    Owner() = default;
    Owner(Owner&& other) noexcept : m_value(std::exchange(other.m_value, nullptr)) {}
    Owner& operator=(Owner&& other) noexcept {
        std::swap(m_value, other.m_value);
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { reset(); }

    Value get() const { return m_value; }
    Value operator->() const { return m_value; }
    auto& operator*() const { return *m_value; }
    explicit operator bool() const { return m_value != nullptr; }

    void reset() {
        if (Value value = std::exchange(m_value, nullptr)) {
            RELEASE(value);
        }
    }

    /// For the out-parameter of a call; gives back what was owned before.
    friend Value* out(Owner& owner) {
        owner.reset();
        return &owner.m_value;
    }

private:
    Value m_value = nullptr;
};

template <typename T>
void freeBlock(T* block) {
    api().WlanFreeMemory(block);
}
inline void closeClient(HANDLE handle) {
    api().WlanCloseHandle(handle, nullptr);
}
inline void freeRpcText(mrl::Char* text) {
    api().RpcStringFreeW(&text);
}

/// Owns a block from the interface; frees it with WlanFreeMemory.
template <typename T>
using WlanMemory = Owner<T*, &freeBlock<T>>;
/// Owns a client handle; closes it with WlanCloseHandle.
using ClientHandle = Owner<HANDLE, &closeClient>;
/// Owns a text from UuidToStringW; frees it with RpcStringFreeW.
using RpcText = Owner<mrl::Char*, &freeRpcText>;

} // namespace nativewifi
