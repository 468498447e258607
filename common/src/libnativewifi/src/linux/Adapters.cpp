#include "Adapters.h"

#include <nativewifi/Guid.h>

#include <algorithm>
#include <utility>

namespace nativewifi::linux_radio {

namespace {

template <typename Condition>
const Adapter* firstOf(const std::vector<Adapter>& adapters, Condition condition) {
    const auto found = std::find_if(adapters.begin(), adapters.end(), condition);
    return found == adapters.end() ? nullptr : &*found;
}

// The lower 12 bits of the third field are free for the number.
GUID numbered(GUID guid, unsigned number) {
    guid.Data3 = static_cast<USHORT>(guid.Data3 | number);
    return guid;
}

} // namespace

std::vector<Adapter> adaptersOf(std::vector<Interface> present, const std::vector<Adapter>& known,
                                const Host& host) {
    std::vector<Adapter> adapters;
    std::vector<Adapter*> unnamed;
    adapters.reserve(present.size()); // `unnamed` points into it
    for (Interface& interface : present) {
        const Adapter* const before = findByIndex(known, interface.index);
        const bool same = before != nullptr && before->interface.wiphy == interface.wiphy;
        Adapter& adapter = adapters.emplace_back();
        adapter.interface = std::move(interface);
        if (same) {
            adapter.guid = before->guid;
        } else {
            unnamed.push_back(&adapter);
        }
    }
    for (Adapter* const adapter : unnamed) {
        const Interface& interface = adapter->interface;
        const GUID guid =
            guidOfAddress(host.permanentAddress(interface.name).value_or(interface.address));
        unsigned number = 0;
        while (findByGuid(adapters, numbered(guid, number)) != nullptr) {
            ++number;
        }
        adapter->guid = numbered(guid, number);
    }
    return adapters;
}

const Adapter* findByIndex(const std::vector<Adapter>& adapters, std::uint32_t index) {
    return firstOf(adapters,
                   [index](const Adapter& adapter) { return adapter.interface.index == index; });
}

const Adapter* findByGuid(const std::vector<Adapter>& adapters, const GUID& guid) {
    return firstOf(adapters,
                   [&guid](const Adapter& adapter) { return sameGuid(adapter.guid, guid); });
}

} // namespace nativewifi::linux_radio
