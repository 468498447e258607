// The checks against the simulator: each holds there, and each fails where its assumption does not.
#include <contract/Contract.h>

#include <radiosim/Engine.h>

#include <support/TemporaryFolder.h>

#include <capture/CaptureFile.h>

#include <nativewifi/Guid.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <type_traits>

namespace contract {
namespace {

using radiosim::Scenario;

constexpr std::chrono::milliseconds SHORT_SCAN(30);
const Options everything{.scan = true,
                         .radio = true,
                         .scanLimit = std::chrono::milliseconds(10000),
                         .switchLimit = std::chrono::milliseconds(500)};

Scenario office() {
    Scenario scenario = Scenario::builtIn();
    scenario.interfaces[0].scanDuration = SHORT_SCAN;
    return scenario;
}

Finding found(const std::string& id, const Options& options = everything) {
    const auto check = std::find_if(checks().begin(), checks().end(),
                                    [&](const Check& each) { return id == each.id; });
    EXPECT_NE(check, checks().end()) << id;
    static const std::atomic<bool> interrupted{false};
    return run(*check, options, interrupted);
}

std::set<std::string> ids() {
    std::set<std::string> all;
    for (const Check& check : checks()) {
        EXPECT_TRUE(all.insert(check.id).second) << check.id << " is there twice";
    }
    return all;
}

// --- what breaks each assumption: a change of the scenario, of the table of functions, or both ---

struct Break {
    const char* id;
    void (*scenario)(Scenario& scenario);
    void (*table)(nativewifi::Api& table) = nullptr;
};

template <typename Effect>
void fault(Scenario& scenario, const char* function, Effect effect) {
    radiosim::Fault planned;
    planned.function = function;
    effect(planned);
    scenario.faults.push_back(planned);
}

template <DWORD OPCODE>
void wrongSize(Scenario& scenario) {
    fault(scenario, "WlanQueryInterface", [](radiosim::Fault& planned) {
        planned.opcode = OPCODE;
        planned.dataSize = 1;
    });
}

template <DWORD OPCODE, DWORD CODE>
void refusedQuery(Scenario& scenario) {
    fault(scenario, "WlanQueryInterface", [](radiosim::Fault& planned) {
        planned.opcode = OPCODE;
        planned.code = CODE;
    });
}

void returns(Scenario& scenario, const char* function, DWORD code) {
    fault(scenario, function, [code](radiosim::Fault& planned) { planned.code = code; });
}

void same(Scenario& /*scenario*/) {}

template <typename T>
T* garbage() {
    return reinterpret_cast<T*>(std::uintptr_t{0x10}); // NOLINT(performance-no-int-to-ptr)
}

template <typename Argument>
void writeGarbage(Argument argument) {
    using Value = std::remove_pointer_t<Argument>;
    if constexpr (std::is_pointer_v<Value>) {
        *argument = garbage<std::remove_pointer_t<Value>>();
    }
}

// Fails, and writes into each argument that is for a block.
template <typename... Arguments>
DWORD WINAPI failsWithGarbage(Arguments... arguments) {
    (writeGarbage(arguments), ...);
    return ERROR_NOT_FOUND;
}

// The functions that an altered one passes on to, and the callback that it calls itself.
const nativewifi::Api* g_engine = nullptr;
WLAN_NOTIFICATION_CALLBACK g_callback = nullptr;
PVOID g_context = nullptr;

void closesNothing(nativewifi::Api& table) {
    table.WlanCloseHandle = [](HANDLE /*handle*/, PVOID /*reserved*/) {
        return DWORD{ERROR_SUCCESS};
    };
}

void closeScribbles(nativewifi::Api& table) {
    static WLAN_INTERFACE_INFO_LIST* last = nullptr;
    table.WlanEnumInterfaces = [](HANDLE handle, PVOID reserved, WLAN_INTERFACE_INFO_LIST** list) {
        const DWORD result = g_engine->WlanEnumInterfaces(handle, reserved, list);
        last = *list;
        return result;
    };
    table.WlanCloseHandle = [](HANDLE handle, PVOID reserved) {
        if (last != nullptr) {
            last->InterfaceInfo[0].InterfaceGuid.Data1 ^= 1;
            last = nullptr;
        }
        return g_engine->WlanCloseHandle(handle, reserved);
    };
}

void callsBackOnTheCallersThread(nativewifi::Api& table) {
    table.WlanRegisterNotification = [](HANDLE /*handle*/, DWORD /*source*/, BOOL /*ignore*/,
                                        WLAN_NOTIFICATION_CALLBACK callback, PVOID context,
                                        PVOID /*reserved*/, DWORD* /*previous*/) {
        g_callback = callback;
        g_context = context;
        return DWORD{ERROR_SUCCESS};
    };
    table.WlanScan = [](HANDLE /*handle*/, const GUID* guid, DOT11_SSID* const /*ssid*/,
                        WLAN_RAW_DATA* const /*element*/, PVOID /*reserved*/) {
        WLAN_NOTIFICATION_DATA data{};
        data.NotificationSource = WLAN_NOTIFICATION_SOURCE_ACM;
        data.NotificationCode = wlan_notification_acm_scan_complete;
        data.InterfaceGuid = *guid;
        g_callback(&data, g_context);
        return DWORD{ERROR_SUCCESS};
    };
}

const Break breaks[] = {
    {"service.stopped",
     [](Scenario& scenario) { returns(scenario, "WlanOpenHandle", ERROR_ACCESS_DENIED); }},
    {"open.version", [](Scenario& scenario) { scenario.serviceVersion = 1; }},
    {"open.failure-output", &same,
     [](nativewifi::Api& table) {
         table.WlanOpenHandle = [](DWORD version, PVOID reserved, DWORD* negotiated,
                                   HANDLE* handle) {
             if (reserved != nullptr) {
                 *handle = garbage<void>();
             }
             return g_engine->WlanOpenHandle(version, reserved, negotiated, handle);
         };
     }},
    {"close.refused-afterwards", &same, &closesNothing},
    {"memory.separate-blocks",
     [](Scenario& scenario) {
         fault(scenario, "WlanQueryInterface",
               [](radiosim::Fault& planned) { planned.noData = true; });
     }},
    {"memory.outlives-handle", &same, &closeScribbles},
    {"text.guid",
     [](Scenario& scenario) { returns(scenario, "UuidToStringW", RPC_S_OUT_OF_MEMORY); }},
    {"text.reason",
     [](Scenario& scenario) { returns(scenario, "WlanReasonCodeToString", ERROR_SUCCESS); }},
    {"query.autoconf", &wrongSize<wlan_intf_opcode_autoconf_enabled>},
    {"query.background-scan", &wrongSize<wlan_intf_opcode_background_scan_enabled>},
    {"query.media-streaming", &wrongSize<wlan_intf_opcode_media_streaming_mode>},
    {"query.radio-state", &wrongSize<wlan_intf_opcode_radio_state>},
    {"query.bss-type", &wrongSize<wlan_intf_opcode_bss_type>},
    {"query.interface-state", &wrongSize<wlan_intf_opcode_interface_state>},
    {"query.connection", &wrongSize<wlan_intf_opcode_current_connection>},
    {"query.channel", &wrongSize<wlan_intf_opcode_channel_number>},
    {"query.rssi", &wrongSize<wlan_intf_opcode_rssi>},
    {"query.statistics", &wrongSize<wlan_intf_opcode_statistics>},
    {"query.infrastructure-pairs",
     &wrongSize<wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs>},
    {"query.ad-hoc-pairs", &wrongSize<wlan_intf_opcode_supported_adhoc_auth_cipher_pairs>},
    {"query.countries", &wrongSize<wlan_intf_opcode_supported_country_or_region_string_list>},
    {"query.not-connected",
     [](Scenario& scenario) {
         scenario.interfaces[0].connection.reset();
         refusedQuery<wlan_intf_opcode_current_connection, ERROR_NOT_FOUND>(scenario);
     }},
    {"query.unknown-interface",
     &refusedQuery<wlan_intf_opcode_interface_state, ERROR_INVALID_PARAMETER>},
    {"query.failure-output", &same,
     [](nativewifi::Api& table) { table.WlanQueryInterface = &failsWithGarbage; }},
    {"enum.failure-output", &same,
     [](nativewifi::Api& table) {
         table.WlanEnumInterfaces = [](HANDLE handle, PVOID reserved,
                                       WLAN_INTERFACE_INFO_LIST** list) {
             if (reserved != nullptr) {
                 *list = garbage<WLAN_INTERFACE_INFO_LIST>();
             }
             return g_engine->WlanEnumInterfaces(handle, reserved, list);
         };
     }},
    {"list.failure-output", &same,
     [](nativewifi::Api& table) { table.WlanGetAvailableNetworkList = &failsWithGarbage; }},
    {"bss.failure-output", &same,
     [](nativewifi::Api& table) { table.WlanGetNetworkBssList = &failsWithGarbage; }},
    {"list.at-once",
     [](Scenario& scenario) {
         fault(scenario, "WlanGetAvailableNetworkList",
               [](radiosim::Fault& planned) { planned.delay = std::chrono::milliseconds(1100); });
     }},
    {"list.values",
     [](Scenario& scenario) { scenario.interfaces[0].accessPoints[1].ssidLength = 33; }},
    {"bss.size",
     [](Scenario& scenario) {
         fault(scenario, "WlanGetNetworkBssList",
               [](radiosim::Fault& planned) { planned.count = 1000; });
     }},
    {"location.denied",
     [](Scenario& scenario) {
         returns(scenario, "WlanGetAvailableNetworkList", ERROR_ACCESS_DENIED);
     }},
    {"scan.duration",
     [](Scenario& scenario) {
         scenario.interfaces[0].scanDuration = std::chrono::milliseconds(4600);
     }},
    {"scan.notification",
     [](Scenario& scenario) { scenario.interfaces[0].scanEnd = radiosim::ScanEnd::FAIL; }},
    {"scan.callback-thread", &same, &callsBackOnTheCallersThread},
    {"scan.list-shows-found",
     [](Scenario& scenario) {
         scenario.interfaces[0].accessPoints = {{.ssid = "Lab"},
                                                {.ssid = "Yard", .inNetworkList = false}};
     }},
    {"close.waits-for-callback", &same, &closesNothing},
    {"radio.phys", [](Scenario& scenario) { scenario.interfaces[0].phys.clear(); }},
    {"radio.switch",
     [](Scenario& scenario) { returns(scenario, "WlanSetInterface", ERROR_SUCCESS); }},
    {"radio.notification",
     [](Scenario& scenario) { returns(scenario, "WlanRegisterNotification", ERROR_SUCCESS); }},
    {"radio.off-list",
     [](Scenario& scenario) { returns(scenario, "WlanGetAvailableNetworkList", ERROR_NOT_FOUND); }},
    {"radio.off-bss-list",
     [](Scenario& scenario) { returns(scenario, "WlanGetNetworkBssList", ERROR_NOT_FOUND); }},
    {"radio.off-scan", [](Scenario& scenario) { returns(scenario, "WlanScan", ERROR_SUCCESS); }},
    {"radio.off-connection", &refusedQuery<wlan_intf_opcode_current_connection, ERROR_NOT_FOUND>},
};

TEST(ContractChecks, FailWhereTheAssumptionIsBroken) {
    std::set<std::string> broken;
    for (const Break& each : breaks) {
        SCOPED_TRACE(each.id);
        Scenario scenario = office();
        each.scenario(scenario);
        const radiosim::Engine engine(scenario);
        g_engine = &engine.api();
        nativewifi::Api table = engine.api();
        if (each.table != nullptr) {
            each.table(table);
        }
        const nativewifi::ScopedApi altered(table);
        const Finding finding = found(each.id);
        EXPECT_EQ(finding.verdict, Verdict::BROKEN) << finding.seen.dump();
        EXPECT_EQ(engine.unfiredFaults(), std::vector<std::string>{});
        broken.insert(each.id);
    }
    EXPECT_EQ(broken, ids()) << "each check has a fault that breaks it";
}

TEST(ContractChecks, HoldInAnOffice) {
    const radiosim::Engine engine(office());
    std::set<std::string> notObservable;
    for (const std::string& id : ids()) {
        const Finding finding = found(id);
        EXPECT_NE(finding.verdict, Verdict::BROKEN) << id << finding.seen.dump();
        if (finding.verdict == Verdict::NOT_OBSERVABLE) {
            notObservable.insert(id);
        }
    }
    EXPECT_EQ(notObservable,
              (std::set<std::string>{"location.denied", "query.not-connected", "service.stopped"}));
    EXPECT_EQ(engine.leaks(), radiosim::Leaks{});
    EXPECT_EQ(engine.badFrees(), 0U);
}

TEST(ContractChecks, HoldWithoutAConnection) {
    Scenario scenario = office();
    scenario.interfaces[0].connection.reset();
    const radiosim::Engine engine(scenario);
    EXPECT_EQ(found("query.not-connected").verdict, Verdict::HELD);
}

TEST(ContractChecks, HoldWithoutTheService) {
    radiosim::Engine engine(office());
    engine.stopService();
    EXPECT_EQ(found("service.stopped").verdict, Verdict::HELD);
    const Finding other = found("list.values");
    EXPECT_EQ(other.verdict, Verdict::NOT_OBSERVABLE);
    EXPECT_EQ(other.seen.at("reason"), "WlanOpenHandle returned 1062");
}

TEST(ContractChecks, HoldWithoutAccessToTheLocation) {
    Scenario scenario = office();
    for (const char* function :
         {"WlanGetAvailableNetworkList", "WlanGetNetworkBssList", "WlanScan"}) {
        returns(scenario, function, ERROR_ACCESS_DENIED);
    }
    refusedQuery<wlan_intf_opcode_current_connection, ERROR_ACCESS_DENIED>(scenario);
    const radiosim::Engine engine(scenario);
    EXPECT_EQ(found("location.denied").verdict, Verdict::HELD);
}

TEST(ContractChecks, AreNotObservableWithoutAnAdapter) {
    const radiosim::Engine engine(Scenario{.interfaces = {}});
    for (const Check& check : checks()) {
        if (check.need == Need::ADAPTER) {
            const Finding finding = found(check.id);
            EXPECT_EQ(finding.verdict, Verdict::NOT_OBSERVABLE) << check.id;
            EXPECT_EQ(finding.seen.at("reason"), "there is no wireless interface");
        }
    }
}

TEST(ContractChecks, ChangeNothingWithoutLeave) {
    const radiosim::Engine engine(office());
    for (const std::string& id : ids()) {
        EXPECT_NE(found(id, Options{}).verdict, Verdict::BROKEN) << id;
    }
    EXPECT_EQ(engine.callCount("WlanScan"), 0U);
    EXPECT_EQ(engine.callCount("WlanSetInterface"), 0U);
    EXPECT_GT(engine.callCount("WlanQueryInterface"), 0U);
}

bool radioIsOn() {
    nativewifi::Api const& api = nativewifi::api();
    HANDLE handle = nullptr;
    DWORD version = 0;
    EXPECT_EQ(api.WlanOpenHandle(2, nullptr, &version, &handle), ERROR_SUCCESS);
    const GUID guid = *nativewifi::parseGuid(MRL_TEXT("8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20"));
    DWORD size = 0;
    PVOID block = nullptr;
    EXPECT_EQ(api.WlanQueryInterface(handle, &guid, wlan_intf_opcode_radio_state, nullptr, &size,
                                     &block, nullptr),
              ERROR_SUCCESS);
    const bool on =
        static_cast<WLAN_RADIO_STATE*>(block)->PhyRadioState[0].dot11SoftwareRadioState ==
        dot11_radio_state_on;
    api.WlanFreeMemory(block);
    api.WlanCloseHandle(handle, nullptr);
    return on;
}

TEST(ContractChecks, LeaveTheRadioOnAfterAnInterruptWhileItIsOff) {
    for (const Check& check : checks()) {
        if (check.switches != Switches::RADIO) {
            continue;
        }
        SCOPED_TRACE(check.id);
        std::atomic<bool> interrupted = false;
        radiosim::Engine engine(office());
        engine.onCall([&](const radiosim::Call& call) {
            interrupted = interrupted || call.function == "WlanSetInterface";
        });
        const Finding finding = run(check, everything, interrupted);
        EXPECT_TRUE(interrupted);
        EXPECT_EQ(finding.verdict, Verdict::NOT_OBSERVABLE);
        EXPECT_EQ(finding.seen.at("reason"), "interrupted");
        EXPECT_TRUE(radioIsOn());
        EXPECT_EQ(engine.callCount("WlanSetInterface"), 2U);
    }
}

TEST(ContractChecks, LeaveARadioOffThatWasOff) {
    Scenario scenario = office();
    scenario.interfaces[0].phys = {{.software = 2, .hardware = 1}};
    const radiosim::Engine engine(scenario);
    EXPECT_EQ(found("radio.off-list", Options{}).verdict, Verdict::HELD);
    EXPECT_EQ(found("radio.switch").verdict, Verdict::NOT_OBSERVABLE);
    EXPECT_EQ(engine.callCount("WlanSetInterface"), 0U);
}

TEST(ContractChecks, CaptureEachAnswerWithoutANameAndChangeNothing) {
    const test::TemporaryFolder folder;
    const radiosim::Engine engine(office());
    captureAnswers(folder.path() / "capture");
    const std::string text = test::bytesOfFile(folder.file("capture"));
    const capture::Capture captured = capture::readCapture(text);
    const auto calls =
        std::count_if(captured.steps.begin(), captured.steps.end(), [](const capture::Step& step) {
            return std::holds_alternative<capture::Call>(step.what);
        });
    EXPECT_GT(calls, 15);
    EXPECT_EQ(text.find("Nordwind"), std::string::npos);
    EXPECT_EQ(engine.callCount("WlanScan") + engine.callCount("WlanSetInterface"), 0U);
    EXPECT_EQ(engine.leaks(), radiosim::Leaks{});
}

TEST(ContractChecks, GiveALineThatNamesTheVerdict) {
    const Check check{.id = "a.b",
                      .assumption = "It is so.",
                      .need = Need::NOTHING,
                      .switches = Switches::NOTHING,
                      .look = nullptr};
    EXPECT_EQ(line(check, {Verdict::BROKEN, {{"result", 5}}}),
              R"({"check":"a.b","assumption":"It is so.","verdict":"broken","seen":{"result":5}})");
    EXPECT_STREQ(word(Verdict::HELD), "held");
    EXPECT_STREQ(word(Verdict::NOT_OBSERVABLE), "not observable");
}

} // namespace
} // namespace contract
