// What keeps the radios of this PC from being found or used, beyond what the wireless service and
// the devices themselves say. On Linux that is in the system's files; on Windows there is nothing.
#pragma once

#include <tesk5/Finding.h>

#include <nativewifi/WlanTypes.h>

#include <filesystem>

namespace networkadapters {

/// For ModuleInfo::checkMachine: wireless devices without a driver or firmware, interfaces that are
/// down, a missing capability, a regulatory domain that hides channels; as good findings, programs
/// that scan too. Always empty on Windows.
/// Failure: what cannot be read is not judged
/// Threads: that of the run
/// Platform: files of /sys and /proc
tesk5::Findings checkMachine();

/// The finding that the system denies `device` the call of `function`, with the remedy.
/// \param error as the call returned it
tesk5::Finding accessDenied(const tesk5::TeskString& device, const char* function, DWORD error);

/// Puts another folder in the place of "/", from which checkMachine() and the list of adapters read
/// the system's files, while it lives. With an empty path nothing of this PC is read. One at a
/// time. Threads: that of the run
class ScopedSystemRoot {
public:
    explicit ScopedSystemRoot(std::filesystem::path root);
    ScopedSystemRoot(const ScopedSystemRoot&) = delete;
    ScopedSystemRoot& operator=(const ScopedSystemRoot&) = delete;
    ~ScopedSystemRoot();
};

} // namespace networkadapters
