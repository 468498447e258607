// What the framework knows of the module, and the English texts that go with it.
#include <MRLrAntenna.h>
#include <ModuleObjects.h>

#include <tesk5/ModuleInfo.h>
#include <tesk5/Registry.h>
#include <tesk5/Texts.h>

#include <mrl/System.h>

#include <gmock/gmock.h>

namespace {

using tesk5::DeviceCapability;
using tesk5::DiagDevice;
using tesk5::Registry;
using tesk5::TeskString;
using testing::IsEmpty;
using testing::Not;

class Registration : public testing::TestWithParam<const char*> {
protected:
    static tesk5::Test& registered() { return *Registry::instance().findTest(GetParam()); }
    static DiagDevice card(DiagDevice::Properties properties) {
        return DiagDevice("card", DeviceCapability::Wireless() | DeviceCapability::NetworkCard(),
                          std::move(properties));
    }
};

TEST_P(Registration, RunsForEveryWirelessNetworkCardWithNativeWifiThatIsNoModem) {
    EXPECT_FALSE(registered().enumeratesOnlyOnce());
    EXPECT_EQ(registered().capability(),
              DeviceCapability::Wireless() | DeviceCapability::NetworkCard());
    // A filter without a value takes every value.
    const auto expectFilters = [](const auto& filters, const std::vector<const char*>& names) {
        ASSERT_EQ(filters.size(), names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(filters[i].property, names[i]);
            EXPECT_EQ(filters[i].value, "");
        }
    };
    expectFilters(registered().exclusions(), {"WirelessWAN", "WiMAX"});
    expectFilters(registered().requirements(), {"wlanAPISupported"});

    EXPECT_EQ(registered().mismatches(card({{"wlanAPISupported", ""}})).empty(),
              registered().obstacle() == nullptr);
    for (const DiagDevice& other :
         {DiagDevice("cable", DeviceCapability::NetworkCard(), {{"wlanAPISupported", "true"}}),
          card({{"wlanAPISupported", "true"}, {"WirelessWAN", "x"}}),
          card({{"wlanAPISupported", "true"}, {"WiMAX", ""}}), card({})}) {
        EXPECT_THAT(registered().mismatches(other), Not(IsEmpty()));
    }
}

INSTANTIATE_TEST_SUITE_P(BothTests, Registration,
                         testing::Values("DiversityTest",
                                         "WirelessSignalStrengthVerificationTest"));

TEST(ModuleObjects, OnlyTheDialogNeedsWindows) {
    EXPECT_EQ(signalStrengthTest->obstacle(), nullptr);
    const tesk5::Test& dialog = *Registry::instance().findTest("DiversityTest");
    EXPECT_STREQ(dialog.obstacle(),
                 mrl::System::name() == "windows" ? nullptr : "DIVERSITY_TEST_NEEDS_WINDOWS");
}

TEST(ModuleObjects, OnlyTheDialogIsInteractiveAndHasNoParameters) {
    const tesk5::Test& dialog = *Registry::instance().findTest("DiversityTest");
    EXPECT_TRUE(dialog.interactive());
    EXPECT_THAT(dialog.parameters(), IsEmpty());
    EXPECT_FALSE(signalStrengthTest->interactive());
    EXPECT_EQ(signalStrengthTest,
              Registry::instance().findTest("WirelessSignalStrengthVerificationTest"));
    EXPECT_EQ(signalStrengthTest->function(), &WirelessSignalStrengthVerificationTest);
}

TEST(ModuleObjects, ParametersAreOptionalAndEmptyEvenTheNumbers) {
    const auto expect = [](tesk5::Parameter* parameter, const char* name,
                           const tesk5::DataType& type) {
        EXPECT_EQ(parameter->name(), name);
        EXPECT_EQ(parameter->type(), type);
        EXPECT_EQ(parameter->defaultValue(), "");
        EXPECT_FALSE(parameter->multiValued());
        EXPECT_TRUE(parameter->optional());
    };
    expect(parameters::ssid, "SSID", tesk5::DataType::STRING());
    expect(parameters::warningSignalStrength, "WarningSignalStrength", tesk5::DataType::UINT32());
    expect(parameters::failingSignalStrength, "FailingSignalStrength", tesk5::DataType::UINT32());
    EXPECT_EQ(parameters::failingSignalStrength->value().valueUint32(), 0U);
}

TEST(ModuleObjects, EveryKeyHasAnEnglishText) {
    const auto expectText = [](const TeskString& key) {
        EXPECT_NE(tesk5::translation(key).utf8(), key.utf8()) << "no text for this key";
        EXPECT_NE(tesk5::translation(key).utf8(), "");
    };
    const Registry& all = Registry::instance();
    for (const auto& text : all.localizedStrings) {
        expectText(text.key());
    }
    for (const auto& event : all.events) {
        expectText(event.key());
    }
    for (const auto& parameter : all.parameters) {
        expectText(parameter.name());
    }
    EXPECT_EQ(all.localizedStrings.size() + all.events.size(), 50U);
}

TEST(ModuleObjects, TheModuleHasItsNameAndItsTexts) {
    EXPECT_EQ(tesk5::moduleInfo().name, "mrlrantenna");
    EXPECT_THAT(std::string(tesk5::moduleInfo().builtInTexts), testing::HasSubstr("\"TITLE\""));
}

} // namespace
