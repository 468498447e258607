#include "Client.h"

namespace radiosim {
namespace {

using namespace std::chrono_literals;

class Faults : public WithEngine {
protected:
    void startWith(Fault fault) {
        start({.interfaces = {{.accessPoints = {{.ssid = "Lab"}}}}, .faults = {std::move(fault)}});
    }
};

TEST_F(Faults, ReturnACodeOnEveryCallAndDoNothingElse) {
    startWith({.function = "WlanScan", .code = ERROR_BUSY});
    EXPECT_EQ(scan(), ERROR_BUSY);
    EXPECT_EQ(scan(), ERROR_BUSY);
    EXPECT_TRUE(engine().unfiredFaults().empty());
}

TEST_F(Faults, ReturnACodeOnTheNthCallOnly) {
    startWith({.function = "WlanScan", .nth = 2, .code = ERROR_BUSY});
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_EQ(engine().unfiredFaults(), std::vector<std::string>{"WlanScan, call 2, code 170"});
    EXPECT_EQ(scan(), ERROR_BUSY);
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_TRUE(engine().unfiredFaults().empty());
}

TEST_F(Faults, LeaveOutParametersAlone) {
    startWith({.function = "WlanGetAvailableNetworkList", .code = ERROR_NOT_ENOUGH_MEMORY});
    WLAN_AVAILABLE_NETWORK_LIST marker{};
    WLAN_AVAILABLE_NETWORK_LIST* block = &marker;
    EXPECT_EQ(nativewifi::api().WlanGetAvailableNetworkList(handle(), &guid(), 0, nullptr, &block),
              ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(block, &marker);
    EXPECT_EQ(engine().liveBlocks(), 0U);
}

TEST_F(Faults, CountTheCallsOfTheirOpcodeAlone) {
    startWith({.function = "WlanQueryInterface", .nth = 2, .opcode = 4, .code = 5});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_radio_state, bytes), ERROR_SUCCESS);
    EXPECT_EQ(query(wlan_intf_opcode_bss_type, bytes), ERROR_SUCCESS);
    EXPECT_EQ(query(wlan_intf_opcode_radio_state, bytes), ERROR_ACCESS_DENIED);
}

TEST_F(Faults, GiveABlockOfAnotherSize) {
    startWith({.function = "WlanQueryInterface", .opcode = 4, .dataSize = 771});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_radio_state, bytes), ERROR_SUCCESS);
    EXPECT_EQ(bytes.size(), 771U);
    EXPECT_EQ(bytes[0], 1) << "the block begins as it should";
    EXPECT_TRUE(engine().unfiredFaults().empty());
}

TEST_F(Faults, GiveALongerBlockWithNothingBehind) {
    startWith({.function = "WlanQueryInterface", .dataSize = 6});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_bss_type, bytes), ERROR_SUCCESS);
    EXPECT_EQ(bytes, (std::vector<unsigned char>{1, 0, 0, 0, 0, 0}));
}

TEST_F(Faults, WaitForTheirBlock) {
    startWith({.function = "WlanQueryInterface", .dataSize = 6});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(wlan_intf_opcode_current_connection, bytes), ERROR_INVALID_STATE);
    EXPECT_EQ(engine().unfiredFaults().size(), 1U) << "there was no block to change";
}

TEST_F(Faults, LieAboutTheCountOfEveryKindOfBlock) {
    start({.interfaces = {{.accessPoints = {{.ssid = "Lab"}}}},
           .faults = {{.function = "WlanQueryInterface", .count = 65},
                      {.function = "WlanEnumInterfaces", .count = 0},
                      {.function = "WlanGetAvailableNetworkList", .count = 7},
                      {.function = "WlanGetNetworkBssList", .count = 8}}});
    EXPECT_EQ(queried<WLAN_RADIO_STATE>(wlan_intf_opcode_radio_state).dwNumberOfPhys, 65U);
    EXPECT_EQ(queried<WLAN_STATISTICS>(wlan_intf_opcode_statistics).dwNumberOfPhys, 65U);
    EXPECT_EQ(queried<DWORD>(wlan_intf_opcode_bss_type), 1U) << "this block has no count";
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
    nativewifi::api().WlanEnumInterfaces(handle(), nullptr, out(interfaces));
    EXPECT_EQ(interfaces->dwNumberOfItems, 0U);
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> networks;
    list(networks);
    EXPECT_EQ(networks->dwNumberOfItems, 7U);
    nativewifi::WlanMemory<WLAN_BSS_LIST> bss;
    bssList(bss);
    EXPECT_EQ(bss->dwNumberOfItems, 8U);
    EXPECT_TRUE(engine().unfiredFaults().empty());
}

