// Scenario files: the simulator serves them without freeing a block twice, or refuses them with a
// place and a reason.
#include <support/InputFile.h>
#include <support/Require.h>

#include <support/VirtualClock.h>

#include <nativewifi/Handles.h>

#include <radiosim/Engine.h>

namespace {

using nativewifi::api;

// Calls every function that reads or switches an interface, and frees the answers.
void ask(const GUID& interface, HANDLE handle) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> networks;
    if (api().WlanGetAvailableNetworkList(handle, &interface, 0, nullptr, out(networks)) ==
            ERROR_SUCCESS &&
        networks) {
        WCHAR reason[256];
        api().WlanReasonCodeToString(networks->dwNumberOfItems, 256, reason, nullptr);
    }
    nativewifi::WlanMemory<WLAN_BSS_LIST> heard;
    api().WlanGetNetworkBssList(handle, &interface, nullptr, dot11_BSS_type_any, FALSE, nullptr,
                                out(heard));
    for (const int opcode : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x10000101, 0x10000102}) {
        DWORD size = 0;
        nativewifi::WlanMemory<BYTE> block;
        api().WlanQueryInterface(handle, &interface, static_cast<WLAN_INTF_OPCODE>(opcode), nullptr,
                                 &size, reinterpret_cast<PVOID*>(out(block)), nullptr);
    }
    const WLAN_PHY_RADIO_STATE state{0, dot11_radio_state_off, dot11_radio_state_unknown};
    api().WlanSetInterface(handle, &interface, wlan_intf_opcode_radio_state, sizeof state,
                           const_cast<WLAN_PHY_RADIO_STATE*>(&state), nullptr);
}

void serve(const radiosim::Scenario& scenario) {
    test::VirtualClock clock;
    radiosim::Engine engine(scenario);
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    if (api().WlanOpenHandle(2, nullptr, &version, out(handle)) != ERROR_SUCCESS) {
        return;
    }
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
    const DWORD result = api().WlanEnumInterfaces(handle.get(), nullptr, out(interfaces));
    // A planned fault may report a wrong count; the scenario has the right one.
    for (std::size_t i = 0; result == ERROR_SUCCESS && interfaces && i < scenario.interfaces.size();
         ++i) {
        const GUID& interface = interfaces->InterfaceInfo[i].InterfaceGuid;
        ask(interface, handle.get());
        api().WlanScan(handle.get(), &interface, nullptr, nullptr, nullptr);
        clock.sleep(std::chrono::seconds(7));
        engine.settle();
        ask(interface, handle.get());
    }
    fuzz::require(engine.badFrees() == 0, "only blocks of the simulator are freed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        serve(radiosim::Scenario::fromJson(fuzz::viewOf(data, size)));
    } catch (const radiosim::ScenarioError& refused) {
        fuzz::require(!refused.place().empty() && !refused.reason().empty(),
                      "a refusal says where and why");
    }
    return 0;
}
