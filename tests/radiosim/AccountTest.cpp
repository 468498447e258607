// What the engine keeps of its client's doings: calls, their trace, and what was not given back.
#include "Client.h"

#include <nlohmann/json.hpp>

namespace radiosim {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

class Account : public WithEngine {
protected:
    void SetUp() override {
        show({{.ssid = "Lab"}});
        engine().clearCalls();
    }
};

TEST_F(Account, CountsTextsOfGuids) {
    {
        nativewifi::RpcText text;
        ASSERT_EQ(nativewifi::api().UuidToStringW(&guid(), out(text)), RPC_S_OK);
        EXPECT_EQ(engine().leaks().texts, 1U);
        EXPECT_EQ(mrl::toUtf8(text.get()), FIRST_INTERFACE);
    }
    EXPECT_EQ(engine().leaks().texts, 0U);
}

TEST_F(Account, CountsFreesOfWhatIsNoBlock) {
    int ours = 0;
    nativewifi::api().WlanFreeMemory(nullptr);
    EXPECT_EQ(engine().badFrees(), 0U);
    nativewifi::api().WlanFreeMemory(&ours);
    EXPECT_EQ(engine().badFrees(), 1U);
    WLAN_AVAILABLE_NETWORK_LIST* block = nullptr;
    nativewifi::api().WlanGetAvailableNetworkList(handle(), &guid(), 0, nullptr, &block);
    nativewifi::api().WlanFreeMemory(block);
    nativewifi::api().WlanFreeMemory(block);
    EXPECT_EQ(engine().badFrees(), 2U);
}

TEST_F(Account, CountsBlocksThatTheClientAskedFor) {
    void* const block = engine().allocateMemory(100);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(engine().liveBytes(), 100U);
    nativewifi::api().WlanFreeMemory(block);
    EXPECT_EQ(engine().leaks(), (Leaks{.handles = 1}));
    EXPECT_EQ(engine().badFrees(), 0U);
}

TEST_F(Account, CountsWhatEachFunctionHandedOutAndWhatOfThatIsLeft) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> freed;
    list(freed);
    freed.reset();
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> kept;
    list(kept);
    EXPECT_EQ(engine().handedOutBy("WlanGetAvailableNetworkList"),
              (Leaks{.blocks = 2, .bytes = std::size_t{2} * (8 + 628)}));
    EXPECT_EQ(engine().leaksOf("WlanGetAvailableNetworkList"),
              (Leaks{.blocks = 1, .bytes = 8U + 628U}));
    EXPECT_EQ(engine().handedOutBy("WlanQueryInterface"), Leaks{});
    EXPECT_EQ(engine().leaksOf("WlanQueryInterface"), Leaks{});
}

TEST_F(Account, NamesEachCallWithArgumentsResultAndOutput) {
    nativewifi::ClientHandle second = openHandle();
    switchRadio(0, 2);
    nativewifi::api().WlanGetAvailableNetworkList(second.get(), nullptr, 4, nullptr, nullptr);
    second.reset();
    const std::string interfaceText = std::string("\"interface\":\"") + FIRST_INTERFACE + '"';
    EXPECT_EQ(engine().callTexts(),
              (Texts{R"(WlanOpenHandle {"clientVersion":2,"reserved":null} = 0 )"
                     R"({"negotiatedVersion":2,"handle":"h2"})",
                     "WlanSetInterface {\"handle\":\"h1\"," + interfaceText +
                         R"(,"opcode":4,"dataSize":12,"phy":0,"software":2,"hardware":0,)"
                         R"("reserved":null} = 0 {})",
                     R"(WlanGetAvailableNetworkList {"handle":"h2","interface":null,"flags":4,)"
                     R"("reserved":null} = 87 {})",
                     R"(WlanCloseHandle {"handle":"h2","reserved":null} = 0 {})"}));
}

