// Which wireless interfaces the machine has, and the GUID of each.
#pragma once

#include "Host.h"
#include "Records.h"

#include <nativewifi/WlanTypes.h>

#include <vector>

namespace nativewifi::linux_radio {

struct Adapter {
    GUID guid{};
    Interface interface;
};

/// The adapters of the interfaces `present`, in their order. The GUID is made of the radio's
/// permanent address, and of a number where several interfaces have the same: so it is the same
/// after each start of the machine. An adapter that was among `known` keeps its GUID.
std::vector<Adapter> adaptersOf(std::vector<Interface> present, const std::vector<Adapter>& known,
                                const Host& host);

/// Null when there is none.
const Adapter* findByIndex(const std::vector<Adapter>& adapters, std::uint32_t index);
const Adapter* findByGuid(const std::vector<Adapter>& adapters, const GUID& guid);

} // namespace nativewifi::linux_radio
