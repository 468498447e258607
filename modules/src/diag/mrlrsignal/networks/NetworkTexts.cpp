#include <networks/NetworkTexts.h>

#include <records/Records.h>

#include <tesk5/ByteText.h>
#include <tesk5/Texts.h>

#include <nativewifi/Channels.h>

#include <mrl/Unicode.h>

namespace networks {

std::string bandText(const Network& network) {
    const std::optional<nativewifi::Band> band = nativewifi::bandOf(network.mhz);
    if (!band) {
        return {};
    }
    switch (*band) {
    case nativewifi::Band::GHZ_2_4:
        return "2.4";
    case nativewifi::Band::GHZ_5:
        return "5";
    case nativewifi::Band::GHZ_6:
        break;
    }
    return "6";
}

std::string shownName(const Network& network) {
    if (network.name.empty()) {
        return tesk5::message("NETWORK_HIDDEN");
    }
    mrl::Json record;
    records::addName(record, network.name);
    return record["name"].is_null() ? tesk5::HEX_PREFIX + record["nameHex"].get<std::string>()
                                    : mrl::escapeControls(network.name);
}

} // namespace networks
