// What an interface shows at one moment, as the blocks that the client functions hand out.
#pragma once

#include "Blocks.h"

#include <radiosim/Scenario.h>

#include <nativewifi/WlanTypes.h>

#include <string>
#include <utility>

namespace radiosim {

/// Which entries of the BSS list are asked for.
struct BssFilter {
    std::string ssid;
    std::int32_t bssType;
    bool secured;
};

/// The member that an opcode of WlanQueryInterface and WlanSetInterface is about, when that is on
/// or off; else null.
bool Interface::*flagOf(DWORD opcode);

/// One interface at one moment. Pure: the same facts give the same bytes.
class View {
public:
    View(const Interface& facts, std::size_t interfaceIndex, Milliseconds elapsed,
         std::size_t endedScans)
        : m_facts(facts), m_index(interfaceIndex), m_elapsed(elapsed), m_endedScans(endedScans) {}

    /// Whether there are radios and each is off, in software or in hardware.
    bool radioOff() const;
    bool connected() const;
    std::int32_t state() const;
    WLAN_INTERFACE_INFO info(const GUID& guid) const;

    Bytes networkList() const;
    Bytes bssList(const std::optional<BssFilter>& filter) const;

    struct Answer {
        DWORD code = ERROR_SUCCESS;
        Bytes block = {};
        /// Where the block says how many items it holds; meaningless without `counted`.
        std::size_t countOffset = 0;
        bool counted = false;
    };
    /// The block of a WlanQueryInterface opcode.
    Answer query(DWORD opcode) const;

private:
    bool visible(const AccessPoint& accessPoint) const;
    std::uint32_t signal(const AccessPoint& accessPoint) const;
    const AccessPoint* named(const std::string& ssid) const;
    std::string connectedProfile() const;
    std::uint32_t connectionQuality() const;
    WLAN_AVAILABLE_NETWORK network(const AccessPoint& accessPoint) const;
    WLAN_BSS_ENTRY bssEntry(const AccessPoint& accessPoint, std::size_t place, const Bss& bss,
                            std::size_t number) const;
    struct HeardBss {
        WLAN_BSS_ENTRY entry;
        Bss bss;
        const AccessPoint* accessPoint; ///< of the facts
    };
    std::vector<HeardBss> heardBss(const std::optional<BssFilter>& filter) const;
    Milliseconds lastHeard(const Bss& bss) const;
    WLAN_CONNECTION_ATTRIBUTES connectionAttributes() const;
    LONG connectionLevel() const;
    Bytes linkQualities() const;
    Bytes connectionChains() const;
    Bytes bssChains() const;
    Bytes radioState() const;
    Bytes statistics() const;

    const Interface& m_facts;
    std::size_t m_index;
    Milliseconds m_elapsed;
    std::size_t m_endedScans;
};

/// Writes `value` over `block` from `offset` on; what does not fit is left out.
void overwrite(Bytes& block, std::size_t offset, DWORD value);

} // namespace radiosim
