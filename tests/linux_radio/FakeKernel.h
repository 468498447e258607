// A kernel in memory behind Transport.h, with its files in a temporary folder: it answers requests
// with nl80211's bytes, switches radios by rfkill's device, and announces what a test asks for.
#pragma once

#include <support/Netlink.h>
#include <support/TemporaryFolder.h>

#include <Transport.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace test {

/// One network interface, and the radio that it is on.
struct FakeInterface {
    std::uint32_t index = 3;
    std::uint32_t wiphy = 0;
    std::string name = "wlan0";
    std::uint32_t type = NL80211_IFTYPE_STATION;
    /// The radio's own, and the one in use.
    std::string permanentAddress = "02:00:00:00:00:03";
    std::array<std::uint8_t, 6> address = {2, 0, 0, 0, 0, 3};
    std::vector<netlink::HeardBss> heard = {};
    /// What NL80211_ATTR_STA_INFO of the access point has inside; nothing without a connection.
    std::optional<netlink::Parts> connection = {};
    std::string ssid = {};
    std::optional<std::uint32_t> frequencyMhz = {};
    /// Receive antennas, a bit each: in use and there.
    std::optional<std::uint32_t> antennas = {};
    std::optional<std::uint32_t> availableAntennas = {};
    /// The number of its switch; nothing for a radio that cannot be switched.
    std::optional<std::uint32_t> rfkill = 0;
};

/// As a request was sent.
struct FakeRequest {
    std::uint8_t command = 0;
    netlink::Bytes attributes = {};
};

/// Any thread.
class FakeKernel final : public nativewifi::linux_radio::Kernel {
public:
    using Attributes = nativewifi::linux_radio::Attributes;
    using Outcome = nativewifi::linux_radio::Outcome;

    /// Without interfaces.
    FakeKernel();
    ~FakeKernel() override;

    // --- what there is ---

    void add(FakeInterface interface);
    void remove(std::uint32_t index);
    void change(std::uint32_t index, const std::function<void(FakeInterface&)>& how);
    void setSwitch(std::uint32_t index, const char* kind, bool blocked); ///< "soft" or "hard"
    void setUp(const std::string& interface, bool up);
    void pass(std::chrono::milliseconds time);
    bool isUp(const std::string& interface) const;

    // --- faults ---

    /// The next `times` requests of `command` end with `error`.
    void fail(std::uint8_t command, int error, int times = 1);
    /// The next `times` dumps of `command` say that they were interrupted.
    void interrupt(std::uint8_t command, int times);
    /// connect() and listen() throw CallError with the code of `error`.
    void refuseConnections(int error);
    /// What bringUp() returns.
    void refuseToBringUp(int error);
    /// Called before each request is answered, without a lock.
    void onRequest(std::function<void(std::uint8_t command)> hook);

    // --- what the client did ---

    std::vector<FakeRequest> requests() const;
    std::size_t requestCount(std::uint8_t command) const;
    /// How often a thread has begun to wait for an announcement.
    std::size_t waits() const;
    /// What was written to rfkill's device since the last question.
    std::string writtenToRfkill();
    /// Connections and listeners that have not ended.
    std::size_t openConnections() const;

    // --- announcements ---

    void announce(std::uint8_t command, const netlink::Parts& attributes);
    void announceSwitch();
    void announceLoss();
    /// Ends each listener's wait() as a broken socket does.
    void breakListeners();
    /// By default a scan ends when it is triggered; without, announce() ends it.
    void endScansAtOnce(bool atOnce);
    /// Blocks until every announcement has been passed on and its receiver waits again.
    void settle();

    // --- Kernel ---

    std::unique_ptr<nativewifi::linux_radio::Transport> connect() override;
    std::unique_ptr<nativewifi::linux_radio::Announcements> listen() override;
    std::uint64_t bootTimeNs() override { return m_bootTimeNs; }
    int bringUp(const std::string& interface) override;
    const std::filesystem::path& root() const override { return m_folder.path(); }

    /// At first.
    static constexpr std::uint64_t BOOT_TIME_NS = 1'000'000'000'000;

private:
    class FakeTransport;
    class FakeAnnouncements;
    struct Announced {
        enum class Kind : std::uint8_t { MESSAGE, SWITCH, LOSS, BREAK };
        Kind kind = Kind::MESSAGE;
        std::uint8_t command = 0;
        netlink::Bytes attributes = {};
    };
    struct Listener {
        std::deque<Announced> pending;
        bool waiting = false;
        bool stopped = false;
    };

    Outcome answer(std::uint8_t command, Attributes attributes,
                   const nativewifi::linux_radio::Transport::OnAnswer& onAnswer, bool dump);
    std::vector<netlink::Bytes> answersTo(std::uint8_t command, std::uint32_t index, bool dump,
                                          int& error);
    void watchRfkill();
    void obeyRfkill();
    void announceLocked(const Announced& announced);
    FakeInterface* find(std::uint32_t index);
    std::filesystem::path radioFolder(const FakeInterface& interface) const;
    std::filesystem::path interfaceFolder(const std::string& name) const;

    TemporaryFolder m_folder;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<FakeInterface> m_interfaces;
    std::map<std::uint8_t, std::deque<int>> m_failures;
    std::map<std::uint8_t, int> m_interruptions;
    int m_refusal = 0;
    int m_bringUpError = 0;
    bool m_scansEndAtOnce = true;
    std::atomic<std::uint64_t> m_bootTimeNs = BOOT_TIME_NS;
    std::function<void(std::uint8_t)> m_hook;
    std::vector<FakeRequest> m_requests;
    std::vector<std::shared_ptr<Listener>> m_listeners;
    std::size_t m_waits = 0;
    std::size_t m_open = 0;
    std::string m_writtenToRfkill;
    bool m_over = false;
    int m_rfkill = -1;     ///< the reading end of the device, which is a named pipe
    std::thread m_watcher; ///< last: it starts when everything else is there
};

/// The value of the first attribute `type` in `attributes`.
std::optional<netlink::Bytes> attributeIn(const netlink::Bytes& attributes, unsigned type);

} // namespace test
