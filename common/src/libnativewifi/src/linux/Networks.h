// Makes the Native Wifi interface's lists from records of nl80211.
#pragma once

#include "Records.h"

#include <nativewifi/Block.h>
#include <nativewifi/Elements.h>
#include <nativewifi/LinkQuality.h>

#include <span>

namespace nativewifi::linux_radio {

/// The name: at most 32 bytes; empty for a hidden one (no element, length 0 or zeros only) and for
/// an element that is too long.
Bytes ssidOf(const Bss& bss);
Security securityOf(const Bss& bss);
DOT11_PHY_TYPE phyTypeOf(const Bss& bss);
DOT11_BSS_TYPE typeOf(const Bss& bss);
/// dBm; of a driver that reports percent only, percent / 2 - 100. Nothing when the driver is
/// silent.
std::optional<LONG> levelOf(const Bss& bss);

constexpr std::uint64_t NS_PER_MS = 1'000'000;
/// Nanoseconds in one unit of host timestamps.
constexpr std::uint64_t NS_PER_FILE_TIME = 100;

/// Whether the kernel heard of it at most `freshMs` ago, or the interface is connected to it.
/// \param bootTimeNs now, on CLOCK_BOOTTIME
bool isFresh(const Bss& bss, std::uint64_t bootTimeNs, std::uint32_t freshMs);

/// The block of WlanGetAvailableNetworkList: one entry for each SSID, BSS type and security, the
/// strongest BSS counts; the connected one first, then by falling quality. Stable for equal input.
Block availableNetworkList(const std::vector<Bss>& heard);

/// The block of WlanGetNetworkBssList, elements behind the entries. The level of a driver that is
/// silent is -100.
/// \param ssid null lists all; else only that name's, of `type` and `secured`
/// \param bootTimeNs now, on CLOCK_BOOTTIME
/// \param nowFileTime host time in 100 ns since 1601, from which ages are taken off
Block bssList(const std::vector<Bss>& heard, const DOT11_SSID* ssid, DOT11_BSS_TYPE type,
              bool secured, std::uint64_t bootTimeNs, std::uint64_t nowFileTime);

} // namespace nativewifi::linux_radio
