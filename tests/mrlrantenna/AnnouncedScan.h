// The call that the service makes when something happened, made by the test itself.
#pragma once

#include <ScanNotification.h>

#include <nativewifi/WlanTypes.h>

namespace test {

/// Calls back as the service does at the end of a scan, or with another code or source.
inline void announceScan(DWORD code = wlan_notification_acm_scan_complete,
                         DWORD source = WLAN_NOTIFICATION_SOURCE_ACM) {
    WLAN_NOTIFICATION_DATA notification{};
    notification.NotificationSource = source;
    notification.NotificationCode = code;
    scanNotificationCallback(&notification, nullptr);
}

} // namespace test
