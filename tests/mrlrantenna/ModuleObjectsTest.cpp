// What the framework knows of the module, and the English texts that go with it.
#include <MRLrAntenna.h>
#include <ModuleObjects.h>

#include <tesk5/ModuleInfo.h>
#include <tesk5/Registry.h>
#include <tesk5/Texts.h>

#include <gmock/gmock.h>

namespace {

using tesk5::DeviceCapability;
using tesk5::DiagDevice;
using tesk5::Registry;
using tesk5::TeskString;
using testing::ElementsAre;
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

TEST_P(Registration, RunsForEveryMatchingDevice) {
    EXPECT_FALSE(registered().enumeratesOnlyOnce());
}

TEST_P(Registration, RequiresAWirelessNetworkCard) {
    EXPECT_EQ(registered().capability(),
              DeviceCapability::Wireless() | DeviceCapability::NetworkCard());
    EXPECT_THAT(registered().mismatches(DiagDevice("cable", DeviceCapability::NetworkCard(),
                                                   {{"wlanAPISupported", "true"}})),
                Not(IsEmpty()));
}

TEST_P(Registration, ExcludesMobileBroadbandThenWimaxWhateverTheirValue) {
    ASSERT_EQ(registered().exclusions().size(), 2U);
    EXPECT_EQ(registered().exclusions()[0].property, "WirelessWAN");
    EXPECT_EQ(registered().exclusions()[0].value, "");
    EXPECT_EQ(registered().exclusions()[1].property, "WiMAX");
    EXPECT_EQ(registered().exclusions()[1].value, "");
    EXPECT_THAT(registered().mismatches(card({{"wlanAPISupported", "true"}, {"WirelessWAN", "x"}})),
                Not(IsEmpty()));
    EXPECT_THAT(registered().mismatches(card({{"wlanAPISupported", "true"}, {"WiMAX", ""}})),
                Not(IsEmpty()));
}

TEST_P(Registration, RequiresNativeWifiSupportWhateverItsValue) {
    ASSERT_EQ(registered().requirements().size(), 1U);
    EXPECT_EQ(registered().requirements()[0].property, "wlanAPISupported");
    EXPECT_EQ(registered().requirements()[0].value, "");
    EXPECT_THAT(registered().mismatches(card({{"wlanAPISupported", ""}})), IsEmpty());
    EXPECT_THAT(registered().mismatches(card({})), Not(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(BothTests, Registration,
                         testing::Values("DiversityTest",
                                         "WirelessSignalStrengthVerificationTest"));

TEST(ModuleObjects, OnlyTheDialogIsInteractive) {
    EXPECT_TRUE(Registry::instance().findTest("DiversityTest")->interactive());
    EXPECT_FALSE(signalStrengthTest->interactive());
    EXPECT_EQ(signalStrengthTest,
              Registry::instance().findTest("WirelessSignalStrengthVerificationTest"));
    EXPECT_EQ(signalStrengthTest->function(), &WirelessSignalStrengthVerificationTest);
}

TEST(ModuleObjects, TheDialogHasNoParameters) {
    EXPECT_THAT(Registry::instance().findTest("DiversityTest")->parameters(), IsEmpty());
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

TEST(ModuleObjects, KeysThatNoCodeReadsAreKnownAllTheSame) {
    EXPECT_NE(Registry::instance().findLocalizedString("SIGNAL_QUALITY"), nullptr);
    EXPECT_NE(Registry::instance().findEvent("NETWORK_CONFIGURATION_ERROR"), nullptr);
    EXPECT_NE(Registry::instance().findLocalizedString("RETRY_PROMPT_TITLE"), nullptr);
    EXPECT_NE(Registry::instance().findLocalizedString("RETRY_PROMPT_MESSAGE"), nullptr);
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
