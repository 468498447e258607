// The hook for the end of a system scan: one slot for the whole process, filled by the interactive
// test when it makes its dialog, never cleared.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <atomic>

/// What to call when a scan has completed, and the context to hand it; both null until the
/// interactive test has run. Read without a lock on a thread of the wireless service: the
/// context is set before the handler.
extern std::atomic<void (*)(void*)> g_scanCompleteHandler;
extern std::atomic<void*> g_scanCompleteContext;

/// The callback that every client handle of WirelessDevice registers, for all sources. A
/// notification of code 7, from whatever source, calls the handler on the calling thread, which is
/// one of the wireless service; any other does nothing, and neither does an empty slot.
void CALLBACK scanNotificationCallback(WLAN_NOTIFICATION_DATA* notification, void* context);
