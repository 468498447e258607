#include <tesk5/DeviceCapability.h>

namespace tesk5 {

namespace {

struct NamedCapability {
    const char* name;
    const DeviceCapability& (*capability)();
};
constexpr NamedCapability namedCapabilities[] = {
    {"Wireless", DeviceCapability::Wireless},
    {"NetworkCard", DeviceCapability::NetworkCard},
};

} // namespace

const DeviceCapability& DeviceCapability::NetworkCard() {
    static const DeviceCapability capability(1);
    return capability;
}

const DeviceCapability& DeviceCapability::Wireless() {
    static const DeviceCapability capability(2);
    return capability;
}

std::vector<std::string> DeviceCapability::names() const {
    std::vector<std::string> names;
    for (const NamedCapability& named : namedCapabilities) {
        if (includes(named.capability())) {
            names.emplace_back(named.name);
        }
    }
    return names;
}

std::optional<DeviceCapability> DeviceCapability::fromName(std::string_view name) {
    for (const NamedCapability& named : namedCapabilities) {
        if (name == named.name) {
            return named.capability();
        }
    }
    return std::nullopt;
}

} // namespace tesk5
