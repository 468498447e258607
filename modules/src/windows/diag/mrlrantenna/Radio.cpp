#include "Radio.h"

#include <algorithm>

namespace {

bool isOn(DOT11_RADIO_STATE state) {
    return state != dot11_radio_state_unknown && state != dot11_radio_state_off;
}

} // namespace

Radio::~Radio() = default;

void Radio::update(const WLAN_RADIO_STATE& state) {
    m_numberOfPhys = static_cast<mrl::Int32>(state.dwNumberOfPhys);
    for (mrl::Int32 i = 0; i < std::min(m_numberOfPhys, MAX_PHYS); ++i) {
        const WLAN_PHY_RADIO_STATE& source = state.PhyRadioState[i];
        m_phys[i] = {source.dwPhyIndex, source.dot11SoftwareRadioState,
                     source.dot11HardwareRadioState};
    }
}

const Radio::Phy* Radio::phy(mrl::Int32 phyIndex) const {
    const bool exists = phyIndex >= 0 && phyIndex < std::min(m_numberOfPhys, MAX_PHYS);
    return exists ? &m_phys[phyIndex] : nullptr;
}

RadioStateFlags Radio::flags(mrl::Int32 phyIndex) const {
    const Phy* entry = phy(phyIndex);
    if (entry == nullptr) {
        return SOFTWARE_OFF | HARDWARE_OFF;
    }
    return (::isOn(entry->software) ? SOFTWARE_ON : SOFTWARE_OFF) |
           (::isOn(entry->hardware) ? HARDWARE_ON : HARDWARE_OFF);
}
