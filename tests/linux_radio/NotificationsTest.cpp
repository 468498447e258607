// What the kernel announces, as a client's notifications; and how they end.
#include "LinuxRadioTest.h"

#include <CallError.h>

#include <nativewifi/Guid.h>
#include <nativewifi/Ssid.h>

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <future>
#include <mutex>
#include <thread>

namespace nativewifi::linux_radio {
namespace {

using namespace test::netlink;
using test::connectedInterface;
using test::FakeInterface;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr DWORD ACM = WLAN_NOTIFICATION_SOURCE_ACM;
constexpr DWORD MSM = WLAN_NOTIFICATION_SOURCE_MSM;
constexpr DWORD ALL = WLAN_NOTIFICATION_SOURCE_ALL;

struct Notice {
    DWORD source;
    DWORD code;
    unsigned adapter; ///< the last byte of its address, and 16 more for a second one with it

    bool operator==(const Notice&) const = default;
};

void PrintTo(const Notice& notice, std::ostream* stream) {
    *stream << notice.source << "/" << notice.code << " of " << notice.adapter;
}

/// Receives the notifications of a client.
struct Receiver {
    std::mutex mutex;
    std::vector<Notice> notices;
    std::vector<std::vector<std::uint8_t>> data;
    std::thread::id thread;
    std::function<void()> during; ///< called in each callback

    static void receive(WLAN_NOTIFICATION_DATA* notification, PVOID context) {
        auto& self = *static_cast<Receiver*>(context);
        {
            const std::lock_guard lock(self.mutex);
            self.notices.push_back({notification->NotificationSource,
                                    notification->NotificationCode,
                                    notification->InterfaceGuid.Data4[7] +
                                        16U * (notification->InterfaceGuid.Data3 & 0xFU)});
            const auto* const first = static_cast<const std::uint8_t*>(notification->pData);
            self.data.emplace_back(first, first + notification->dwDataSize);
            self.thread = std::this_thread::get_id();
        }
        if (self.during) {
            self.during();
        }
    }
    std::vector<Notice> taken() {
        const std::lock_guard lock(mutex);
        return std::exchange(notices, {});
    }
};

class LinuxNotifications : public test::LinuxRadioTest {
protected:
    ~LinuxNotifications() override { ownedClient().reset(); } // before m_receiver ends

    DWORD listen(DWORD source, DWORD* previous = nullptr) {
        return api().WlanRegisterNotification(
            client(), source, TRUE,
            source == WLAN_NOTIFICATION_SOURCE_NONE ? nullptr : &Receiver::receive, &m_receiver,
            nullptr, previous);
    }
    void startListening(const std::vector<FakeInterface>& interfaces = {FakeInterface{}}) {
        start(interfaces);
        ASSERT_EQ(listen(ALL), ERROR_SUCCESS);
        kernel().settle();
    }
    std::vector<Notice> notices() {
        kernel().settle();
        return m_receiver.taken();
    }
    static Parts of(std::uint32_t interface, std::uint32_t wiphy = 0) {
        return {u32(NL80211_ATTR_WIPHY, wiphy), u32(NL80211_ATTR_IFINDEX, interface)};
    }

    Receiver m_receiver;
};

FakeInterface secondRadio() {
    return {.index = 9,
            .wiphy = 1,
            .name = "wlan1",
            .permanentAddress = "02:00:00:00:00:09",
            .rfkill = 1};
}

TEST_F(LinuxNotifications, SayThatAScanHasEndedAndItsListIsNew) {
    startListening();
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 7, 3}, Notice{ACM, 26, 3}));
    EXPECT_NE(m_receiver.thread, std::this_thread::get_id());
}

TEST_F(LinuxNotifications, SayThatAScanHasFailedWithAReason) {
    startListening();
    kernel().announce(NL80211_CMD_SCAN_ABORTED, of(3));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 8, 3}));
    EXPECT_THAT(m_receiver.data, ElementsAre(ElementsAre(0x01, 0x00, 0x01, 0x00)));
}

TEST_F(LinuxNotifications, SayTheEndOfAnotherInterfacesScanThatCountsAsOurs) {
    kernel().endScansAtOnce(false);
    startListening({FakeInterface{}, {.index = 5, .name = "wlan5"}});
    kernel().fail(NL80211_CMD_TRIGGER_SCAN, EBUSY);
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(9, 1));
    EXPECT_THAT(notices(), IsEmpty()) << "of another radio";
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(5));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 7, 19}, Notice{ACM, 26, 19}, Notice{ACM, 7, 3},
                                       Notice{ACM, 26, 3}));
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(5));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 7, 19}, Notice{ACM, 26, 19}))
        << "the next one is not ours";
}

