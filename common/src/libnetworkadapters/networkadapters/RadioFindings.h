// What keeps one radio from hearing, as findings: the same words in every module's doctor.
#pragma once

#include <tesk5/Finding.h>

#include <nativewifi/WlanTypes.h>

namespace networkadapters {

/// A call about `device` failed. \param error as the call returned it
tesk5::Finding callFailed(const tesk5::TeskString& device, const char* function, DWORD error);

/// The radio of `device` is switched off. \param byHardware by its switch, and not by software
tesk5::Finding radioSwitchedOff(const tesk5::TeskString& device, bool byHardware);

/// `device` hears no network at all.
tesk5::Finding noNetworks(const tesk5::TeskString& device);

/// Whether `findings` have an interface that is down: it works like a radio that is off.
bool explainsRadio(const tesk5::Findings& findings);

} // namespace networkadapters
