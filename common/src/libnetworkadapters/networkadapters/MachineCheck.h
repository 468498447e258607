// What keeps the radios of this PC from being found or used, beyond what the wireless service and
// the devices themselves say. On Linux that is in the system's files; on Windows there is nothing.
#pragma once

#include <tesk5/Finding.h>

#include <nativewifi/RadioChannels.h>
#include <nativewifi/WlanTypes.h>

#include <filesystem>
#include <vector>

namespace networkadapters {

/// Key of the finding that an interface is down. Its lists then fail as if the radio were off.
inline constexpr const char* INTERFACE_DOWN = "DOCTOR_INTERFACE_DOWN";

/// For ModuleInfo::checkMachine: wireless devices without a driver or firmware, interfaces that are
/// down, a missing capability, a regulatory domain that hides channels; as good findings, programs
/// that scan too. Always empty on Windows.
/// Failure: what cannot be read is not judged
/// Threads: that of the run
/// Platform: files of /sys and /proc; nativewifi::radioChannels()
tesk5::Findings checkMachine();

/// The finding that the system denies `device` the call of `function`, with the remedy.
/// \param error as the call returned it
tesk5::Finding accessDenied(const tesk5::TeskString& device, const char* function, DWORD error);

/// Puts another machine in the place of this one for checkMachine() and the list of adapters, while
/// it lives. One at a time. Threads: that of the run
class ScopedMachine {
public:
    /// \param root stands for "/"; with an empty path there are no files
    /// \param radios as nativewifi::radioChannels() gives them
    explicit ScopedMachine(std::filesystem::path root,
                           std::vector<nativewifi::RadioChannels> radios = {});
    ScopedMachine(const ScopedMachine&) = delete;
    ScopedMachine& operator=(const ScopedMachine&) = delete;
    ~ScopedMachine();
};

} // namespace networkadapters
