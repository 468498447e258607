// The other queries: the connection's attributes, the radio, the list of interfaces and the name of
// the device.
#include "HostileRadio.h"

#include <support/Require.h>
#include <support/SafeText.h>

#include <WirelessDevice.h>

#include <mrl/Unicode.h>

namespace {

// More rounds would only repeat what a shorter input does.
constexpr int ROUNDS = 3;

tesk5::DiagDevice card(fuzz::Input& input) {
    const std::string systemName =
        input.number(0, 3) == 1 ? input.bytes(80) : fuzz::HostileRadio::SYSTEM_NAME;
    const char* property = input.flag() ? "VirtualDeviceSystemName" : "DeviceSystemName";
    return tesk5::DiagDevice("Card", tesk5::DeviceCapability::Wireless(),
                             {{property, tesk5::TeskString(systemName)}});
}

void checkConnection(WirelessDevice& device) {
    const bool read = device.getSigTransReceieveRate();
    fuzz::require(read ||
                      (device.m_signalQuality == 0 && device.m_rxRate == 0 && device.m_txRate == 0),
                  "without a connection there are no readings");
}

void checkRadio(WirelessDevice& device, mrl::Int32 phy) {
    const mrl::Uint32 state = device.getRadioState(phy);
    fuzz::require(state == 0 || state == 5 || state == 6 || state == 9 || state == 10,
                  "a radio is on or off in software and in hardware");
    device.isRadioEnabled(phy);
    device.getRadioState(device.m_radio.lastPhy());
    device.setRadioState(static_cast<mrl::Uint32>(phy), phy % 2 == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    fuzz::HostileRadio radio(input);
    WirelessDevice device(card(input));
    for (int round = 0; round < ROUNDS && !input.empty(); ++round) {
        checkConnection(device);
        checkRadio(device, static_cast<mrl::Int32>(input.number({0, 63, 64, 0xFFFFFFFF})));
        const mrl::String description = device.getInterfaceDescription();
        fuzz::require(description.length() <= WLAN_MAX_NAME_LENGTH,
                      "a description is no longer than its array");
        fuzz::requireNone(
            test::findUnsafe(mrl::escapeControls(description.getUTF8String().bytes())),
            "a description");
        device.isScanEnabled();
        device.queryWirelessLanInterface(static_cast<WLAN_INTF_OPCODE>(
            input.number({1, 3, 5, 6, 7, 8, 9, 10, 11, 12, 0x10000101, 0x10000102})));
        radio.notify();
    }
    radio.checkLog();
    return 0;
}