TEST_F(LinuxNotifications, SayOnceTheEndOfAScanThatRanAlready) {
    kernel().endScansAtOnce(false);
    startListening();
    kernel().fail(NL80211_CMD_TRIGGER_SCAN, EBUSY, 2);
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 7, 3}, Notice{ACM, 26, 3}));
}

TEST_F(LinuxNotifications, SayThatAConnectionBeginsFailsAndEnds) {
    startListening({connectedInterface()});
    const auto event = [](std::uint16_t status) {
        Parts parts = of(3);
        parts.push_back(u16(NL80211_ATTR_STATUS_CODE, status));
        parts.push_back(attribute(NL80211_ATTR_REQ_IE, name("Lab")));
        return parts;
    };
    kernel().announce(NL80211_CMD_CONNECT, event(0));
    kernel().announce(NL80211_CMD_CONNECT, event(17));
    kernel().announce(NL80211_CMD_DISCONNECT, of(3));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 10, 3}, Notice{ACM, 11, 3}, Notice{ACM, 21, 3}));
    WLAN_CONNECTION_NOTIFICATION_DATA data{};
    ASSERT_EQ(m_receiver.data[0].size(), sizeof data);
    std::memcpy(&data, m_receiver.data[0].data(), sizeof data);
    EXPECT_EQ(ssidBytes(data.dot11Ssid), "Lab");
    EXPECT_EQ(data.wlanReasonCode, 0U);
    std::memcpy(&data, m_receiver.data[1].data(), sizeof data);
    EXPECT_EQ(data.wlanReasonCode, 0x10001U);
}

TEST_F(LinuxNotifications, SayThatTheRadioWasSwitched) {
    startListening({FakeInterface{}, secondRadio()});
    EXPECT_EQ(switchRadio(dot11_radio_state_off), ERROR_SUCCESS);
    EXPECT_EQ(resultOf(wlan_intf_opcode_radio_state), ERROR_SUCCESS); // the kernel has done it
    EXPECT_THAT(notices(), ElementsAre(Notice{MSM, 7, 3}));
    WLAN_PHY_RADIO_STATE state{};
    ASSERT_EQ(m_receiver.data[0].size(), sizeof state);
    std::memcpy(&state, m_receiver.data[0].data(), sizeof state);
    EXPECT_EQ(state.dot11SoftwareRadioState, dot11_radio_state_off);
    EXPECT_EQ(state.dot11HardwareRadioState, dot11_radio_state_on);
    kernel().setSwitch(9, "hard", true);
    kernel().announceSwitch();
    EXPECT_THAT(notices(), ElementsAre(Notice{MSM, 7, 9}));
    kernel().announceSwitch();
    EXPECT_THAT(notices(), IsEmpty()) << "a switch of something else";
}

TEST_F(LinuxNotifications, SayThatInterfacesComeAndGo) {
    startListening();
    kernel().add(secondRadio());
    kernel().announce(NL80211_CMD_NEW_INTERFACE, of(9, 1));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 13, 9}));
    kernel().announce(NL80211_CMD_NEW_INTERFACE, {u32(NL80211_ATTR_WIPHY, 0)});
    EXPECT_THAT(notices(), IsEmpty()) << "a device without a network interface";
    kernel().setSwitch(9, "soft", true);
    kernel().announceSwitch();
    EXPECT_THAT(notices(), ElementsAre(Notice{MSM, 7, 9})) << "its radio is watched too";
    kernel().announce(NL80211_CMD_DEL_INTERFACE, of(9, 1)); // before it is gone
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 14, 9}));
    kernel().remove(3);
    kernel().announce(NL80211_CMD_DEL_INTERFACE, of(3));
    kernel().remove(9);
    EXPECT_THAT(notices(), testing::Contains(Notice{ACM, 14, 3}));
}

TEST_F(LinuxNotifications, SayAfterALossWhatMayHaveBeenInIt) {
    startListening();
    kernel().add(secondRadio());
    kernel().announceLoss();
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 13, 9}, Notice{ACM, 7, 3}, Notice{ACM, 26, 3},
                                       Notice{ACM, 7, 9}, Notice{ACM, 26, 9}));
}

