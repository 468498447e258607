// A Native Wifi service whose answers consist of the fuzzer's bytes, with one guarantee: a block is
// as long as its count or its size says.
//
// The module must survive: fewer items than the block has room for, or none; success without a
// block; names with any length field, arrays without a terminator, numbers out of range; sizes that
// fit no structure, in blocks of that size; any error code.
// Not tried: a count beyond the block. A network list comes without its size, so a client cannot
// check the count.
#pragma once

#include <support/Input.h>

#include <support/CapturedLog.h>
#include <support/VirtualClock.h>

#include <nativewifi/Api.h>

#include <cstdlib>
#include <map>
#include <memory>

namespace fuzz {

/// While it lives, nativewifi::api() is its table. One at a time; one thread.
class HostileRadio {
public:
    /// \param input must outlive it
    explicit HostileRadio(Input& input);
    HostileRadio(const HostileRadio&) = delete;
    HostileRadio& operator=(const HostileRadio&) = delete;
    ~HostileRadio();

    /// System name of the device whose interface the radio knows.
    static constexpr const char* SYSTEM_NAME = "\\DEVICE\\{8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20}";

    /// Sends the module a notification if it has registered for one.
    void notify();
    /// How many network lists have not been freed.
    std::size_t liveNetworkLists() const { return m_liveNetworkLists; }
    /// Requires that every logged line is safe to show.
    void checkLog() const;

    struct Functions; ///< of the table

private:
    struct Block {
        std::unique_ptr<void, decltype(&std::free)> memory;
        bool networkList;
    };

    DWORD answer();
    void* newBlock(std::size_t size, bool networkList = false);
    void fill(WLAN_AVAILABLE_NETWORK& network);
    void fill(WLAN_BSS_ENTRY& entry);
    void fill(WLAN_INTERFACE_INFO& info);
    void fill(DOT11_SSID& ssid);
    void fill(WLAN_CONNECTION_ATTRIBUTES& attributes);
    template <typename List, typename Item>
    DWORD answer(List** list, Item (List::*items)[1], DWORD List::*count, std::uint32_t most);

    Input& m_input;
    test::VirtualClock m_clock;
    test::CapturedLog m_log;
    std::map<void*, Block> m_blocks;
    std::size_t m_liveNetworkLists = 0;
    WLAN_NOTIFICATION_CALLBACK m_callback = nullptr;
    GUID m_interface = {};
    nativewifi::Api m_table;
    std::unique_ptr<nativewifi::ScopedApi> m_scope;
};

} // namespace fuzz
