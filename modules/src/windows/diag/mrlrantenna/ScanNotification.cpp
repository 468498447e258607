#include "ScanNotification.h"

constinit std::atomic<void (*)(void*)> g_scanCompleteHandler{nullptr};
constinit std::atomic<void*> g_scanCompleteContext{nullptr};

void CALLBACK scanNotificationCallback(WLAN_NOTIFICATION_DATA* notification, void* /*context*/) {
    // The source is not examined: code 7 is "scan complete" of the auto-configuration source, and
    // any other source's code 7, such as a change of the radio, is taken the same way.
    if (notification->NotificationCode != wlan_notification_acm_scan_complete) {
        return;
    }
    void (*const handler)(void*) = g_scanCompleteHandler;
    void* const handlerContext = g_scanCompleteContext;
    if (handler == nullptr || handlerContext == nullptr) {
        return;
    }
    handler(handlerContext);
}
