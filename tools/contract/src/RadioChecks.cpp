// The radio: its states, and what the other functions return while it is off.
#include "Session.h"

#include <mrl/OutputStream.h>

#include <vector>

using nativewifi::api;

namespace contract {

namespace {

constexpr DWORD MSM_RADIO_STATE_CHANGE = 7;

// Switches those PHYs off that are on, and on again when it ends.
class RadioOff {
public:
    explicit RadioOff(const Session& session, const WLAN_RADIO_STATE& before) : m_session(session) {
        mrl::cout << "  the radio is switched off ..." << mrl::endl;
        for (DWORD i = 0; i < before.dwNumberOfPhys; ++i) {
            const WLAN_PHY_RADIO_STATE& phy = before.PhyRadioState[i];
            if (phy.dot11SoftwareRadioState == dot11_radio_state_on &&
                phy.dot11HardwareRadioState != dot11_radio_state_off) {
                m_switched.push_back(phy.dwPhyIndex);
                m_result = set(phy.dwPhyIndex, dot11_radio_state_off);
            }
        }
    }
    RadioOff(const RadioOff&) = delete;
    RadioOff& operator=(const RadioOff&) = delete;
    ~RadioOff() {
        for (const DWORD phy : m_switched) {
            if (const DWORD result = set(phy, dot11_radio_state_on); result != ERROR_SUCCESS) {
                mrl::cerr << "contract: the radio could not be switched on again (error "
                          << std::to_string(result) << "); do so in the settings of Windows"
                          << mrl::endl;
            }
        }
        mrl::cout << "  the radio is switched on again" << mrl::endl;
    }

    DWORD result() const { return m_result; }

private:
    DWORD set(DWORD phy, DOT11_RADIO_STATE software) const {
        WLAN_PHY_RADIO_STATE state{phy, software, dot11_radio_state_unknown};
        return api().WlanSetInterface(m_session.handle(), m_session.guid(),
                                      wlan_intf_opcode_radio_state, sizeof state, &state, nullptr);
    }

    const Session& m_session;
    std::vector<DWORD> m_switched;
    DWORD m_result = ERROR_SUCCESS;
};

bool isOff(const Session& session) {
    const std::optional<WLAN_RADIO_STATE> state = session.radio();
    return state && !anyPhyOn(*state);
}

// Calls `look` while the radio is off: as it is found, or switched off with leave.
template <typename Look>
Finding whileOff(Session& session, Look look) {
    const std::optional<WLAN_RADIO_STATE> state = session.radio();
    if (!state) {
        return notObservable({{"reason", "the interface does not give the state of its radio"}});
    }
    if (!anyPhyOn(*state)) {
        return look();
    }
    if (!session.options().radio) {
        return notObservable({{"reason", "needs --radio, or a radio that is off"}});
    }
    const RadioOff off(session, *state);
    if (!session.wait(session.options().switchLimit, [&] { return isOff(session); })) {
        return notObservable({{"set", off.result()}, {"reason", "the radio stayed on"}});
    }
    return look();
}

Finding physAreCounted(Session& session) {
    const auto state = session.query<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state);
    if (!state.succeeded() || !state.has(sizeof(DWORD))) {
        return notObservable({{"result", state.result}});
    }
    const DWORD phys = state.block->dwNumberOfPhys;
    return judge(phys >= 1 && phys <= WLAN_MAX_PHY_INDEX, {{"phys", phys}});
}

Finding switchingShows(Session& session) {
    const std::optional<WLAN_RADIO_STATE> before = session.radio();
    if (!before || !anyPhyOn(*before) || !session.options().radio) {
        return notObservable({{"reason", "needs --radio and a radio that is on"}});
    }
    const std::chrono::milliseconds limit = session.options().switchLimit;
    std::optional<RadioOff> off(std::in_place, session, *before);
    const DWORD set = off->result();
    const bool wentOff = session.wait(limit, [&] { return isOff(session); });
    off.reset();
    const bool cameBack = session.wait(limit, [&] { return !isOff(session); });
    return judge(set == ERROR_SUCCESS && wentOff && cameBack,
                 {{"set", set}, {"off", wentOff}, {"onAgain", cameBack}});
}

Finding switchingIsNotified(Session& session) {
    const std::optional<WLAN_RADIO_STATE> before = session.radio();
    if (!before || !anyPhyOn(*before) || !session.options().radio) {
        return notObservable({{"reason", "needs --radio and a radio that is on"}});
    }
    const Listener listener(*session.guid());
    bool notified = false;
    {
        const RadioOff off(session, *before);
        notified = session.wait(session.options().switchLimit, [&] {
            return listener.first(WLAN_NOTIFICATION_SOURCE_MSM, {MSM_RADIO_STATE_CHANGE})
                .has_value();
        });
    }
    return judge(notified, {{"notifications", listener.all()}});
}

constexpr DWORD RADIO_IS_OFF = ERROR_NDIS_DOT11_POWER_STATE_INVALID;

// Whether `call` returns `code` while the radio is off.
template <typename Call>
Finding returnsWhileOff(Session& session, DWORD code, Call call) {
    return whileOff(session, [&] {
        const DWORD result = call();
        return judge(result == code, {{"result", result}});
    });
}

Finding listWhileOff(Session& session) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    return returnsWhileOff(session, RADIO_IS_OFF, [&] { return session.networks(out(list)); });
}

Finding bssListWhileOff(Session& session) {
    nativewifi::WlanMemory<WLAN_BSS_LIST> list;
    return returnsWhileOff(session, RADIO_IS_OFF, [&] { return session.stations(out(list)); });
}

// Refused, so that nothing more is switched.
Finding scanWhileOff(Session& session) {
    return returnsWhileOff(session, RADIO_IS_OFF, [&] { return session.scan(); });
}

Finding connectionWhileOff(Session& session) {
    return returnsWhileOff(session, ERROR_INVALID_STATE,
                           [&] { return session.resultOf(wlan_intf_opcode_current_connection); });
}

} // namespace

std::vector<Check> radioChecks() {
    return {
        {"radio.phys", "The state of the radio names 1 to 64 PHYs.", Need::ADAPTER,
         Switches::NOTHING, &physAreCounted},
        {"radio.switch", "The radio can be switched off and on, and its state then says so.",
         Need::ADAPTER, Switches::RADIO, &switchingShows},
        {"radio.notification",
         "Switching the radio is notified with code 7 of the media-specific source.", Need::ADAPTER,
         Switches::RADIO, &switchingIsNotified},
        {"radio.off-list",
         "With the radio off, WlanGetAvailableNetworkList returns error 0x80342002.", Need::ADAPTER,
         Switches::RADIO, &listWhileOff},
        {"radio.off-bss-list",
         "With the radio off, WlanGetNetworkBssList returns error 0x80342002.", Need::ADAPTER,
         Switches::RADIO, &bssListWhileOff},
        {"radio.off-scan", "With the radio off, WlanScan returns error 0x80342002.", Need::ADAPTER,
         Switches::RADIO, &scanWhileOff},
        {"radio.off-connection",
         "With the radio off, current_connection is refused with error 5023.", Need::ADAPTER,
         Switches::RADIO, &connectionWhileOff},
    };
}

} // namespace contract
