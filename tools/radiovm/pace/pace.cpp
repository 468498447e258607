// Times the first interface's radio: how many scans of one channel it makes in a second, and what a
// client costs that only waits for notifications. Prints one JSON object.
//
//     pace MHZ
#include <nativewifi/Handles.h>
#include <nativewifi/LinuxRadio.h>

#include <mrl/Clock.h>
#include <mrl/Json.h>
#include <mrl/Stopwatch.h>

#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <mutex>

namespace {

using nativewifi::api;

constexpr int SCANS = 10;
constexpr std::chrono::seconds SCAN_LIMIT{5};
constexpr std::chrono::seconds REST{1}; // announcements of the scans before have come by then
constexpr std::chrono::seconds IDLE{2};

/// Counts the ends of scans.
class ScanEnds {
public:
    static void receive(WLAN_NOTIFICATION_DATA* notification, PVOID context) {
        if (notification->NotificationSource == WLAN_NOTIFICATION_SOURCE_ACM &&
            (notification->NotificationCode == wlan_notification_acm_scan_complete ||
             notification->NotificationCode == wlan_notification_acm_scan_fail)) {
            auto& self = *static_cast<ScanEnds*>(context);
            const std::lock_guard lock(self.m_mutex);
            ++self.m_count;
            self.m_changed.notify_all();
        }
    }
    int count() {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }
    bool waitFor(int count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, SCAN_LIMIT, [&] { return m_count >= count; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

double processorSeconds() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

// Returns the scans that ended, and ends at the first that does not.
mrl::Json scan(HANDLE client, const GUID& guid, ULONG frequencyMhz, ScanEnds& ends) {
    const mrl::Stopwatch watch;
    int ended = 0;
    DWORD result = ERROR_SUCCESS;
    for (; ended < SCANS; ++ended) {
        const int before = ends.count();
        nativewifi::ChannelScan request{frequencyMhz, {}};
        result = api().WlanSetInterface(client, &guid, nativewifi::wlan_intf_opcode_scan_channel,
                                        sizeof request, &request, nullptr);
        if (result != ERROR_SUCCESS || !ends.waitFor(before + 1)) {
            break;
        }
    }
    return {{"scans", ended}, {"seconds", watch.getElapsed()}, {"result", result}};
}

mrl::Json idle() {
    mrl::Clock::current().sleep(REST);
    const double before = processorSeconds();
    mrl::Clock::current().sleep(IDLE);
    return {{"seconds", IDLE.count()}, {"processorSeconds", processorSeconds() - before}};
}

int run(ULONG frequencyMhz) {
    ScanEnds ends; // before the handle, whose end waits for callbacks
    nativewifi::ClientHandle client;
    DWORD version = 0;
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
    DWORD result = api().WlanOpenHandle(2, nullptr, &version, out(client));
    if (result == ERROR_SUCCESS) {
        result = api().WlanEnumInterfaces(client.get(), nullptr, out(list));
    }
    if (result == ERROR_SUCCESS) {
        result = api().WlanRegisterNotification(client.get(), WLAN_NOTIFICATION_SOURCE_ALL, TRUE,
                                                &ScanEnds::receive, &ends, nullptr, nullptr);
    }
    if (result != ERROR_SUCCESS || list->dwNumberOfItems == 0) {
        std::cerr << "pace: no radio (error " << result << ")\n";
        return EXIT_FAILURE;
    }
    mrl::Json figures;
    figures["channel"] =
        scan(client.get(), list->InterfaceInfo[0].InterfaceGuid, frequencyMhz, ends);
    figures["idle"] = idle();
    std::cout << figures.dump() << '\n';
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: pace MHZ\n";
        return EXIT_FAILURE;
    }
    return run(static_cast<ULONG>(std::strtoul(arguments[1], nullptr, 10)));
}
