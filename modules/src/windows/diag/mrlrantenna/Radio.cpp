#include "Radio.h"

#include <algorithm>

Radio::~Radio() = default;

void Radio::update(const WLAN_RADIO_STATE& state) {
    m_numberOfPhys = static_cast<mrl::Int32>(
        std::min<mrl::Uint32>(state.dwNumberOfPhys, static_cast<mrl::Uint32>(MAX_PHYS)));
    for (mrl::Int32 i = 0; i < m_numberOfPhys; ++i) {
        const WLAN_PHY_RADIO_STATE& source = state.PhyRadioState[i];
        m_phys[i] = {source.dwPhyIndex, source.dot11SoftwareRadioState,
                     source.dot11HardwareRadioState};
    }
}

const Radio::Phy* Radio::phy(mrl::Int32 phyIndex) const {
    return phyIndex >= 0 && phyIndex < m_numberOfPhys ? &m_phys[phyIndex] : nullptr;
}
