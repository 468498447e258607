// The radio of a wireless interface: one on/off state in software and one in hardware for each PHY.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/Types.h>

/// The state of one PHY's radio.
enum RadioStateFlags : mrl::Uint32 {
    RADIO_STATE_NONE = 0, ///< the state could not be read
    SOFTWARE_ON = 1,
    SOFTWARE_OFF = 2,
    HARDWARE_ON = 4,
    HARDWARE_OFF = 8,
};

constexpr RadioStateFlags operator|(RadioStateFlags a, RadioStateFlags b) {
    return static_cast<RadioStateFlags>(static_cast<mrl::Uint32>(a) | static_cast<mrl::Uint32>(b));
}

/// A copy of the radio state per PHY.
class Radio {
public:
    static constexpr mrl::Int32 MAX_PHYS = WLAN_MAX_PHY_INDEX;

    struct Phy {
        mrl::Uint32 index = 0;
        DOT11_RADIO_STATE software = dot11_radio_state_unknown;
        DOT11_RADIO_STATE hardware = dot11_radio_state_unknown;
    };

    Radio() = default;
    Radio(const Radio&) = default;
    Radio& operator=(const Radio&) = default;
    virtual ~Radio();

    /// Takes over the count of `state` as it is, and as many entries as it gives. Entries beyond
    /// the count keep their old values.
    void update(const WLAN_RADIO_STATE& state);

    /// The entry of that index; null when it does not lie below the count and within the table.
    const Phy* phy(mrl::Int32 phyIndex) const;

    /// The state of one PHY. An unknown state counts as off: a technician must not be sent to the
    /// antennas of a radio that does not work. SOFTWARE_OFF | HARDWARE_OFF for a PHY without entry.
    RadioStateFlags flags(mrl::Int32 phyIndex) const;

    /// The count less one, with wrap-around: the index of the last PHY, -1 when there is none.
    mrl::Int32 lastPhy() const {
        return static_cast<mrl::Int32>(static_cast<mrl::Uint32>(m_numberOfPhys) - 1);
    }

    /// Whether the PHY is on in software and in hardware.
    bool isOn(mrl::Int32 phyIndex) const { return flags(phyIndex) == (SOFTWARE_ON | HARDWARE_ON); }

    /// As the driver reported it: it may be negative, and beyond the table.
    mrl::Int32 m_numberOfPhys = 0;
    Phy m_phys[MAX_PHYS] = {};
};
