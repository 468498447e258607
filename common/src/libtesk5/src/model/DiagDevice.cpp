#include <tesk5/DiagDevice.h>

namespace tesk5 {

DiagDevice::DiagDevice(TeskString name, DeviceCapability capability, Properties properties)
    : m_name(std::move(name)), m_capability(capability), m_properties(std::move(properties)) {}

DeviceProperty DiagDevice::property(const TeskString& name) const {
    for (const auto& [known, value] : m_properties) {
        if (known == name) {
            return DeviceProperty(value);
        }
    }
    return DeviceProperty();
}

} // namespace tesk5
