#include "FrameworkTest.h"

#include <devices/DeviceList.h>

#include <nativewifi/Guid.h>

namespace test {

namespace {

using radiosim::Scenario;
using tesk5::machineDevices;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* FIRST_GUID = "8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20";
constexpr const char* OTHER_GUID = "00000000-1111-2222-3333-abcdefabcdef";

struct MachineDevices : FrameworkTest {
    Scenario twoInterfaces() {
        Scenario scenario;
        scenario.interfaces = {
            {.guid = FIRST_GUID, .description = "Wi-Fi Kärte"},
            {.guid = "11111111-1111-1111-1111-111111111111", .description = "Wi-Fi 2"}};
        return scenario;
    }
    static nativewifi::NetworkAdapter adapter(const char* name, const char* guid,
                                              bool mobileBroadband = false) {
        return {mrl::String(name), *nativewifi::parseGuid(mrl::String(guid).view()),
                mobileBroadband};
    }
    static std::vector<std::string> namesOf(const tesk5::DeviceList& list) {
        std::vector<std::string> names;
        for (const tesk5::DiagDevice& device : list.devices) {
            names.push_back(device.name().utf8());
        }
        return names;
    }
    void TearDown() override {
        EXPECT_EQ(radio().leaks(), radiosim::Leaks());
        EXPECT_THAT(radio().unfiredFaults(), IsEmpty());
    }
};

TEST_F(MachineDevices, AreTheNativeWifiInterfaces) {
    startRadio(twoInterfaces());
    const auto list = machineDevices({});
    EXPECT_THAT(namesOf(list), ElementsAre("Wi-Fi Kärte", "Wi-Fi 2"));
    EXPECT_FALSE(list.failure);
    EXPECT_THAT(list.devices[0].capability().names(), ElementsAre("Wireless", "NetworkCard"));
    EXPECT_THAT(
        list.devices[0].properties(),
        ElementsAre(Pair("DeviceSystemName", "\\DEVICE\\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}"),
                    Pair("wlanAPISupported", "true")));
    EXPECT_THAT(radio().callNames(), ElementsAre("WlanOpenHandle", "WlanEnumInterfaces",
                                                 "WlanCloseHandle", "WlanFreeMemory"));
}

TEST_F(MachineDevices, AreTheOtherAdaptersToo) {
    startRadio(twoInterfaces());
    const auto list =
        machineDevices({adapter("Ethernet", OTHER_GUID),
                        adapter("Modem", "22222222-1111-2222-3333-abcdefabcdef", true)});
    EXPECT_THAT(namesOf(list), ElementsAre("Wi-Fi Kärte", "Wi-Fi 2", "Ethernet", "Modem"));
    EXPECT_THAT(list.devices[2].capability().names(), ElementsAre("NetworkCard"));
    EXPECT_THAT(
        list.devices[2].properties(),
        ElementsAre(Pair("DeviceSystemName", "\\DEVICE\\{00000000-1111-2222-3333-ABCDEFABCDEF}")));
    EXPECT_TRUE(list.devices[3].property("WirelessWAN").exists());
    EXPECT_FALSE(list.devices[3].property("wlanAPISupported").exists());
}

TEST_F(MachineDevices, AreListedOnceThoughTheSystemKnowsThemTwice) {
    startRadio(twoInterfaces());
    const auto list = machineDevices({adapter("Wi-Fi as an adapter", FIRST_GUID)});
    EXPECT_THAT(namesOf(list), ElementsAre("Wi-Fi Kärte", "Wi-Fi 2"));
}

TEST_F(MachineDevices, AreNoneWithoutInterfaces) {
    Scenario scenario;
    scenario.interfaces.clear();
    startRadio(std::move(scenario));
    const auto list = machineDevices({});
    EXPECT_THAT(list.devices, IsEmpty());
    EXPECT_FALSE(list.failure);
}

TEST_F(MachineDevices, ComeWithTheReasonWhenTheServiceCannotBeOpened) {
    Scenario scenario = twoInterfaces();
    scenario.faults = {{.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE}};
    startRadio(std::move(scenario));
    const auto list = machineDevices({adapter("Ethernet", OTHER_GUID)});
    EXPECT_THAT(namesOf(list), ElementsAre("Ethernet"));
    ASSERT_TRUE(list.failure);
    EXPECT_EQ(list.failure->key, "DOCTOR_SERVICE_STOPPED");
    EXPECT_THAT(list.failure->variables,
                ElementsAre(Pair("Function", "WlanOpenHandle"), Pair("Error", mrl::Uint32(1062))));
    EXPECT_EQ(radio().callCount("WlanEnumInterfaces"), 0U);
}

TEST_F(MachineDevices, ComeWithTheReasonWhenTheyCannotBeEnumerated) {
    Scenario scenario = twoInterfaces();
    scenario.faults = {{.function = "WlanEnumInterfaces", .code = 1702}};
    startRadio(std::move(scenario));
    const auto list = machineDevices({});
    EXPECT_THAT(list.devices, IsEmpty());
    ASSERT_TRUE(list.failure);
    EXPECT_EQ(list.failure->key, "DOCTOR_SERVICE_FAILS");
    EXPECT_THAT(list.failure->variables, ElementsAre(Pair("Function", "WlanEnumInterfaces"),
                                                     Pair("Error", mrl::Uint32(1702))));
    EXPECT_EQ(radio().openHandles(), 0U);
}

TEST_F(MachineDevices, AreWhatARunTakesWithoutADeviceFile) {
    startRadio(twoInterfaces());
    std::vector<std::string> seen;
    registerTest("A", [&seen](const tesk5::DiagDevice& device) {
        seen.push_back(device.name().utf8());
        return tesk5::TestResult::PASS();
    });
    EXPECT_EQ(startBare({"run", "--device", "8C2F6B1E"}), 0);
    EXPECT_THAT(seen, ElementsAre("Wi-Fi Kärte"));
}

TEST_F(MachineDevices, MissingForAReasonAreExplainedByTheRun) {
    Scenario scenario;
    scenario.faults = {{.function = "WlanOpenHandle", .code = ERROR_MOD_NOT_FOUND}};
    startRadio(std::move(scenario));
    registerTest("A", tesk5::TestResult::PASS());
    EXPECT_EQ(startBare({"run"}), tesk5::TestResult::CANNOTRUN().value());
    EXPECT_THAT(errors(), testing::HasSubstr("  possible cause: This Windows has no Wlanapi.dll "
                                             "(WlanOpenHandle: error 126)."));
}

} // namespace

} // namespace test