TEST_F(LinuxNotifications, IgnoreWhatIsOfNoInterfaceOfOursOrOfNoConcern) {
    startListening();
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(77));
    kernel().announce(NL80211_CMD_CONNECT, of(77));
    kernel().announce(NL80211_CMD_CONNECT, {});
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, {});
    kernel().announce(NL80211_CMD_TRIGGER_SCAN, of(3));
    kernel().announce(NL80211_CMD_FRAME, of(3));
    kernel().announce(255, {Bytes{1, 2, 3}});
    EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(LinuxNotifications, GoOnAfterAnAnnouncementThatCouldNotBeFollowedUp) {
    startListening();
    kernel().fail(NL80211_CMD_GET_INTERFACE, ETIMEDOUT);
    kernel().announce(NL80211_CMD_NEW_INTERFACE, of(9, 1));
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 7, 3}, Notice{ACM, 26, 3}));
}

TEST_F(LinuxNotifications, AreThoseOfTheRegisteredSources) {
    startListening();
    DWORD previous = 0;
    EXPECT_EQ(listen(MSM, &previous), ERROR_SUCCESS);
    EXPECT_EQ(previous, ALL);
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
    kernel().setSwitch(3, "soft", true);
    kernel().announceSwitch();
    EXPECT_THAT(notices(), ElementsAre(Notice{MSM, 7, 3}));
    EXPECT_EQ(listen(WLAN_NOTIFICATION_SOURCE_NONE, &previous), ERROR_SUCCESS);
    EXPECT_EQ(previous, MSM);
    EXPECT_EQ(kernel().openConnections(), 1U) << "nothing is listened to any more";
    EXPECT_EQ(listen(ALL, &previous), ERROR_SUCCESS);
    EXPECT_EQ(previous, WLAN_NOTIFICATION_SOURCE_NONE);
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
    EXPECT_EQ(notices().size(), 2U);
}

TEST_F(LinuxNotifications, AreRefusedWithTheErrorOfTheConnection) {
    start();
    kernel().refuseConnections(EPERM);
    EXPECT_EQ(listen(ALL), ERROR_ACCESS_DENIED);
    kernel().refuseConnections(0);
    EXPECT_EQ(listen(ALL), ERROR_SUCCESS);
}

