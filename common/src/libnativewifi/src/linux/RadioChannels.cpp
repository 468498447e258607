#include "RadioChannels.h"

#include "AttributeWriter.h"
#include "CallError.h"
#include "NetlinkKernel.h"

#include <linux/nl80211.h>

namespace nativewifi {

namespace linux_radio {

namespace {

bool is5Ghz(const Channel& channel) {
    return channel.frequencyMhz >= 4900 && channel.frequencyMhz < 5925;
}

std::vector<Wiphy> wiphys(Transport& transport) {
    std::vector<Wiphy> all;
    // Without it the kernel leaves out what does not fit into one message: the channels among it.
    const AttributeWriter split = AttributeWriter().add(NL80211_ATTR_SPLIT_WIPHY_DUMP, {});
    const Outcome outcome =
        transport.dump(NL80211_CMD_GET_WIPHY, split.bytes(), [&all](Attributes answer) {
            if (std::optional<Wiphy> part = readWiphy(answer)) {
                merge(all, std::move(*part));
            }
        });
    check(outcome.error);
    return all;
}

} // namespace

std::vector<RadioChannels> radioChannels(Transport& transport) {
    std::vector<RadioChannels> all;
    for (const Wiphy& wiphy : wiphys(transport)) {
        RadioChannels& radio = all.emplace_back();
        radio.radio = wiphy.name;
        // Some radios have rules of their own.
        const AttributeWriter of = AttributeWriter().addNumber(NL80211_ATTR_WIPHY, wiphy.index);
        transport.request(NL80211_CMD_GET_REG, of.bytes(),
                          [&radio](Attributes answer) { radio.country = readCountry(answer); });
        for (const Channel& channel : wiphy.channels) {
            if (is5Ghz(channel)) {
                ++radio.channels5Ghz;
                radio.usable5Ghz += channel.disabled ? 0 : 1;
            }
        }
    }
    return all;
}

} // namespace linux_radio

std::vector<RadioChannels> radioChannels() {
    try {
        linux_radio::NetlinkKernel kernel;
        return linux_radio::radioChannels(*kernel.connect());
    } catch (const linux_radio::CallError&) {
        return {};
    }
}

} // namespace nativewifi
