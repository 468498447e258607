// What is on the air, once: one scan, and then the list of what was heard.
#pragma once

#include <networks/Network.h>

#include <functional>
#include <vector>

namespace networks {

/// What one look around brought.
struct Listing {
    std::vector<Network> networks; ///< that the target means; by falling level
    std::size_t others = 0;        ///< that were listed too, and are not meant
    /// Why the system did not scan; ERROR_SUCCESS when it did. The list is then what it knew
    /// before.
    DWORD scanError = ERROR_SUCCESS;
    bool scanFailed = false; ///< it began to scan, and could not end it
    /// Why there is no list; ERROR_SUCCESS when there is one.
    DWORD error = ERROR_SUCCESS;
    const char* function = ""; ///< the call that returned `error`
    bool interrupted = false;  ///< by `stop`: nothing was listed
};

/// Scans on all channels, waits for the end of the scan, and reads the list. Of two entries of one
/// address, as hidden networks have them, the one with a name counts.
///
/// Blocks for readings::longestScan() at most.
/// \param stop asked now and then while the scan lasts
/// Threads: the caller's
/// Platform: WlanOpenHandle, WlanRegisterNotification, WlanScan, WlanGetNetworkBssList
Listing listNetworks(const GUID& interfaceGuid, const readings::Target& target,
                     const std::function<bool()>& stop);

} // namespace networks
