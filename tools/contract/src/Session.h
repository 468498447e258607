// What the checks share: a client handle, an interface, and the two observations that switch
// something.
#pragma once

#include <contract/Contract.h>

#include <nativewifi/Handles.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace contract {

struct Notice {
    DWORD source;
    DWORD code;
    bool onCallersThread; ///< on the thread that registered
    std::chrono::milliseconds at;
};

/// The notifications of one interface while it lives, on a client handle of its own.
class Listener {
public:
    explicit Listener(const GUID& guid);
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener();

    /// The first one of `source` with one of the codes; absent until there is one.
    std::optional<Notice> first(DWORD source, std::initializer_list<DWORD> codes) const;
    mrl::Json all() const;

private:
    struct State;
    static void CALLBACK receive(WLAN_NOTIFICATION_DATA* data, PVOID context);

    std::unique_ptr<State> m_state; ///< before the handle, whose end waits for callbacks
    nativewifi::ClientHandle m_handle;
};

/// What a query gave. The block may be shorter than a `Block`, and absent.
template <typename Block>
struct Answer {
    DWORD result = ERROR_SUCCESS;
    DWORD size = 0;
    nativewifi::WlanMemory<Block> block;

    bool succeeded() const { return result == ERROR_SUCCESS; }
    /// Whether there are so many bytes to read.
    bool has(std::size_t bytes = sizeof(Block)) const { return block && size >= bytes; }
};

class Session {
public:
    Session(const Options& options, const std::atomic<bool>& interrupted);

    /// Why `need` is not met; empty when it is.
    std::string missing(Need need) const;

    DWORD openResult() const { return m_openResult; }
    DWORD version() const { return m_version; }
    HANDLE handle() const { return m_handle.get(); }
    const GUID* guid() const { return &m_guid; }
    const Options& options() const { return m_options; }
    bool interrupted() const { return m_interrupted; }

    /// Waits until `condition` holds; false when `limit` passed or the user interrupted.
    bool wait(std::chrono::milliseconds limit, const std::function<bool()>& condition) const;

    /// Asks the interface; the block is freed with the answer.
    template <typename Block>
    Answer<Block> query(WLAN_INTF_OPCODE opcode) const {
        Answer<Block> answer;
        PVOID data = nullptr;
        answer.result = nativewifi::api().WlanQueryInterface(handle(), guid(), opcode, nullptr,
                                                             &answer.size, &data, nullptr);
        *out(answer.block) = static_cast<Block*>(data);
        return answer;
    }
    DWORD resultOf(WLAN_INTF_OPCODE opcode) const { return query<unsigned char>(opcode).result; }
    DWORD networks(WLAN_AVAILABLE_NETWORK_LIST** list) const {
        return nativewifi::api().WlanGetAvailableNetworkList(handle(), guid(), 0, nullptr, list);
    }
    DWORD stations(WLAN_BSS_LIST** list) const {
        return nativewifi::api().WlanGetNetworkBssList(handle(), guid(), nullptr,
                                                       dot11_BSS_type_any, FALSE, nullptr, list);
    }
    DWORD scan() const {
        return nativewifi::api().WlanScan(handle(), guid(), nullptr, nullptr, nullptr);
    }
    /// Absent when the interface does not say.
    std::optional<WLAN_RADIO_STATE> radio() const;

private:
    Options m_options;
    const std::atomic<bool>& m_interrupted;
    nativewifi::ClientHandle m_handle;
    DWORD m_version = 0;
    DWORD m_openResult;
    DWORD m_listResult = ERROR_SUCCESS;
    DWORD m_interfaces = 0;
    GUID m_guid{};
};

// --- findings, in short ---

inline Finding judge(bool held, mrl::Json seen) {
    return {held ? Verdict::HELD : Verdict::BROKEN, std::move(seen)};
}
inline Finding notObservable(mrl::Json seen) {
    return {Verdict::NOT_OBSERVABLE, std::move(seen)};
}

/// Whether every PHY is on, by software and hardware.
bool anyPhyOn(const WLAN_RADIO_STATE& state);

/// The checks of each source file.
std::vector<Check> handleChecks();
std::vector<Check> queryChecks();
std::vector<Check> listChecks();
std::vector<Check> scanChecks();
std::vector<Check> radioChecks();

} // namespace contract
