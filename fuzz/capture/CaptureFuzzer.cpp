// Captures: the reader refuses them with a line and a reason, or what it took can be served. A
// client that trusts the lists, as the program does, reads no byte beyond them.
#include <support/InputFile.h>
#include <support/Require.h>

#include <capture/Replay.h>

#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <radiosim/Scenario.h>

namespace {

using nativewifi::api;

// Asks what the program asks, until the replay differs.
void ask(const GUID& guid) {
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    api().WlanOpenHandle(2, nullptr, &version, out(handle));
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
    api().WlanEnumInterfaces(handle.get(), nullptr, out(interfaces));
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> networks;
    api().WlanGetAvailableNetworkList(handle.get(), &guid, 0, nullptr, out(networks));
    for (DWORD i = 0; networks && i < networks->dwNumberOfItems; ++i) {
        nativewifi::ssidText(networks->Network[i].dot11Ssid);
        nativewifi::fixedText(networks->Network[i].strProfileName);
    }
    nativewifi::WlanMemory<WLAN_BSS_LIST> heard;
    api().WlanGetNetworkBssList(handle.get(), &guid, nullptr, dot11_BSS_type_any, FALSE, nullptr,
                                out(heard));
    for (DWORD i = 0; heard && i < heard->dwNumberOfItems; ++i) {
        nativewifi::ssidText(heard->wlanBssEntries[i].dot11Ssid);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::viewOf(data, size);
    try {
        capture::Capture read = capture::readCapture(text);
        for (const capture::Step& step : read.steps) {
            fuzz::require(!capture::stepLine(step).empty(), "a step that was read can be written");
        }
        capture::Replay replay(std::move(read));
        try {
            replay.adapters();
            ask(GUID{});
        } catch (const capture::ReplayDiffers& differs) {
            fuzz::require(replay.difference().has_value() && *differs.what() != 0,
                          "a difference is kept and named");
        }
    } catch (const capture::CaptureError& refused) {
        fuzz::require(refused.line > 0 && *refused.what() != 0, "a refusal says where and why");
    }
    try {
        radiosim::Scenario::fromCapture(text);
    } catch (const radiosim::ScenarioError& refused) {
        fuzz::require(!refused.reason().empty(), "a refusal says why");
    }
    return 0;
}
