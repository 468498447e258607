#include "Client.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace radiosim {
namespace {

using namespace std::chrono_literals;

struct Received {
    DWORD source;
    DWORD code;
    std::vector<unsigned char> data;

    friend bool operator==(const Received&, const Received&) = default;
};

/// Keeps what a registered callback gets.
class Inbox {
public:
    static void WINAPI callback(WLAN_NOTIFICATION_DATA* data, PVOID context) {
        static_cast<Inbox*>(context)->receive(*data);
    }

    std::vector<Received> received() {
        const std::lock_guard lock(m_mutex);
        return m_received;
    }

    std::thread::id thread() {
        const std::lock_guard lock(m_mutex);
        return m_thread;
    }

    GUID lastInterface() {
        const std::lock_guard lock(m_mutex);
        return m_interface;
    }

private:
    void receive(const WLAN_NOTIFICATION_DATA& data) {
        const auto* const bytes = static_cast<const unsigned char*>(data.pData);
        const std::lock_guard lock(m_mutex);
        m_thread = std::this_thread::get_id();
        m_interface = data.InterfaceGuid;
        m_received.push_back({data.NotificationSource,
                              data.NotificationCode,
                              {bytes, bytes + (bytes == nullptr ? 0 : data.dwDataSize)}});
    }

    std::mutex m_mutex;
    std::vector<Received> m_received;
    std::thread::id m_thread;
    GUID m_interface{};
};

using Messages = std::vector<Received>;
const Received SCAN_COMPLETE{WLAN_NOTIFICATION_SOURCE_ACM, 7, {}};

/// Registers `callback` on `client`; returns the sources registered before.
DWORD callOn(HANDLE client, DWORD source, WLAN_NOTIFICATION_CALLBACK callback, void* context) {
    DWORD previous = 99;
    EXPECT_EQ(nativewifi::api().WlanRegisterNotification(client, source, TRUE, callback, context,
                                                         nullptr, &previous),
              ERROR_SUCCESS);
    return previous;
}

class Notifications : public WithEngine {
protected:
    Notifications() { listen({}); }
    ~Notifications() override { engine().settle(); }

    /// Starts over with another scenario, and with every notification in the inbox.
    void listen(Scenario scenario) {
        start(std::move(scenario));
        callOn(handle(), WLAN_NOTIFICATION_SOURCE_ALL, &Inbox::callback, &m_inbox);
    }

    Messages received() { return m_inbox.received(); }
    Inbox& inbox() { return m_inbox; }

private:
    Inbox m_inbox;
};

TEST_F(Notifications, ReportTheEndOfAScanOnAThreadOfTheirOwn) {
    scan();
    after(3999ms);
    EXPECT_EQ(received(), Messages{});
    after(1ms);
    EXPECT_EQ(received(), Messages{SCAN_COMPLETE});
    EXPECT_NE(inbox().thread(), std::this_thread::get_id());
    EXPECT_TRUE(nativewifi::sameGuid(inbox().lastInterface(), guid()));
}

TEST_F(Notifications, ComeAfterTheScanDurationOfTheInterface) {
    listen({.interfaces = {{.scanDuration = 0ms}}});
    scan();
    engine().settle();
    EXPECT_EQ(received().size(), 1U);
}

TEST_F(Notifications, ReportAScanThatFailed) {
    listen({.interfaces = {{.scanEnd = ScanEnd::FAIL}}});
    scan();
    after(4s);
    EXPECT_EQ(received(), (Messages{{WLAN_NOTIFICATION_SOURCE_ACM, 8, {0x01, 0x00, 0x01, 0x00}}}));
}

TEST_F(Notifications, DoNotComeForAScanThatEndsSilently) {
    listen({.interfaces = {{.scanEnd = ScanEnd::SILENT,
                            .accessPoints = {{.ssid = "New", .visible = Visible::AFTER_SCAN}}}}});
    scan();
    after(4s);
    EXPECT_EQ(received(), Messages{});
    EXPECT_EQ(names(), std::vector<std::string>{"New"});
}

TEST_F(Notifications, ReachOnlyTheClientsRegisteredForTheirSource) {
    Inbox msm;
    nativewifi::ClientHandle second = openHandle();
    callOn(handle(), WLAN_NOTIFICATION_SOURCE_ACM, &Inbox::callback, &inbox());
    callOn(second.get(), WLAN_NOTIFICATION_SOURCE_MSM, &Inbox::callback, &msm);
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    engine().notify(WLAN_NOTIFICATION_SOURCE_MSM, 7, {1, 2});
    engine().settle();
    EXPECT_EQ(received(), Messages{SCAN_COMPLETE});
    EXPECT_EQ(msm.received(), (Messages{{WLAN_NOTIFICATION_SOURCE_MSM, 7, {1, 2}}}));
}

TEST_F(Notifications, AreDeliveredInTheirOrder) {
    for (std::uint32_t code = 0; code < 100; ++code) {
        engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, code);
    }
    engine().settle();
    const Messages all = received();
    ASSERT_EQ(all.size(), 100U);
    for (std::uint32_t code = 0; code < 100; ++code) {
        EXPECT_EQ(all[code].code, code);
    }
}

