// Scans: how long they take, how their end is notified, what the lists show then.
#include "Session.h"

#include <mrl/Clock.h>
#include <mrl/Stopwatch.h>

#include <algorithm>
#include <set>
#include <string>

using nativewifi::api;

namespace contract {

namespace {

// The time in which a driver has to end a scan, by its documentation.
constexpr double DOCUMENTED_SECONDS = 4;
constexpr double DELIVERY_SECONDS = 0.5; // of its notification, on a busy PC
constexpr std::chrono::milliseconds CALLBACK_TIME(300);
constexpr std::chrono::milliseconds CALLBACK_STEP(10);

// A scan from its start to the notification of its end.
struct Scan {
    DWORD result;
    double seconds;
    std::optional<Notice> end;
    mrl::Json notices;
};

Scan scanOnce(Session& session) {
    const Listener listener(*session.guid());
    const mrl::Stopwatch watch;
    const DWORD result = session.scan();
    std::optional<Notice> end;
    if (result == ERROR_SUCCESS) {
        session.wait(session.options().scanLimit, [&] {
            end = listener.first(WLAN_NOTIFICATION_SOURCE_ACM, {wlan_notification_acm_scan_complete,
                                                                wlan_notification_acm_scan_fail});
            return end.has_value();
        });
    }
    return {.result = result, .seconds = watch.getElapsed(), .end = end, .notices = listener.all()};
}

// What every check of a scan needs: one that could be started.
template <typename Look>
Finding afterScan(Session& session, Look look) {
    const Scan scan = scanOnce(session);
    if (scan.result != ERROR_SUCCESS) {
        return notObservable({{"scan", scan.result}});
    }
    return look(scan);
}

Finding scanEndsInTime(Session& session) {
    return afterScan(session, [](const Scan& scan) {
        return judge(scan.end && scan.seconds <= DOCUMENTED_SECONDS + DELIVERY_SECONDS,
                     {{"seconds", scan.seconds}, {"ended", scan.end.has_value()}});
    });
}

Finding scanEndIsNotified(Session& session) {
    return afterScan(session, [](const Scan& scan) {
        return judge(scan.end && scan.end->code == wlan_notification_acm_scan_complete,
                     {{"seconds", scan.seconds}, {"notifications", scan.notices}});
    });
}

Finding notificationHasAThreadOfItsOwn(Session& session) {
    return afterScan(session, [](const Scan& scan) {
        if (!scan.end) {
            return notObservable({{"notifications", scan.notices}});
        }
        return judge(!scan.end->onCallersThread, {{"callersThread", scan.end->onCallersThread}});
    });
}

std::string nameOf(const DOT11_SSID& ssid) {
    return {ssid.ucSSID, ssid.ucSSID + std::min<ULONG>(ssid.uSSIDLength, DOT11_SSID_MAX_LENGTH)};
}

Finding listShowsWhatTheScanFound(Session& session) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> before;
    session.networks(out(before));
    return afterScan(session, [&](const Scan& scan) {
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> after;
        nativewifi::WlanMemory<WLAN_BSS_LIST> stations;
        const DWORD listed = session.networks(out(after));
        const DWORD found = session.stations(out(stations));
        if (listed != ERROR_SUCCESS || found != ERROR_SUCCESS || !after || !stations) {
            return notObservable({{"networks", listed}, {"stations", found}});
        }
        std::set<std::string> names;
        for (DWORD i = 0; i < after->dwNumberOfItems; ++i) {
            names.insert(nameOf(after->Network[i].dot11Ssid));
        }
        int missing = 0;
        for (DWORD i = 0; i < stations->dwNumberOfItems; ++i) {
            const std::string name = nameOf(stations->wlanBssEntries[i].dot11Ssid);
            // A hidden network sends no name, or one of zeros.
            const bool hidden = name.find_first_not_of('\0') == std::string::npos;
            missing += !hidden && !names.contains(name) ? 1 : 0;
        }
        return judge(missing == 0, {{"before", before ? before->dwNumberOfItems : 0},
                                    {"after", after->dwNumberOfItems},
                                    {"stations", stations->dwNumberOfItems},
                                    {"stationsWithoutNetwork", missing},
                                    {"seconds", scan.seconds}});
    });
}

struct SlowCallback {
    std::atomic<bool> entered = false;
    std::atomic<bool> closing = false;
    std::atomic<bool> finished = false;
};

void CALLBACK takeTime(WLAN_NOTIFICATION_DATA* /*data*/, PVOID context) {
    auto& state = *static_cast<SlowCallback*>(context);
    if (state.entered.exchange(true)) {
        return;
    }
    for (int i = 0; i < 100 && !state.closing; ++i) {
        mrl::Clock::current().sleep(CALLBACK_STEP);
    }
    mrl::Clock::current().sleep(CALLBACK_TIME);
    state.finished = true;
}

Finding closeWaitsForACallback(Session& session) {
    // Static: where the assumption does not hold, the callback outlives this check.
    static SlowCallback state;
    state.entered = state.closing = state.finished = false;
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    DWORD result = api().WlanOpenHandle(2, nullptr, &version, out(handle));
    if (result == ERROR_SUCCESS) {
        result = api().WlanRegisterNotification(handle.get(), WLAN_NOTIFICATION_SOURCE_ALL, TRUE,
                                                &takeTime, &state, nullptr, nullptr);
    }
    if (result == ERROR_SUCCESS) {
        result = session.scan();
    }
    const bool entered = result == ERROR_SUCCESS && session.wait(session.options().scanLimit, [] {
        return state.entered.load();
    });
    if (!entered) {
        return notObservable({{"result", result}, {"callback", false}});
    }
    state.closing = true;
    const mrl::Stopwatch watch;
    handle.reset();
    const bool finished = state.finished;
    return judge(finished, {{"callbackEnded", finished}, {"seconds", watch.getElapsed()}});
}

} // namespace

std::vector<Check> scanChecks() {
    return {
        {"scan.duration", "A scan ends within 4 seconds.", Need::ADAPTER, Switches::SCAN,
         &scanEndsInTime},
        {"scan.notification",
         "A scan's end is notified with code 7 of the auto-configuration source.", Need::ADAPTER,
         Switches::SCAN, &scanEndIsNotified},
        {"scan.callback-thread", "Callbacks run on a thread that is not the caller's.",
         Need::ADAPTER, Switches::SCAN, &notificationHasAThreadOfItsOwn},
        {"scan.list-shows-found",
         "After a scan, the list of networks has every name that the BSS list has.", Need::ADAPTER,
         Switches::SCAN, &listShowsWhatTheScanFound},
        {"close.waits-for-callback", "WlanCloseHandle returns after a running callback.",
         Need::ADAPTER, Switches::SCAN, &closeWaitsForACallback},
    };
}

} // namespace contract