TEST_F(LinuxNotifications, ReachEachClient) {
    startListening();
    Receiver other;
    ClientHandle second;
    DWORD version = 0;
    ASSERT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(second)), ERROR_SUCCESS);
    ASSERT_EQ(api().WlanRegisterNotification(second.get(), ACM, TRUE, &Receiver::receive, &other,
                                             nullptr, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_EQ(notices().size(), 2U);
    EXPECT_EQ(other.taken().size(), 2U);
    EXPECT_NE(other.thread, m_receiver.thread);
}

TEST_F(LinuxNotifications, WaitWithoutUsingTheProcessor) {
    startListening();
    const std::size_t waits = kernel().waits();
    EXPECT_EQ(stations(), ERROR_SUCCESS);
    EXPECT_EQ(kernel().waits(), waits);
    kernel().announce(NL80211_CMD_FRAME, of(3));
    kernel().settle();
    EXPECT_EQ(kernel().waits(), waits + 1) << "once for each announcement";
}

// --- how they end ---

TEST_F(LinuxNotifications, EndWhenTheirConnectionBreaks) {
    startListening();
    kernel().breakListeners();
    EXPECT_EQ(networks(), ERROR_SUCCESS);
    EXPECT_EQ(listen(WLAN_NOTIFICATION_SOURCE_NONE), ERROR_SUCCESS);
    EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(LinuxNotifications, EndBeforeTheHandleIsClosed) {
    startListening();
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> left{false};
    m_receiver.during = [&, leaving = leave.get_future().share()] {
        entered.set_value();
        leaving.wait();
        left = true;
    };
    kernel().announce(NL80211_CMD_SCAN_ABORTED, of(3));
    entered.get_future().wait();
    kernel().announce(NL80211_CMD_SCAN_ABORTED, of(3));
    std::thread closer([&] {
        ownedClient().reset();
        EXPECT_TRUE(left) << "the close waited for the callback";
    });
    // The table knows the handle no more, while its close waits.
    while (service().openHandles() != 0) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(left);
    leave.set_value();
    closer.join();
    EXPECT_EQ(m_receiver.taken().size(), 1U) << "what was pending is dropped";
    EXPECT_EQ(kernel().openConnections(), 0U);
}

TEST_F(LinuxNotifications, MayCloseTheirOwnHandle) {
    startListening();
    std::promise<DWORD> closed;
    HANDLE handle = client();
    m_receiver.during = [&] { closed.set_value(api().WlanCloseHandle(handle, nullptr)); };
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
    EXPECT_EQ(closed.get_future().get(), ERROR_SUCCESS);
    EXPECT_EQ(networks(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(listen(ALL), ERROR_INVALID_HANDLE);
    while (kernel().openConnections() != 0) {
        std::this_thread::yield();
    }
    EXPECT_EQ(m_receiver.taken().size(), 1U) << "the second of the two is dropped";
}

TEST_F(LinuxNotifications, MayEndAndBeginAgainFromACallback) {
    startListening();
    std::promise<DWORD> registered;
    m_receiver.during = [&] {
        m_receiver.during = nullptr;
        EXPECT_EQ(listen(WLAN_NOTIFICATION_SOURCE_NONE), ERROR_SUCCESS);
        registered.set_value(listen(ALL));
    };
    kernel().announce(NL80211_CMD_SCAN_ABORTED, of(3));
    EXPECT_EQ(registered.get_future().get(), ERROR_SUCCESS);
    while (kernel().openConnections() != 2) { // that before has ended
        std::this_thread::yield();
    }
    m_receiver.taken();
    kernel().announce(NL80211_CMD_SCAN_ABORTED, of(3));
    EXPECT_THAT(notices(), ElementsAre(Notice{ACM, 8, 3}));
}

TEST_F(LinuxNotifications, MayUseTheTable) {
    startListening({connectedInterface()});
    std::promise<std::size_t> found;
    m_receiver.during = [&] {
        m_receiver.during = nullptr;
        std::vector<std::string> names;
        EXPECT_EQ(networks(&names), ERROR_SUCCESS);
        EXPECT_EQ(resultOf(wlan_intf_opcode_current_connection), ERROR_SUCCESS);
        EXPECT_EQ(scan(), ERROR_SUCCESS);
        found.set_value(names.size());
    };
    kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
    EXPECT_EQ(found.get_future().get(), 2U);
}

TEST(LinuxService, ClosesWhatIsOpenWhenItEnds) {
    test::FakeKernel kernel;
    kernel.add({});
    {
        Service service(kernel);
        const HANDLE handle = service.open();
        service.client(handle)->registerNotification(
            {ALL, [](WLAN_NOTIFICATION_DATA* /*data*/, PVOID /*context*/) {}, nullptr});
        EXPECT_EQ(kernel.openConnections(), 2U);
    }
    EXPECT_EQ(kernel.openConnections(), 0U);
}

TEST(LinuxService, RegistersNothingForAClientThatIsBeingClosed) {
    test::FakeKernel kernel;
    Service service(kernel);
    const HANDLE handle = service.open();
    const std::shared_ptr<Client> client = service.client(handle);
    service.close(handle);
    const Registration registration{ALL, [](WLAN_NOTIFICATION_DATA* /*data*/, PVOID /*context*/) {},
                                    nullptr};
    EXPECT_THROW(client->registerNotification(registration), CallError);
    EXPECT_EQ(kernel.openConnections(), 1U);
}

// --- many threads ---

TEST_F(LinuxNotifications, ComeWhileTheTableIsUsedAndClientsComeAndGo) {
    constexpr int ROUNDS = 40;
    startListening({connectedInterface()});
    std::atomic<bool> over{false};
    std::thread announcer([&] {
        while (!over) {
            kernel().announce(NL80211_CMD_NEW_SCAN_RESULTS, of(3));
            kernel().setSwitch(3, "soft", true);
            kernel().announceSwitch();
            kernel().setSwitch(3, "soft", false);
            kernel().announceSwitch();
            kernel().settle();
        }
    });
    std::thread user([&] {
        for (int i = 0; i < ROUNDS; ++i) {
            networks();
            scan();
        }
    });
    for (int i = 0; i < ROUNDS; ++i) {
        Receiver receiver;
        ClientHandle handle;
        DWORD version = 0;
        EXPECT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(handle)), ERROR_SUCCESS);
        EXPECT_EQ(api().WlanRegisterNotification(handle.get(), ALL, TRUE, &Receiver::receive,
                                                 &receiver, nullptr, nullptr),
                  ERROR_SUCCESS);
    }
    user.join();
    over = true;
    announcer.join();
    EXPECT_EQ(networks(), ERROR_SUCCESS);
}

} // namespace
} // namespace nativewifi::linux_radio
