// The channels that the radios of a Linux machine may use, and by the rules of which country.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace nativewifi {

struct RadioChannels {
    std::string radio;            ///< "phy0"
    std::string country;          ///< two letters; "00" for rules that hold in the whole world
    std::size_t channels5Ghz = 0; ///< that the radio has
    std::size_t usable5Ghz = 0;   ///< of these, those that the rules allow to listen on
};

/// Of every radio; none when the kernel does not answer. Any thread.
/// Platform: NL80211_CMD_GET_WIPHY, NL80211_CMD_GET_REG
std::vector<RadioChannels> radioChannels();

} // namespace nativewifi