TEST_F(Notifications, AreRepeatedEvenWhenTheyAreTheSame) {
    for (int i = 0; i < 2; ++i) {
        scan();
        after(4s);
    }
    EXPECT_EQ(received(), (Messages{SCAN_COMPLETE, SCAN_COMPLETE}));
}

TEST_F(Notifications, OfTheScenarioComeAtTheirTimeAndAfterTheirScan) {
    listen({.interfaces = {{.scanEnd = ScanEnd::SILENT}},
            .notifications = {{.at = 500ms, .source = 0x10, .code = 1},
                              {.afterScan = 2, .source = 0x20, .code = 2},
                              {.source = 0x40, .code = 3, .data = {9}}}});
    after(499ms);
    EXPECT_EQ(received(), Messages{});
    after(1ms);
    EXPECT_EQ(received(), (Messages{{0x10, 1, {}}}));
    scan();
    after(4s);
    EXPECT_EQ(received(), (Messages{{0x10, 1, {}}, {0x40, 3, {9}}}));
    scan();
    after(4s);
    EXPECT_EQ(received(), (Messages{{0x10, 1, {}}, {0x40, 3, {9}}, {0x20, 2, {}}, {0x40, 3, {9}}}));
}

TEST_F(Notifications, ReportEachSwitchOfTheRadio) {
    switchRadio(0, 2);
    switchRadio(0, 2);
    engine().settle();
    const Received off{WLAN_NOTIFICATION_SOURCE_MSM, 7, {0, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0}};
    EXPECT_EQ(received(), Messages{off}) << "the second call changed nothing";
    engine().setRadio(0, 0, 1, {});
    engine().settle();
    EXPECT_EQ(received().size(), 2U);
}

TEST_F(Notifications, StopWhenTheClientUnregisters) {
    callOn(handle(), WLAN_NOTIFICATION_SOURCE_NONE, nullptr, nullptr);
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    engine().settle();
    EXPECT_EQ(received(), Messages{});
}

TEST_F(Notifications, ReturnTheSourcesRegisteredBefore) {
    const nativewifi::ClientHandle second = openHandle();
    for (const DWORD before : {DWORD{0}, DWORD{WLAN_NOTIFICATION_SOURCE_ACM}}) {
        EXPECT_EQ(callOn(second.get(), WLAN_NOTIFICATION_SOURCE_ACM, &Inbox::callback, &inbox()),
                  before);
    }
}

TEST_F(Notifications, StopWithTheHandle) {
    Inbox closed;
    nativewifi::ClientHandle second = openHandle();
    callOn(second.get(), WLAN_NOTIFICATION_SOURCE_ALL, &Inbox::callback, &closed);
    second.reset();
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    engine().settle();
    EXPECT_EQ(closed.received(), Messages{});
}

/// A callback that stays in until it is let out.
class Gate {
public:
    static void WINAPI callback(WLAN_NOTIFICATION_DATA* /*data*/, PVOID context) {
        static_cast<Gate*>(context)->pass();
    }

    void awaitEntered() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_entered; });
    }

    void open() {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

    bool left() {
        const std::lock_guard lock(m_mutex);
        return m_left;
    }

private:
    void pass() {
        std::unique_lock lock(m_mutex);
        m_entered = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_open; });
        m_left = true;
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_entered = false;
    bool m_open = false;
    bool m_left = false;
};