TEST_F(Faults, SucceedWithoutABlock) {
    startWith({.function = "WlanQueryInterface", .noData = true});
    DWORD size = 0;
    int marker = 0;
    void* block = &marker;
    EXPECT_EQ(nativewifi::api().WlanQueryInterface(handle(), &guid(),
                                                   wlan_intf_opcode_background_scan_enabled,
                                                   nullptr, &size, &block, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(size, 4U);
}

TEST_F(Faults, TakeTime) {
    startWith({.function = "WlanScan", .nth = 1, .delay = 250ms});
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_EQ(clock().sleeps(), std::vector<long long>{250});
    EXPECT_TRUE(engine().unfiredFaults().empty());
}

TEST_F(Faults, NegotiateAVersion) {
    start({.interfaces = {{}}, .faults = {{.function = "WlanOpenHandle", .nth = 2, .version = 1}}});
    nativewifi::ClientHandle second;
    DWORD version = 0;
    ASSERT_EQ(nativewifi::api().WlanOpenHandle(2, nullptr, &version, out(second)), ERROR_SUCCESS);
    EXPECT_EQ(version, 1U);
}

TEST_F(Faults, CountFromWhenTheyAreAdded) {
    start({});
    scan();
    engine().addFault({.function = "WlanScan", .nth = 1, .code = ERROR_BUSY});
    EXPECT_EQ(scan(), ERROR_BUSY);
}

TEST_F(Faults, AreForgottenWhenCleared) {
    startWith({.function = "WlanScan", .code = ERROR_BUSY});
    engine().clearFaults();
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    EXPECT_TRUE(engine().unfiredFaults().empty());
}

TEST_F(Faults, FailEachFunctionOfTheTableWithTheirCode) {
    start({});
    DWORD number = 0;
    GUID guidValue{};
    mrl::Char* text = nullptr;
    void* block = nullptr;
    HANDLE other = nullptr;
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    WLAN_AVAILABLE_NETWORK_LIST* networks = nullptr;
    WLAN_BSS_LIST* bss = nullptr;
    WCHAR buffer[8] = {};
    const nativewifi::Api& api = nativewifi::api();
    const auto fails = [this](const char* function, auto call) {
        engine().addFault({.function = function, .nth = 1, .code = ERROR_GEN_FAILURE});
        EXPECT_EQ(static_cast<DWORD>(call()), ERROR_GEN_FAILURE) << function;
        EXPECT_TRUE(engine().unfiredFaults().empty()) << function;
    };
    fails("WlanOpenHandle", [&] { return api.WlanOpenHandle(2, nullptr, &number, &other); });
    fails("WlanCloseHandle", [&] { return api.WlanCloseHandle(handle(), nullptr); });
    fails("WlanEnumInterfaces",
          [&] { return api.WlanEnumInterfaces(handle(), nullptr, &interfaces); });
    fails("WlanQueryInterface", [&] {
        return api.WlanQueryInterface(handle(), &guid(), wlan_intf_opcode_bss_type, nullptr,
                                      &number, &block, nullptr);
    });
    fails("WlanSetInterface", [&] { return switchRadio(0, 1); });
    fails("WlanRegisterNotification", [&] {
        return api.WlanRegisterNotification(handle(), 0, TRUE, nullptr, nullptr, nullptr, nullptr);
    });
    fails("WlanGetAvailableNetworkList", [&] {
        return api.WlanGetAvailableNetworkList(handle(), &guid(), 0, nullptr, &networks);
    });
    fails("WlanReasonCodeToString",
          [&] { return api.WlanReasonCodeToString(0, 8, buffer, nullptr); });
    fails("WlanScan", [&] { return scan(); });
    fails("WlanGetNetworkBssList", [&] {
        return api.WlanGetNetworkBssList(handle(), &guid(), nullptr, dot11_BSS_type_any, FALSE,
                                         nullptr, &bss);
    });
    fails("UuidFromStringW", [&] { return api.UuidFromStringW(MRL_TEXT(""), &guidValue); });
    fails("UuidToStringW", [&] { return api.UuidToStringW(&guid(), &text); });
    fails("RpcStringFreeW", [&] { return api.RpcStringFreeW(&text); });
    EXPECT_EQ(engine().leaks(), (Leaks{.handles = 1}));
}

TEST_F(Faults, ThatCanHaveNoEffectAreRefused) {
    start({});
    const auto reason = [this](const Fault& fault) -> std::string {
        try {
            engine().addFault(fault);
        } catch (const ScenarioError& error) {
            return error.reason();
        }
        return "taken";
    };
    EXPECT_EQ(reason({.function = "WlanScam", .code = 1}), "there is no function \"WlanScam\"");
    EXPECT_EQ(reason({.function = "WlanScan", .opcode = 4, .code = 1}), "WlanScan has no opcode");
    EXPECT_EQ(reason({.function = "WlanScan", .dataSize = 1}),
              "dataSize is for WlanQueryInterface alone");
    EXPECT_EQ(reason({.function = "WlanScan", .count = 1}), "WlanScan hands out no block");
    EXPECT_EQ(reason({.function = "WlanScan", .version = 1}),
              "version is for WlanOpenHandle alone");
    EXPECT_EQ(reason({.function = "WlanFreeMemory", .code = 1}), "WlanFreeMemory returns no code");
    EXPECT_EQ(reason({.function = "WlanScan"}),
              "a fault needs one of delayMs, code, dataSize, count, noData and version");
}

// --- A service that stops and comes back
// ----------------------------------------------------------

class StoppedService : public WithEngine {
protected:
    StoppedService() { show({{.ssid = "Lab"}}); }
};

TEST_F(StoppedService, AnswersEveryCallWithItsCode) {
    engine().stopService();
    EXPECT_EQ(scan(), ERROR_SERVICE_NOT_ACTIVE);
    DWORD version = 0;
    nativewifi::ClientHandle second;
    EXPECT_EQ(nativewifi::api().WlanOpenHandle(2, nullptr, &version, out(second)),
              ERROR_SERVICE_NOT_ACTIVE);
    engine().stopService(1722);
    EXPECT_EQ(scan(), 1722U);
}

TEST_F(StoppedService, StillFreesMemoryAndKnowsReasons) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> block;
    list(block);
    engine().stopService();
    block.reset();
    EXPECT_EQ(engine().liveBlocks(), 0U);
    WCHAR reason[32] = {};
    EXPECT_EQ(nativewifi::api().WlanReasonCodeToString(0, 32, reason, nullptr), ERROR_SUCCESS);
}

TEST_F(StoppedService, HasForgottenTheHandlesWhenItIsBack) {
    engine().stopService();
    EXPECT_EQ(engine().openHandles(), 0U);
    engine().startService();
    EXPECT_EQ(scan(), ERROR_INVALID_HANDLE);
    EXPECT_NE(openHandle().get(), nullptr);
}

TEST_F(StoppedService, NotifiesNoClientFromBefore) {
    static int heard = 0;
    heard = 0;
    ASSERT_EQ(nativewifi::api().WlanRegisterNotification(
                  handle(), WLAN_NOTIFICATION_SOURCE_ALL, FALSE,
                  [](WLAN_NOTIFICATION_DATA*, PVOID) { ++heard; }, nullptr, nullptr, nullptr),
              ERROR_SUCCESS);
    engine().stopService();
    engine().startService();
    engine().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    engine().settle();
    EXPECT_EQ(heard, 0);
}

} // namespace
} // namespace radiosim
