#include "FrameworkTest.h"

namespace test {

namespace {

using tesk5::Registry;

class Registration : public FrameworkTest {};

TEST_F(Registration, KeepsTheOrderOfCreationAcrossKindsAndFindsEachByItsName) {
    auto* text = DiagModule::createLocalizedString("TITLE");
    auto* event = DiagModule::createEvent("WEAK");
    auto* check = registerTest("Test", TestResult::PASS());
    auto* parameter = optionalParameter("SSID");
    DiagModule::createLocalizedString("EXCELLENT");
    Registry& all = registry();
    EXPECT_THAT(all.order, ElementsAre("TITLE", "WEAK", "Test", "SSID", "EXCELLENT"));
    EXPECT_EQ(all.findLocalizedString("TITLE"), text);
    EXPECT_EQ(all.findEvent("WEAK"), event);
    EXPECT_EQ(all.findTest("Test"), check);
    EXPECT_EQ(all.findParameter("SSID"), parameter);
    EXPECT_EQ(all.findTest("test"), nullptr);
    EXPECT_EQ(all.findEvent("TITLE"), nullptr);
}

TEST_F(Registration, RefusesANameThatItsKindHasAlreadyAndATestWithoutAFunction) {
    const std::pair<const char*, std::function<void()>> kinds[] = {
        {"localized string", [] { DiagModule::createLocalizedString("A"); }},
        {"event", [] { DiagModule::createEvent("A"); }},
        {"test", [] { registerTest("A", TestResult::PASS()); }},
        {"parameter", [] { optionalParameter("A"); }},
    };
    for (const auto& [kind, create] : kinds) {
        create();
        EXPECT_EQ(reasonOf(create), std::string("the ") + kind + " \"A\" exists already");
    }
    EXPECT_EQ(registry().order.size(), 4U);
    EXPECT_EQ(reasonOf([] { DiagModule::createTest("B", DeviceCapability(), nullptr); }),
              "the test \"B\" has no function");
}

TEST_F(Registration, ObjectsKeepTheirAddressesWhileOthersJoinThem) {
    auto* first = DiagModule::createEvent("0");
    for (int i = 1; i < 1000; ++i) {
        DiagModule::createEvent(tesk5::TeskString(std::to_string(i)));
    }
    EXPECT_EQ(registry().findEvent("0"), first);
    EXPECT_EQ(first->key(), "0");
}

TEST_F(Registration, SettersOfATestReturnItAndKeepTheirOrder) {
    auto* check = registerTest("Test", TestResult::PASS());
    auto* a = optionalParameter("a");
    auto* b = optionalParameter("b");
    EXPECT_EQ(check->setEnumeratesOnlyOnce(true)
                  ->setInteractive(true)
                  ->addDevicePropertyExclusion("x", "")
                  ->addDevicePropertyExclusion("y", "1")
                  ->addDevicePropertyRequirement("z", "")
                  ->addParameter(b)
                  ->addParameter(a),
              check);
    EXPECT_TRUE(check->enumeratesOnlyOnce());
    EXPECT_TRUE(check->interactive());
    EXPECT_EQ(check->exclusions()[1].property, "y");
    EXPECT_EQ(check->requirements()[0].property, "z");
    EXPECT_THAT(check->parameters(), ElementsAre(b, a));
}

TEST_F(Registration, AParameterIsAttachedOnceHoweverOftenItIsAdded) {
    auto* check = registerTest("Test", TestResult::PASS());
    auto* parameter = optionalParameter("a");
    check->addParameter(parameter)->addParameter(parameter);
    EXPECT_EQ(reasonOf([check] { check->addParameter(nullptr); }),
              "the test \"Test\" was given no parameter to add");
    EXPECT_THAT(check->parameters(), ElementsAre(parameter));
}

TEST_F(Registration, ATestCanHaveADefaultOfItsOwnForAParameterThatOthersHaveToo) {
    static tesk5::Parameter* samples = nullptr;
    static std::vector<std::string> seen;
    seen.clear();
    samples = DiagModule::createParameter("Samples", DataType::INTEGER(), "15", false, true)
                  ->setRange({5, 100, ""});
    const auto look = [](const DiagDevice&) {
        seen.push_back(samples->number()->text());
        return TestResult::PASS();
    };
    registerTest("Few", look)->addParameter(samples);
    auto* many = registerTest("Many", look)->addParameter(samples)->setDefault(samples, "16");
    registerTest("FewAgain", look)->addParameter(samples);
    EXPECT_EQ(start({"run", "--events"}), 0);
    EXPECT_THAT(seen, ElementsAre("15", "16", "15"));
    EXPECT_THAT(output(), testing::HasSubstr("\"Samples\":16"));
    EXPECT_EQ(start({"run", "--set", "Samples=20"}), 0);
    EXPECT_THAT(seen, ElementsAre("15", "16", "15", "20", "20", "20"));
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_THAT(output(), testing::HasSubstr("Samples (integer, 5 to 100, default 16)"));
    EXPECT_EQ(reasonOf([many] { many->setDefault(samples, "4"); }),
              "the test \"Many\" was given the default \"4\", which the parameter \"Samples\" does "
              "not take");
}

TEST_F(Registration, ATestThatRunsOnlyWhenNamedIsNoInteractiveOne) {
    registerTest("Always", TestResult::PASS());
    registerTest("Named", TestResult::FAIL())->setOnlyWhenNamed(true);
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_EQ(start({"run", "Named"}), TestResult::FAIL().value());
    EXPECT_EQ(start({"list"}), 0);
    EXPECT_THAT(output(), testing::HasSubstr("Card 1: yes, when named"));
    EXPECT_THAT(output(), testing::Not(testing::HasSubstr("interactive")));
}

TEST_F(Registration, TheCallbackRunsInsideStartBeforeTheTestsAreLookedAt) {
    registerTest("Test", TestResult::PASS());
    static int calls = 0;
    calls = 0;
    DiagModule::setModuleInitCallback([] {
        ++calls;
        registry().findTest("Test")->addParameter(optionalParameter("SSID"));
    });
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(start({"run", "--set", "SSID=Lab"}), 0);
    EXPECT_EQ(calls, 1);
}

TEST(TeskStrings, HoldOneTextInTwoFormsAndRepairIllFormedText) {
    const std::pair<std::string, const char*> rows[] = {{"Gr\u00FCn", "Gr\u00FCn"},
                                                        {"a\xFFz", "a\uFFFDz"}};
    for (const auto& [given, held] : rows) {
        const tesk5::TeskString text(given);
        EXPECT_EQ(text.utf8(), held);
        EXPECT_STREQ(text.getUTF8Buffer(), held);
        EXPECT_EQ(mrl::String(text.getUCS2Buffer()), mrl::String(held));
        EXPECT_EQ(text.mrlString(), mrl::String(held));
    }
    EXPECT_TRUE(tesk5::TeskString(static_cast<const char*>(nullptr)).empty());
}

TEST(Results, HaveTheirValuesAndWords) {
    const std::vector<std::pair<TestResult, std::string>> all = {
        {TestResult::PASS(), "0 PASS"},
        {TestResult::WARN(), "1 WARN"},
        {TestResult::FAIL(), "2 FAIL"},
        {TestResult::CANNOTRUN(), "3 CANNOTRUN"},
        {TestResult::BADPARAMS(), "4 BADPARAMS"},
        {TestResult::INTERNALERROR(), "5 INTERNALERROR"},
        {TestResult::USERABORTED(), "6 USERABORTED"},
        {TestResult::COMPLETED(), "7 COMPLETED"},
        {TestResult::EXITEDABNORMALLY(), "8 EXITEDABNORMALLY"},
    };
    for (const auto& [result, expected] : all) {
        EXPECT_EQ(std::to_string(result.value()) + " " + result.name(), expected);
    }
    EXPECT_TRUE(TestResult::COMPLETED().good());
    EXPECT_FALSE(TestResult::WARN().good());
}

} // namespace

} // namespace test
