// The lists of networks, from the blocks of the interface to the records and log lines of the
// module.
#include "HostileRadio.h"

#include <support/Require.h>

#include <WirelessDevice.h>

namespace {

// More rounds would only repeat what a shorter input does.
constexpr int ROUNDS = 3;

void checkRecords(WirelessDevice& device) {
    const mrl::MRLArray<VisibleNetwork>& networks = device.m_visibleNetworks;
    for (mrl::Uint32 i = 0; i < networks.size(); ++i) {
        const mrl::String& name = networks[i].m_ssid;
        fuzz::require(!name.empty() && name.length() <= DOT11_SSID_MAX_LENGTH,
                      "a record has a name of at most 32 characters");
        for (mrl::Uint32 earlier = 0; earlier < i; ++earlier) {
            fuzz::require(name.find(networks[earlier].m_ssid) == mrl::String::NOT_FOUND,
                          "no record's name contains that of an earlier one");
        }
        VisibleNetwork copy = networks[i];
        copy.getSignalQualityText();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    fuzz::HostileRadio radio(input);
    WirelessDevice device(
        tesk5::DiagDevice("Card", tesk5::DeviceCapability::Wireless(),
                          {{"DeviceSystemName", fuzz::HostileRadio::SYSTEM_NAME}}));
    for (int round = 0; round < ROUNDS && !input.empty(); ++round) {
        fuzz::require(device.getNumVisibleNetworks() == device.m_visibleNetworks.size(),
                      "the count is that of the records");
        checkRecords(device);
        if (device.m_visibleNetworks.size() != 0) {
            device.getSignalStrength(VisibleNetwork(device.m_visibleNetworks[0]));
        }
        const mrl::String wanted(std::string_view(input.bytes(DOT11_SSID_MAX_LENGTH)));
        constexpr mrl::Uint32 UNTOUCHED = 0xABCD;
        mrl::Uint32 strength = UNTOUCHED;
        const bool heard = device.forceScanMatched(wanted, strength);
        fuzz::require(heard || strength == UNTOUCHED,
                      "the strength stays when the network was not found");
        fuzz::require(radio.liveNetworkLists() == 0, "every network list is freed");
    }
    radio.checkLog();
    return 0;
}
