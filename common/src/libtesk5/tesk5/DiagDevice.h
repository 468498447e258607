// A device of the PC as the framework hands it to a test.
#pragma once

#include <tesk5/DeviceCapability.h>
#include <tesk5/TeskString.h>

#include <utility>
#include <vector>

namespace tesk5 {

/// A property of a device, or the fact that the device does not have it.
class DeviceProperty {
public:
    DeviceProperty() = default; ///< a property that the device does not have
    explicit DeviceProperty(TeskString value) : m_exists(true), m_value(std::move(value)) {}

    bool exists() const { return m_exists; }
    /// Empty when the property does not exist.
    const TeskString& value() const { return m_value; }

private:
    bool m_exists = false;
    TeskString m_value;
};

/// A device: a name for people, capabilities, and properties in the order in which they were set.
/// Copies are independent.
class DiagDevice {
public:
    using Properties = std::vector<std::pair<TeskString, TeskString>>;

    DiagDevice(TeskString name, DeviceCapability capability, Properties properties = {});

    const TeskString& name() const { return m_name; }
    const DeviceCapability& capability() const { return m_capability; }
    const Properties& properties() const { return m_properties; }

    /// The property of that name (case-sensitive); one that does not exist reads as empty.
    DeviceProperty property(const TeskString& name) const;

private:
    TeskString m_name;
    DeviceCapability m_capability;
    Properties m_properties;
};

} // namespace tesk5
