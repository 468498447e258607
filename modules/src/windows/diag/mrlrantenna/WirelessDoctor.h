// What keeps the tests from running or from finding their access point, as findings for
// technicians. On a client handle of its own, apart from those of the tests.
#pragma once

#include <tesk5/ModuleInfo.h>

#include <mrl/String.h>

#include <nativewifi/WlanTypes.h>

#include <vector>

/// Key of the advice after a signal that reached a limit.
inline constexpr const char* WEAK_SIGNAL_ADVICE = "ADVICE_WEAK_SIGNAL";

/// Whether the parameters can be used: the thresholds by the rule of the verification test, and the
/// name by what a name can be. Makes no call to the platform.
/// \param complete whether a missing name and missing thresholds are findings too
tesk5::Findings checkTestParameters(bool complete);

/// Looks at the adapter's radio, at the access to its list of networks and, when the parameter
/// "SSID" has a value, for that name as the verification test looks for it. What keeps the wireless
/// service itself from answering is left to the framework.
///
/// A thorough one has the adapter scan first, and blocks for 4 s, the longest that a driver may
/// take for a scan.
/// Failure: what goes wrong is a finding
/// Threads: the caller's
/// Platform: WlanOpenHandle, WlanEnumInterfaces, WlanQueryInterface, WlanScan,
/// WlanGetAvailableNetworkList, WlanFreeMemory, WlanCloseHandle
void examineWirelessDevice(const tesk5::DiagDevice& device, tesk5::ExaminationDepth depth,
                           tesk5::Findings& findings);

/// What keeps the verification test from finding `wanted` (as the parameter gives it) in a list of
/// networks, or that nothing does. `list` is as the system gives it, nameless networks included.
tesk5::Finding findingOnName(const tesk5::TeskString& device, const mrl::String& wanted,
                             const WLAN_AVAILABLE_NETWORK_LIST& list);
