// Messages of nl80211, of the kind that the first byte chooses: what is read of them has the
// lengths and ranges that its readers trust.
#include <support/Require.h>

#include <Chains.h>
#include <Messages.h>

#include <nativewifi/LinuxRadio.h>

namespace {

using namespace nativewifi;
using namespace nativewifi::linux_radio;
using fuzz::require;

void checkLevels(const std::vector<std::optional<std::int32_t>>& levels) {
    require(levels.size() <= MAX_CHAINS, "a level has a chain");
    for (const std::optional<std::int32_t>& level : levels) {
        require(!level || (*level < 0 && *level > -110), "a level is one");
    }
}

void checkWiphy(Attributes attributes) {
    // Two messages, as of a split dump.
    std::vector<Wiphy> wiphys;
    const std::size_t half = attributes.size() / 2;
    for (const Attributes part : {attributes.first(half), attributes.subspan(half), attributes}) {
        if (std::optional<Wiphy> wiphy = readWiphy(part)) {
            merge(wiphys, std::move(*wiphy));
        }
    }
    for (const Wiphy& wiphy : wiphys) {
        require(wiphy.name.find('\0') == std::string::npos, "a name ends at its terminator");
        for (const Channel& channel : wiphy.channels) {
            require(channel.frequencyMhz != 0, "a channel has a frequency");
        }
    }
}

void checkInterface(Attributes attributes) {
    if (const std::optional<Interface> interface = readInterface(attributes)) {
        require(interface->ssid.size() <= DOT11_SSID_MAX_LENGTH, "a name has 32 bytes at most");
        require(interface->name.find('\0') == std::string::npos, "a name ends at its terminator");
    }
}

void checkBss(Attributes attributes) {
    if (const std::optional<Bss> bss = readBss(attributes)) {
        require(bss->frequencyMhz != 0, "an entry has a frequency");
        require(bss->elements.size() < attributes.size(), "the elements lie in the message");
        require(!bss->signalMbm || (*bss->signalMbm <= -100 && *bss->signalMbm > -12800),
                "a level is one");
        require(bss->signalPercent.value_or(0) <= 100, "a percentage is one");
        checkLevels(bss->chainsDbm);
        bssChains({*bss});
    }
}

void checkStation(Attributes attributes) {
    if (const std::optional<Station> station = readStation(attributes)) {
        require(station->signalDbm.value_or(-1) < 0 && station->averageDbm.value_or(-1) < 0,
                "a level is one");
        require(station->receiveRate != 0U && station->transmitRate != 0U, "a rate is one");
        checkLevels(station->chainsDbm);
        checkLevels(station->averageChainsDbm);
        connectionChains(*station);
    }
}

void checkEvent(Attributes attributes) {
    if (!attributes.empty()) {
        const Event event = readEvent(attributes.front(), attributes.subspan(1));
        require(event.ssid.size() <= DOT11_SSID_MAX_LENGTH, "a name has 32 bytes at most");
    }
}

constexpr void (*checks[])(Attributes) = {&checkWiphy, &checkInterface, &checkBss, &checkStation,
                                          &checkEvent};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0) {
        checks[data[0] % std::size(checks)](Attributes(data, size).subspan(1));
    }
    return 0;
}
