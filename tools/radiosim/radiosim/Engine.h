// A Native Wifi service in memory: it serves the client functions from a Scenario, on the clock in
// force, and keeps account of what its client did.
#pragma once

#include <radiosim/Scenario.h>

#include <nativewifi/Api.h>

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace radiosim {

/// One call of a function of the table, as it was answered.
struct Call {
    std::string function = {};
    /// A compact JSON object. Client handles are "h1", "h2", ... in the order of their opening
    /// (null: the null handle, "?": none of ours); GUIDs are texts, enumerated values numbers,
    /// names texts in which each byte is one character, pointers "set" or null.
    std::string arguments = {};
    /// The returned code; 0 for functions that return nothing.
    DWORD result = 0;
    /// A compact JSON object of what was handed out, {} for nothing.
    std::string output = {};
    /// Since the engine's start, when the call returned.
    Milliseconds at{0};

    /// `WlanCloseHandle {"handle":"h1"} = 0 {}`; the time is left out.
    std::string text() const;
    /// One line of the trace, without its end: an object with the keys "at" (milliseconds),
    /// "function", "arguments", "result" and "output".
    std::string jsonLine() const;
};

/// What the client has not closed or freed.
struct Leaks {
    std::size_t handles = 0;
    std::size_t blocks = 0;
    std::size_t bytes = 0;
    /// Texts from UuidToStringW.
    std::size_t texts = 0;

    friend bool operator==(const Leaks&, const Leaks&) = default;
};

/// While it lives, nativewifi::api() is its table. One at a time. All operations may be called
/// from any thread, those of the table too; the engine's own thread delivers notifications.
///
/// All times are the clock's that is in force during construction; that clock must outlive the
/// engine. With a virtual clock, settle() waits for what has become due.
class Engine {
public:
    /// Failure: ScenarioError for a GUID that is none or is used twice; std::logic_error when
    /// another engine lives.
    explicit Engine(Scenario scenario = {});
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    /// Waits for a running callback, then frees what the client has not freed. No call of the
    /// table may be under way.
    ~Engine();

    const nativewifi::Api& api() const;

    // What the real DLL exports besides the table, for the one that takes its place.

    /// A block that the client frees with WlanFreeMemory; null when there is no memory.
    void* allocateMemory(DWORD size);
    /// Puts a call of `function` on record and answers it with ERROR_NOT_SUPPORTED.
    DWORD notSimulated(const char* function);

    // --- what the client did ---

    /// Every call so far, in the order in which they returned.
    std::vector<Call> calls() const;
    /// The same as Call::text().
    std::vector<std::string> callTexts() const;
    /// The same as bare names.
    std::vector<std::string> callNames() const;
    /// How often `function` was called.
    std::size_t callCount(std::string_view function) const;
    /// Forgets the calls; faults and leaks stay.
    void clearCalls();
    /// `hook` runs after each call has been answered, before it returns, on the caller's thread
    /// and without a lock: it may use the engine. Calls that it makes itself do not reach it.
    void onCall(std::function<void(const Call&)> hook);
    /// `line` gets each call's jsonLine() as it returns, one at a time; an empty function
    /// ends that.
    void traceTo(std::function<void(std::string_view)> line);

    std::size_t openHandles() const;
    std::size_t liveBlocks() const;
    std::size_t liveBytes() const;
    Leaks leaks() const;
    /// Blocks and bytes of `function` that have not been freed; its other fields are 0.
    Leaks leaksOf(std::string_view function) const;
    /// Blocks and bytes that `function` has handed out so far, freed or not.
    Leaks handedOutBy(std::string_view function) const;
    /// WlanFreeMemory with a pointer that is not, or no longer, a block of ours.
    std::size_t badFrees() const;
    /// Each fault that has had no effect, in words; one with nth == 0 must have had one once.
    std::vector<std::string> unfiredFaults() const;

    // --- changes while it runs; indices are the scenario's, std::out_of_range for others ---

    /// States as in Phy; an absent one stays. Sends the media-specific module's radio notification
    /// to who has registered for it, as WlanSetInterface does.
    void setRadio(std::size_t interfaceIndex, std::size_t phyIndex,
                  std::optional<std::int32_t> software, std::optional<std::int32_t> hardware);
    void setPhys(std::size_t interfaceIndex, std::vector<Phy> phys);
    void setAccessPoints(std::size_t interfaceIndex, std::vector<AccessPoint> accessPoints);
    void setConnection(std::size_t interfaceIndex, std::optional<Connection> connection);
    void setState(std::size_t interfaceIndex, std::optional<std::int32_t> state);
    /// The interface is unknown from now on; the indices of the others stay.
    void removeInterface(std::size_t interfaceIndex);
    /// The service ends: handles and registrations are gone, and until startService() every call
    /// that needs the service returns `code`. Freeing memory and reason texts do not need it.
    void stopService(DWORD code = ERROR_SERVICE_NOT_ACTIVE);
    /// The service is back; it knows none of the handles from before.
    void startService();
    void addFault(Fault fault);
    /// Faults added or given before have no effect any more, and do not count as unfired.
    void clearFaults();

    /// Sends a notification of interface 0 now, to who has registered for `source`; returns before
    /// it is delivered.
    void notify(std::uint32_t source, std::uint32_t code, std::vector<std::uint8_t> data = {});
    /// The same of another interface.
    void notifyFrom(std::size_t interfaceIndex, std::uint32_t source, std::uint32_t code,
                    std::vector<std::uint8_t> data = {});
    /// Blocks until every notification that is due on the clock has been delivered, callbacks
    /// included. Called from a callback it returns at once.
    void settle();

    class Impl; ///< the engine's inside, for its own sources

private:
    std::unique_ptr<Impl> m_impl;
};

/// For test frameworks: prints text().
std::ostream& operator<<(std::ostream& stream, const Call& call);

} // namespace radiosim
