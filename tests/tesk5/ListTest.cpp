#include "FrameworkTest.h"

namespace test {

namespace {

class List : public FrameworkTest {
protected:
    List() {
        registerTest("DiversityTest", TestResult::COMPLETED())
            ->setInteractive(true)
            ->addDevicePropertyExclusion("WirelessWAN", "")
            ->addDevicePropertyExclusion("Bus", "USB")
            ->addDevicePropertyRequirement("wlanAPISupported", "");
        registerTest("Signal", TestResult::PASS())
            ->addParameter(DiagModule::createParameter("SSID", DataType::STRING(), "", false, true))
            ->addParameter(
                DiagModule::createParameter("Limit", DataType::UINT32(), "30", true, false));
        registerTest("Once", TestResult::PASS())->setEnumeratesOnlyOnce(true);
        setDevices(R"([
            {"name": "Card A", "capabilities": ["Wireless", "NetworkCard"],
             "properties": {"DeviceSystemName": "\\DEVICE\\{1}", "wlanAPISupported": "true"}},
            {"name": "Card\nB", "capabilities": ["Wireless"], "properties": {"Bus": "USB"}}])");
    }
};

TEST_F(List, ShowsTestsDevicesAndWhatWouldRunWhere) {
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(output(), R"(Tests
  DiversityTest (interactive: runs when named)
    capabilities: Wireless
    only with:    wlanAPISupported
    not with:     WirelessWAN, Bus = USB
  Signal
    capabilities: Wireless
    parameter:    SSID (string)
    parameter:    Limit (uint32, required, several values, default "30")
  Once
    capabilities: Wireless
    runs on the first device that suits it

Devices
  Card A
    capabilities: Wireless, NetworkCard
    DeviceSystemName: \DEVICE\{1}
    wlanAPISupported: true
  Card\nB
    capabilities: Wireless
    Bus: USB

What would run
  DiversityTest
    Card A: yes, when named
    Card\nB: no: has the property "Bus" with the value "USB"; lacks the property "wlanAPISupported"
  Signal
    Card A: yes
    Card\nB: yes
  Once
    Card A: yes
    Card\nB: no: runs on the first device only
)");
}

TEST_F(List, ShowsUnitRangeAndDefaultOfNumbersAndChoices) {
    registry()
        .findTest("Once")
        ->addParameter(
            DiagModule::createParameter("Level", DataType::DECIMAL(), "-70.5", false, true)
                ->setRange({-110, -10, "dBm"}))
        ->addParameter(DiagModule::createParameter("Samples", DataType::INTEGER(), "", false, false)
                           ->setRange({5, 1000, ""}))
        ->addParameter(DiagModule::createParameter("Band", DataType::CHOICE(), "5", false, true)
                           ->setChoices({"2.4", "5"}));
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_THAT(
        output(),
        HasSubstr(
            "    parameter:    Level (decimal, -110 to -10\u00A0dBm, default -70.5\u00A0dBm)\n"
            "    parameter:    Samples (integer, 5 to 1000, required)\n"
            "    parameter:    Band (choice, \"2.4\", \"5\", default \"5\")\n"));
}

TEST_F(List, HonoursTheChoiceOfDevices) {
    EXPECT_EQ(start({"list", "--device", "card a"}), 0);
    EXPECT_THAT(output(),
                HasSubstr("  Signal\n    Card A: yes\n    Card\\nB: no: has no \"card a\" "
                          "in its name or system name\n"));
}

TEST_F(List, PutsDevicesOfAnotherKindIntoOneLine) {
    setDevicesOfTwoKinds();
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_THAT(output(),
                HasSubstr("  Signal\n    Ethernet, Bluetooth, Modem: no: lacks the capability "
                          "\"Wireless\"\n    Card: yes\n"));
}

TEST_F(List, SaysWhyThisSystemCannotRunATest) {
    registry().findTest("DiversityTest")->setObstacle("PLAIN");
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_THAT(output(), HasSubstr("  DiversityTest (interactive: runs when named)\n"
                                    "    Something happened.\n"
                                    "    capabilities: Wireless\n"));
    EXPECT_THAT(output(), HasSubstr("  DiversityTest\n"
                                    "    Card A: no: does not run on this system\n"
                                    "    Card\\nB: no: does not run on this system\n"));
}

TEST_F(List, SaysThatThereIsNoDevice) {
    setDevices("[]");
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_THAT(output(), testing::EndsWith("Devices\n  none\n  The command doctor looks for the "
                                            "reason and says what to do.\n"));
}

} // namespace

} // namespace test
