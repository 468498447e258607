#include <tesk5/Test.h>
#include <tesk5/Texts.h>

#include <gmock/gmock.h>

namespace test {

namespace {

using tesk5::DeviceCapability;
using tesk5::DiagDevice;
using testing::ElementsAre;
using testing::IsEmpty;

tesk5::TestResult nothing(const DiagDevice&) {
    return tesk5::TestResult::PASS();
}

struct Matching : testing::Test {
    tesk5::Test check{"Test", DeviceCapability::Wireless() | DeviceCapability::NetworkCard(),
                      nothing};

    std::vector<std::string> against(DeviceCapability capability,
                                     DiagDevice::Properties properties = {}) const {
        std::vector<std::string> phrases;
        for (const tesk5::Mismatch& reason :
             check.mismatches(DiagDevice("Card", capability, std::move(properties)))) {
            phrases.push_back(tesk5::message(reason));
        }
        return phrases;
    }
    /// The same of a device with every capability.
    std::vector<std::string> againstWith(DiagDevice::Properties properties) const {
        return against(check.capability(), std::move(properties));
    }
};

TEST_F(Matching, NeedsEveryCapabilityOfTheTest) {
    EXPECT_THAT(against(check.capability()), IsEmpty());
    EXPECT_THAT(against(DeviceCapability::NetworkCard()),
                ElementsAre("lacks the capability \"Wireless\""));
    EXPECT_THAT(against(DeviceCapability()), ElementsAre("lacks the capability \"Wireless\"",
                                                         "lacks the capability \"NetworkCard\""));
}

TEST_F(Matching, MoreCapabilitiesThanNeededAreFine) {
    const tesk5::Test plain("Test", DeviceCapability::NetworkCard(), nothing);
    EXPECT_THAT(plain.mismatches(DiagDevice("Card", check.capability())), IsEmpty());
}

TEST_F(Matching, AnExclusionWithoutValueMeansThePropertyItself) {
    check.addDevicePropertyExclusion("WirelessWAN", "");
    EXPECT_THAT(againstWith({}), IsEmpty());
    EXPECT_THAT(againstWith({{"WirelessWAN", ""}}),
                ElementsAre("has the property \"WirelessWAN\""));
    EXPECT_THAT(againstWith({{"WirelessWAN", "no"}}),
                ElementsAre("has the property \"WirelessWAN\""));
    EXPECT_THAT(againstWith({{"wirelesswan", "true"}}), IsEmpty());
}

TEST_F(Matching, AnExclusionWithValueMeansThisValueAlone) {
    check.addDevicePropertyExclusion("Bus", "USB");
    EXPECT_THAT(againstWith({}), IsEmpty());
    EXPECT_THAT(againstWith({{"Bus", "PCI"}}), IsEmpty());
    EXPECT_THAT(againstWith({{"Bus", "usb"}}), IsEmpty());
    EXPECT_THAT(againstWith({{"Bus", "USB"}}),
                ElementsAre("has the property \"Bus\" with the value \"USB\""));
}

TEST_F(Matching, ARequirementWithoutValueMeansThePropertyItself) {
    check.addDevicePropertyRequirement("wlanAPISupported", "");
    EXPECT_THAT(againstWith({}), ElementsAre("lacks the property \"wlanAPISupported\""));
    EXPECT_THAT(againstWith({{"wlanAPISupported", ""}}), IsEmpty());
    EXPECT_THAT(againstWith({{"wlanAPISupported", "false"}}), IsEmpty());
}

TEST_F(Matching, ARequirementWithValueMeansThisValueAlone) {
    check.addDevicePropertyRequirement("Bus", "PCI");
    EXPECT_THAT(againstWith({{"Bus", "PCI"}}), IsEmpty());
    EXPECT_THAT(againstWith({{"Bus", "USB"}}),
                ElementsAre("lacks the property \"Bus\" with the value \"PCI\""));
    EXPECT_THAT(againstWith({}), ElementsAre("lacks the property \"Bus\" with the value \"PCI\""));
}

TEST_F(Matching, GivesEveryReason) {
    check.addDevicePropertyExclusion("WirelessWAN", "")
        ->addDevicePropertyExclusion("WiMAX", "")
        ->addDevicePropertyRequirement("wlanAPISupported", "");
    EXPECT_THAT(against(DeviceCapability::NetworkCard(), {{"WiMAX", "1"}, {"WirelessWAN", "1"}}),
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