TEST_F(Account, DistinguishesTheNullHandleAnUnknownOneAndAClosedOne) {
    int unknown = 0;
    nativewifi::ClientHandle second = openHandle();
    const HANDLE closed = second.get();
    second.reset();
    engine().clearCalls();
    nativewifi::api().WlanCloseHandle(nullptr, nullptr);
    nativewifi::api().WlanCloseHandle(&unknown, nullptr);
    nativewifi::api().WlanCloseHandle(closed, nullptr);
    EXPECT_EQ(engine().callTexts(),
              (Texts{R"(WlanCloseHandle {"handle":null,"reserved":null} = 87 {})",
                     R"(WlanCloseHandle {"handle":"?","reserved":null} = 6 {})",
                     R"(WlanCloseHandle {"handle":"h2","reserved":null} = 6 {})"}));
}

TEST_F(Account, ListsNamesAndCounts) {
    scan();
    scan();
    nativewifi::api().WlanFreeMemory(nullptr);
    EXPECT_EQ(engine().callNames(), (Texts{"WlanScan", "WlanScan", "WlanFreeMemory"}));
    EXPECT_EQ(engine().callCount("WlanScan"), 2U);
    EXPECT_EQ(engine().callCount("WlanEnumInterfaces"), 0U);
}

TEST_F(Account, KnowsWhenEachCallReturned) {
    clock().sleep(1500ms);
    scan();
    EXPECT_EQ(engine().calls().at(0).at, 1500ms);
}

TEST_F(Account, KeepsFaultyCallsToo) {
    engine().addFault({.function = "WlanScan", .code = ERROR_BUSY});
    scan();
    EXPECT_EQ(engine().calls().at(0).result, ERROR_BUSY);
}

TEST_F(Account, WritesEachCallAsOneLineOfJson) {
    Texts lines;
    engine().traceTo([&lines](std::string_view line) { lines.emplace_back(line); });
    DOT11_SSID ssid{3, {'\n', 0xE9, '"'}};
    nativewifi::api().WlanScan(handle(), &guid(), &ssid, nullptr, nullptr);
    engine().traceTo(nullptr);
    scan();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].find('\n'), std::string::npos);
    const auto line = nlohmann::json::parse(lines[0]);
    EXPECT_EQ(line["at"], 0);
    EXPECT_EQ(line["function"], "WlanScan");
    EXPECT_EQ(line["arguments"]["ssid"], "\n\xC3\xA9\"");
    EXPECT_EQ(line["result"], 0);
    EXPECT_EQ(line["output"], nlohmann::json::object());
}

TEST_F(Account, RunsAHookAfterEachCallWhichMayUseTheEngine) {
    engine().onCall([this](const Call& call) {
        if (call.function == "WlanScan") {
            engine().setRadio(0, 0, 2, {});
            scan(); // does not come back here
        }
    });
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> block;
    EXPECT_EQ(list(block), ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    EXPECT_EQ(engine().callCount("WlanScan"), 2U);
}

TEST_F(Account, AnswersWhatIsNotSimulatedAndKeepsIt) {
    EXPECT_EQ(engine().notSimulated("WlanConnect"), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(engine().callTexts(), Texts{"WlanConnect {} = 50 {}"});
}

TEST(OneEngine, IsInForceAtATime) {
    const Engine first;
    EXPECT_THROW(const Engine second, std::logic_error);
    EXPECT_EQ(&nativewifi::api(), &first.api());
}

TEST(OneEngine, GivesTheTableBackWhenItEnds) {
    const nativewifi::Api* const before = &nativewifi::api();
    { const Engine engine; }
    EXPECT_EQ(&nativewifi::api(), before);
}

TEST(OneEngine, AnswersThatTheServiceIsNotRunningOnceItIsGone) {
    const nativewifi::Api table = Engine().api();
    DWORD version = 0;
    HANDLE handle = nullptr;
    EXPECT_EQ(table.WlanOpenHandle(2, nullptr, &version, &handle), ERROR_SERVICE_NOT_ACTIVE);
    table.WlanFreeMemory(&version);
}

} // namespace
} // namespace radiosim
