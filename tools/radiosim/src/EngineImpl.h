// The engine's inside: state, account and the client functions' meaning. The table's plain
// functions (Table.cpp) find it through current().
#pragma once

#include "Blocks.h"
#include "CallLog.h"
#include "FaultPlan.h"
#include "Notifier.h"
#include "View.h"

#include <radiosim/Engine.h>

#include <mrl/Clock.h>

#include <atomic>
#include <deque>
#include <map>
#include <mutex>

namespace radiosim {

/// A table whose functions go to the engine that lives; the GUID conversions, to the platform's.
nativewifi::Api engineTable();

class Engine::Impl {
public:
    explicit Impl(Scenario scenario);
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl();

    /// The engine that lives, or null.
    static Impl* current();

    // --- the client functions; Table.cpp calls them inside answer() ---

    using Effects = FaultPlan::Effects;

    DWORD openHandle(DWORD clientVersion, const void* reserved, DWORD* negotiatedVersion,
                     HANDLE* clientHandle, const Effects& effects, Json& output);
    DWORD closeHandle(HANDLE clientHandle, const void* reserved);
    DWORD enumInterfaces(HANDLE clientHandle, const void* reserved,
                         WLAN_INTERFACE_INFO_LIST** interfaceList, const Effects& effects,
                         Json& output);
    DWORD queryInterface(HANDLE clientHandle, const GUID* interfaceGuid, DWORD opcode,
                         const void* reserved, DWORD* dataSize, void** data,
                         WLAN_OPCODE_VALUE_TYPE* valueType, const Effects& effects, Json& output);
    DWORD setInterface(HANDLE clientHandle, const GUID* interfaceGuid, DWORD opcode, DWORD dataSize,
                       const void* data, const void* reserved);
    DWORD registerNotification(HANDLE clientHandle, DWORD source,
                               WLAN_NOTIFICATION_CALLBACK callback, void* context,
                               const void* reserved, DWORD* previousSource, Json& output);
    DWORD networkList(HANDLE clientHandle, const GUID* interfaceGuid, DWORD flags,
                      const void* reserved, WLAN_AVAILABLE_NETWORK_LIST** list,
                      const Effects& effects, Json& output);
    static DWORD reasonToString(DWORD reasonCode, DWORD bufferSize, WCHAR* buffer,
                                const void* reserved, Json& output);
    DWORD scan(HANDLE clientHandle, const GUID* interfaceGuid, const DOT11_SSID* ssid,
               const void* reserved);
    DWORD bssList(HANDLE clientHandle, const GUID* interfaceGuid, const DOT11_SSID* ssid,
                  DOT11_BSS_TYPE bssType, BOOL secured, const void* reserved, WLAN_BSS_LIST** list,
                  const Effects& effects, Json& output);
    void* allocateMemory(DWORD size) { return m_blocks.allocate(size, "WlanAllocateMemory"); }
    void freeMemory(void* memory) { m_blocks.free(memory); }
    /// A text from UuidToStringW was handed out (1) or given back (-1).
    void countText(int change) { m_texts += change; }

    /// Faults, then `work(effects, output)`, then the record of it all.
    template <typename Work>
    DWORD answer(const char* function, const Json& arguments, std::optional<std::uint32_t> opcode,
                 Work work);

    // --- for the record ---

    Json handleName(HANDLE clientHandle) const;

    // --- Engine's own operations ---

    struct LiveInterface {
        Interface facts;
        GUID guid{};
        bool removed = false;
        /// When each scan ends that is to show networks.
        std::vector<mrl::Clock::Duration> scanEnds = {};
        mrl::Clock::Duration busyUntil{0};
        std::uint32_t scansStarted = 0;
        bool switched = false; ///< by the client: what was captured of the radio counts no more
    };

    /// Locks, and changes interface `index` with `change(live)`.
    template <typename Change>
    void change(std::size_t index, Change change);
    void addFault(Fault fault);
    void stopService(DWORD code);
    void startService() { m_stoppedWith = ERROR_SUCCESS; }
    void setRadio(std::size_t index, std::size_t phy, std::optional<std::int32_t> software,
                  std::optional<std::int32_t> hardware);
    void notify(std::size_t index, Notifier::Event event);
    std::size_t openHandles() const;
    Leaks leaks() const;

    const nativewifi::Api table = engineTable();
    CallLog log;
    FaultPlan faults;

    const Blocks& blocks() const { return m_blocks; }
    Notifier& notifier() { return m_notifier; }

private:
    struct Handle {
        std::uint32_t number;
        bool open;
    };

    mrl::Clock::Duration elapsed() const { return m_clock.now() - m_start; }
    /// ERROR_SUCCESS, or what is wrong with a call's first arguments.
    DWORD checkHandle(HANDLE clientHandle, bool argumentsAreGood) const;
    LiveInterface* find(const GUID& guid);
    /// What was captured of a call now; null for nothing, or when the client's own switching of the
    /// radio decides.
    const CapturedAnswer* captured(std::string_view function, const LiveInterface* live = nullptr,
                                   std::optional<DWORD> opcode = {}) const;
    template <typename List>
    DWORD answerCaptured(const CapturedAnswer& answer, const char* function, List** list,
                         const Effects& effects);
    View view(const LiveInterface& live) const;
    void beginScan(LiveInterface& live, Milliseconds duration);
    /// What every call about one interface begins with; the lock is held.
    DWORD findFor(HANDLE clientHandle, const GUID* guid, bool argumentsAreGood,
                  LiveInterface*& live);
    /// What a call of `function` gets in the service's stead while that is stopped.
    DWORD stoppedCode(std::string_view function) const;
    void* handOut(const char* function, Bytes block, std::optional<std::size_t> countOffset,
                  const Effects& effects);
    void radioChanged(const LiveInterface& live, std::size_t phy);

    mrl::Clock& m_clock;
    const mrl::Clock::Duration m_start;
    mutable std::mutex m_mutex;
    std::deque<Handle> m_handles; ///< their addresses are the client's handles; none is used twice
    std::vector<LiveInterface> m_interfaces;
    std::vector<Notification> m_scanNotifications;
    std::optional<std::uint32_t> m_serviceVersion;
    const std::vector<CapturedAnswers> m_captured;
    std::atomic<int> m_texts{0};
    std::atomic<DWORD> m_stoppedWith{ERROR_SUCCESS}; ///< while the service is stopped: its code
    Blocks m_blocks;
    Notifier m_notifier;
    std::optional<nativewifi::ScopedApi> m_inForce;
};

template <typename Work>
DWORD Engine::Impl::answer(const char* function, const Json& arguments,
                           std::optional<std::uint32_t> opcode, Work work) {
    const Effects effects = faults.match(function, opcode);
    if (effects.delay().count() != 0) {
        m_clock.sleep(effects.delay());
    }
    Call call{.function = function, .arguments = compact(arguments)};
    Json output = Json::object();
    const DWORD stopped = stoppedCode(function);
    call.result = effects.code()             ? *effects.code()
                  : stopped != ERROR_SUCCESS ? stopped
                                             : work(effects, output);
    call.output = compact(output);
    call.at = std::chrono::duration_cast<Milliseconds>(elapsed());
    log.add(call);
    return call.result;
}

template <typename Change>
void Engine::Impl::change(std::size_t index, Change change) {
    const std::lock_guard lock(m_mutex);
    change(m_interfaces.at(index));
}

} // namespace radiosim
