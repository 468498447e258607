// The radio of a wireless interface: one on/off state in software and one in hardware for each PHY.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/Types.h>

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

    /// Takes over the PHYs of `state`. Entries beyond its count keep their old values. A count
    /// beyond the table, which only a broken driver reports, is cut to the table's size.
    void update(const WLAN_RADIO_STATE& state);

    /// The entry of that index, or null when there is none: a negative index is what "the last PHY"
    /// of an interface without PHYs comes to.
    const Phy* phy(mrl::Int32 phyIndex) const;

    mrl::Int32 m_numberOfPhys = 0;
    Phy m_phys[MAX_PHYS] = {}; ///< the first m_numberOfPhys are meaningful
};

/// What getRadioState() tells of one PHY. 0: the state could not be read.
enum RadioStateFlags : mrl::Uint32 {
    RADIO_STATE_NONE = 0,
    SOFTWARE_ON = 1,
    SOFTWARE_OFF = 2,
    HARDWARE_ON = 4,
    HARDWARE_OFF = 8,
};

constexpr RadioStateFlags operator|(RadioStateFlags a, RadioStateFlags b) {
    return static_cast<RadioStateFlags>(static_cast<mrl::Uint32>(a) | static_cast<mrl::Uint32>(b));
}
