// What a device can do, as a set.
#pragma once

#include <mrl/Types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// A set of capability bits.
class DeviceCapability {
public:
    DeviceCapability() = default; ///< the empty set

    static const DeviceCapability& NetworkCard();
    static const DeviceCapability& Wireless();

    /// Both sets together.
    DeviceCapability operator|(const DeviceCapability& other) const {
        return DeviceCapability(m_bits | other.m_bits);
    }
    /// Whether this set has every bit of `other`.
    bool includes(const DeviceCapability& other) const {
        return (m_bits & other.m_bits) == other.m_bits;
    }
    friend bool operator==(const DeviceCapability&, const DeviceCapability&) = default;

    /// The names of the bits, as device files write them ("Wireless", "NetworkCard").
    std::vector<std::string> names() const;
    /// The capability of that name, if there is one.
    static std::optional<DeviceCapability> fromName(std::string_view name);

private:
    explicit DeviceCapability(mrl::Uint32 bits) : m_bits(bits) {}
    mrl::Uint32 m_bits = 0;
};

} // namespace tesk5
