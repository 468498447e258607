// The level of each receive chain, beside the one level that drivers make of them.
#pragma once

#include <readings/LevelSource.h>

#include <optional>
#include <vector>

namespace readings {

/// Levels in dBm by chain number from 0, nativewifi::MAX_CHAINS at most; a chain that tells nothing
/// has none.
using ChainLevels = std::vector<std::optional<LONG>>;

/// The chains of one interface. One thread.
class ChainSource {
public:
    /// \param interfaceGuid the wireless interface
    explicit ChainSource(const GUID& interfaceGuid) : m_guid(interfaceGuid) {}

    /// Whether the system has a public way to read them at all: Linux has one, Windows has none.
    static bool isKnownToSystem();

    /// The chains that made a fresh reading of LevelSource; to be asked right after it. Chains that
    /// the hardware does not have, and numbers that are no levels, are left out.
    /// \return empty where the driver tells no chain of this kind of reading, or where the
    /// connection or the access point has gone meanwhile
    /// Platform: on Linux the opcodes of nativewifi/LinuxRadio.h; Windows is not asked
    ChainLevels levelsOf(const Reading& reading);

    /// A bit for each receive antenna in use; nothing when the driver does not tell.
    std::optional<ULONG> antennas();

private:
    [[maybe_unused]] GUID m_guid; ///< Windows is not asked
    nativewifi::ClientHandle m_client;
};

} // namespace readings
