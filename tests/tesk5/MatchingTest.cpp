#include "FrameworkTest.h"

#include <tesk5/Texts.h>

namespace test {

namespace {

using Matching = FrameworkTest;

TestResult nothing(const DiagDevice&) {
    return TestResult::PASS();
}

// Why the test leaves out a device with these capabilities and properties.
std::vector<std::string> reasons(const tesk5::Test& test, DeviceCapability capability,
                                 DiagDevice::Properties properties = {}) {
    std::vector<std::string> phrases;
    for (const tesk5::Mismatch& reason :
         test.mismatches(DiagDevice("Card", capability, std::move(properties)))) {
        phrases.push_back(tesk5::message(reason));
    }
    return phrases;
}

TEST_F(Matching, NeedsEveryCapabilityOfTheTestAndAllowsMore) {
    const DeviceCapability both = DeviceCapability::Wireless() | DeviceCapability::NetworkCard();
    const tesk5::Test test("Test", both, nothing);
    EXPECT_THAT(reasons(test, both), IsEmpty());
    EXPECT_THAT(reasons(test, DeviceCapability::NetworkCard()),
                ElementsAre("lacks the capability \"Wireless\""));
    EXPECT_THAT(
        reasons(test, DeviceCapability()),
        ElementsAre("lacks the capability \"Wireless\"", "lacks the capability \"NetworkCard\""));
    const tesk5::Test plain("Test", DeviceCapability::NetworkCard(), nothing);
    EXPECT_THAT(reasons(plain, both), IsEmpty());
}

TEST_F(Matching, AConditionWithoutAValueMeansThePropertyItselfAndOneWithAValueThisValueAlone) {
    tesk5::Test excluding("Test", {}, nothing);
    excluding.addDevicePropertyExclusion("Bus", "");
    tesk5::Test excludingUsb("Test", {}, nothing);
    excludingUsb.addDevicePropertyExclusion("Bus", "USB");
    tesk5::Test requiring("Test", {}, nothing);
    requiring.addDevicePropertyRequirement("Bus", "");
    tesk5::Test requiringPci("Test", {}, nothing);
    requiringPci.addDevicePropertyRequirement("Bus", "PCI");
    const struct {
        const tesk5::Test& test;
        DiagDevice::Properties properties;
        std::vector<std::string> reasons;
    } rows[] = {
        {excluding, {}, {}},
        {excluding, {{"Bus", ""}}, {"has the property \"Bus\""}},
        {excluding, {{"Bus", "no"}}, {"has the property \"Bus\""}},
        {excluding, {{"bus", "true"}}, {}},
        {excludingUsb, {}, {}},
        {excludingUsb, {{"Bus", "PCI"}}, {}},
        {excludingUsb, {{"Bus", "usb"}}, {}},
        {excludingUsb, {{"Bus", "USB"}}, {"has the property \"Bus\" with the value \"USB\""}},
        {requiring, {}, {"lacks the property \"Bus\""}},
        {requiring, {{"Bus", ""}}, {}},
        {requiring, {{"Bus", "false"}}, {}},
        {requiringPci, {{"Bus", "PCI"}}, {}},
        {requiringPci, {{"Bus", "USB"}}, {"lacks the property \"Bus\" with the value \"PCI\""}},
        {requiringPci, {}, {"lacks the property \"Bus\" with the value \"PCI\""}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(reasons(row.test, {}, row.properties), row.reasons) << &row - rows;
    }
}

TEST_F(Matching, GivesEveryReason) {
    tesk5::Test test("Test", DeviceCapability::Wireless(), nothing);
    test.addDevicePropertyExclusion("WirelessWAN", "")
        ->addDevicePropertyExclusion("WiMAX", "")
        ->addDevicePropertyRequirement("wlanAPISupported", "");
    EXPECT_THAT(reasons(test, {}, {{"WiMAX", "1"}, {"WirelessWAN", "1"}}),
                ElementsAre("lacks the capability \"Wireless\"", "has the property \"WirelessWAN\"",
                            "has the property \"WiMAX\"",
                            "lacks the property \"wlanAPISupported\""));
}

TEST(Capabilities, AreFoundByTheNamesThatTheyGive) {
    const DeviceCapability both = DeviceCapability::Wireless() | DeviceCapability::NetworkCard();
    EXPECT_THAT(both.names(), ElementsAre("Wireless", "NetworkCard"));
    EXPECT_EQ(DeviceCapability::fromName("Wireless"), DeviceCapability::Wireless());
    EXPECT_EQ(DeviceCapability::fromName("wireless"), std::nullopt);
    EXPECT_TRUE(both.includes(DeviceCapability::Wireless()));
    EXPECT_FALSE(DeviceCapability::Wireless().includes(both));
}

TEST(Devices, DistinguishAnEmptyPropertyFromNone) {
    const DiagDevice device("Card", DeviceCapability(), {{"A", ""}, {"B", "b"}});
    EXPECT_TRUE(device.property("A").exists());
    EXPECT_FALSE(device.property("C").exists());
    EXPECT_TRUE(device.property("C").value().empty());
    EXPECT_EQ(device.property("B").value(), "b");
}

} // namespace

} // namespace test
