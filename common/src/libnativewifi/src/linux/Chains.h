// Makes the blocks of the opcodes of LinuxRadio.h.
#pragma once

#include "Records.h"

#include <nativewifi/Block.h>

namespace nativewifi::linux_radio {

/// ChainLevels of a connection; empty when the driver reports no chain.
Block connectionChains(const Station& accessPoint);

/// ChainLevelsList of a scan result; empty when the driver reports no chain of any BSS.
Block bssChains(const std::vector<Bss>& heard);

} // namespace nativewifi::linux_radio