TEST_F(Notifications, HoldTheClosingOfTheHandleUntilTheCallbackHasEnded) {
    Gate gate;
    nativewifi::ClientHandle second = openHandle();
    callOn(second.get(), WLAN_NOTIFICATION_SOURCE_ALL, &Gate::callback, &gate);
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    gate.awaitEntered();
    std::atomic<bool> closed{false};
    std::thread closer([&] {
        nativewifi::api().WlanCloseHandle(second.get(), nullptr);
        closed = true;
    });
    // The handle is void as soon as the call has begun; the call must not end before the callback.
    while (engine().openHandles() != 1) {
        std::this_thread::yield();
    }
    for (int chance = 0; chance < 1000; ++chance) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(closed);
    gate.open();
    closer.join();
    EXPECT_TRUE(gate.left());
    EXPECT_EQ(engine().openHandles(), 1U);
}

TEST_F(Notifications, LetTheirCallbackUseTheService) {
    start(Scenario::builtIn());
    struct Context {
        HANDLE handle;
        const GUID* guid;
        std::atomic<DWORD> networks{0};
    } context{handle(), &guid()};
    const auto callback = [](WLAN_NOTIFICATION_DATA* /*data*/, PVOID pointer) {
        auto& own = *static_cast<Context*>(pointer);
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> block;
        if (nativewifi::api().WlanGetAvailableNetworkList(own.handle, own.guid, 0, nullptr,
                                                          out(block)) == ERROR_SUCCESS) {
            own.networks = block->dwNumberOfItems;
        }
    };
    callOn(handle(), WLAN_NOTIFICATION_SOURCE_ALL, callback, &context);
    scan();
    after(4s);
    EXPECT_EQ(context.networks, 13U);
}

TEST_F(Notifications, LetTheirCallbackCloseItsOwnHandle) {
    nativewifi::ClientHandle second = openHandle();
    const auto callback = [](WLAN_NOTIFICATION_DATA* /*data*/, PVOID context) {
        static_cast<nativewifi::ClientHandle*>(context)->reset();
    };
    callOn(second.get(), WLAN_NOTIFICATION_SOURCE_ALL, callback, &second);
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    engine().settle();
    EXPECT_EQ(engine().openHandles(), 1U);
}

TEST_F(Notifications, EndWithTheEngine) {
    scan();
    start({});
    after(10s);
    EXPECT_EQ(received(), Messages{}) << "the scan of an engine that is gone";
}

TEST(NotificationsInRealTime, ComeWithoutAnotherCall) {
    Engine engine({.interfaces = {{.scanDuration = 20ms}}});
    Gate gate;
    nativewifi::ClientHandle handle = openHandle();
    callOn(handle.get(), WLAN_NOTIFICATION_SOURCE_ACM, &Gate::callback, &gate);
    gate.open();
    EXPECT_EQ(
        nativewifi::api().WlanScan(handle.get(), &firstInterface(), nullptr, nullptr, nullptr),
        ERROR_SUCCESS);
    gate.awaitEntered();
    handle.reset();
    EXPECT_TRUE(gate.left());
}

TEST(NotificationsInRealTime, SurviveThreadsThatUseTheServiceAtOnce) {
    Engine engine({.interfaces = {{.scanDuration = 0ms, .accessPoints = {{.ssid = "Lab"}}}}});
    Inbox inbox;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 100; ++round) {
                const nativewifi::ClientHandle handle = openHandle();
                callOn(handle.get(), WLAN_NOTIFICATION_SOURCE_ALL, &Inbox::callback, &inbox);
                nativewifi::api().WlanScan(handle.get(), &firstInterface(), nullptr, nullptr,
                                           nullptr);
                nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> block;
                nativewifi::api().WlanGetAvailableNetworkList(handle.get(), &firstInterface(), 0,
                                                              nullptr, out(block));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    engine.settle();
    EXPECT_EQ(engine.leaks(), Leaks{});
    EXPECT_EQ(engine.callCount("WlanScan"), 400U);
}

} // namespace
} // namespace radiosim
