#include "FrameworkTest.h"

#include <run/RunListener.h>

#include <support/CapturedLog.h>
#include <support/Journal.h>

#include <mrl/Exception.h>
#include <mrl/MRLArrayCommon.h>

namespace test {

namespace {

class Runs : public FrameworkTest {
protected:
    std::vector<std::string> m_calls;

    /// A test that notes its calls.
    tesk5::Test* noting(const char* name, TestResult result = TestResult::PASS()) {
        return registerTest(name, [this, name, result](const DiagDevice& device) {
            m_calls.push_back(std::string(name) + " on " + device.name().utf8());
            return result;
        });
    }
};

TEST_F(Runs, CallEachTestOnceForEachDeviceThatSuitsIt) {
    noting("A");
    noting("B");
    setDevices(2);
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("A on Card 1", "A on Card 2", "B on Card 1", "B on Card 2"));
}

TEST_F(Runs, LeaveOutDevicesThatDoNotSuitAndHandOverThoseThatDo) {
    registerTest("A", [this](const DiagDevice& device) {
        m_calls.push_back(device.name().utf8());
        EXPECT_TRUE(device.capability().includes(DeviceCapability::Wireless()));
        EXPECT_EQ(device.property("DeviceSystemName").value(), "\\DEVICE\\{1}");
        return TestResult::PASS();
    })->addDevicePropertyExclusion("WirelessWAN", "");
    setDevices(R"([
        {"name": "Wired", "capabilities": ["NetworkCard"]},
        {"name": "Modem", "capabilities": ["Wireless"], "properties": {"WirelessWAN": "true"}},
        {"name": "Card", "capabilities": ["Wireless", "NetworkCard"],
         "properties": {"DeviceSystemName": "\\DEVICE\\{1}"}}])");
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("Card"));
}

TEST_F(Runs, UseTheDevicesOfThisPcWithoutADeviceFile) {
    noting("A");
    g_module.devices = {{DiagDevice("Built in", DeviceCapability::Wireless())}, {}};
    EXPECT_EQ(startBare({"run"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("A on Built in"));
}

TEST_F(Runs, OfATestThatEnumeratesOnceTakeTheFirstDeviceThatSuitsIt) {
    noting("A")->setEnumeratesOnlyOnce(true)->addDevicePropertyRequirement("Good", "");
    setDevices(R"([
        {"name": "1", "capabilities": ["Wireless"]},
        {"name": "2", "capabilities": ["Wireless"], "properties": {"Good": ""}},
        {"name": "3", "capabilities": ["Wireless"], "properties": {"Good": ""}}])");
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("A on 2"));
}

TEST_F(Runs, TakeNamedTestsInTheOrderOfTheirNamingAndInteractiveOnesOnlyByName) {
    noting("Asks")->setInteractive(true);
    noting("A");
    noting("B");
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("A on Card 1", "B on Card 1"));
    m_calls.clear();
    EXPECT_EQ(start({"run", "B", "Asks"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("B on Card 1", "Asks on Card 1"));
}

TEST_F(Runs, AreNarrowedToDevicesByNameSystemNameOrGuidInAnyLetterCase) {
    noting("A");
    setDevices(R"([
        {"name": "Intel Übertragung", "capabilities": ["Wireless"],
         "properties": {"DeviceSystemName": "\\DEVICE\\{8C2F6B1E-0000}"}},
        {"name": "Other", "capabilities": ["Wireless"],
         "properties": {"DeviceSystemName": "\\DEVICE\\{11111111-0000}"}}])");
    for (const char* text : {"intel", "ÜBER", "8c2f6b1e", "\\device\\{8C"}) {
        m_calls.clear();
        EXPECT_EQ(start({"run", "--device", text}), 0) << text;
        EXPECT_THAT(m_calls, ElementsAre("A on Intel Übertragung")) << text;
    }
    EXPECT_EQ(start({"run", "--device", "-0000"}), 0);
    EXPECT_EQ(m_calls.size(), 3U);
}

TEST_F(Runs, SeeTheParametersOfTheCommandLineAndTheNextRunItsOwn) {
    auto* name = optionalParameter("SSID");
    auto* limit = optionalParameter("Limit", DataType::UINT32());
    auto* several = DiagModule::createParameter("Names", DataType::STRING(), "", true, true);
    registerTest("A",
                 [&](const DiagDevice&) {
                     m_calls.push_back(name->value().valueString().utf8() + "/" +
                                       std::to_string(limit->value().valueUint32()) + "/" +
                                       several->value().valueString().utf8());
                     return TestResult::PASS();
                 })
        ->addParameter(name)
        ->addParameter(limit)
        ->addParameter(several);
    EXPECT_EQ(start({"run", "--set", "SSID=a=b", "--set", "Limit=40"}), 0);
    EXPECT_EQ(start({"run", "--set", "Names=a", "--set", "Names=b"}), 0);
    EXPECT_EQ(start({"run", "--set", "Limit="}), 0);
    EXPECT_THAT(m_calls, ElementsAre("a=b/40/", "/0/b", "/0/"));
}

// From good to bad; two that count as good.
const std::vector<TestResult> fromGoodToBad = {
    TestResult::PASS(),        TestResult::COMPLETED(),     TestResult::WARN(),
    TestResult::USERABORTED(), TestResult::CANNOTRUN(),     TestResult::BADPARAMS(),
    TestResult::FAIL(),        TestResult::INTERNALERROR(), TestResult::EXITEDABNORMALLY(),
};

TEST_F(Runs, EndWithTheValueOfTheWorstResultInWhateverOrderTheyCame) {
    auto first = TestResult::PASS();
    auto second = TestResult::PASS();
    registerTest("A", [&first](const DiagDevice&) { return first; });
    registerTest("B", [&second](const DiagDevice&) { return second; });
    for (std::size_t better = 0; better < fromGoodToBad.size(); ++better) {
        for (std::size_t worse = better; worse < fromGoodToBad.size(); ++worse) {
            const TestResult& bad = fromGoodToBad[worse];
            const int expected = bad.good() ? 0 : bad.value();
            first = fromGoodToBad[better];
            second = bad;
            EXPECT_EQ(start({"run"}), expected) << first.name() << " then " << second.name();
            std::swap(first, second);
            EXPECT_EQ(start({"run"}), expected) << first.name() << " then " << second.name();
        }
    }
}

TEST_F(Runs, EndAfterTheTestThatRequestsAnAbort) {
    registerTest("A", [this](const DiagDevice&) {
        DiagModule::requestAbort();
        EXPECT_FALSE(DiagModule::checkForStop());
        m_calls.emplace_back("A");
        return TestResult::PASS();
    });
    noting("B");
    noting("C");
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_calls, ElementsAre("A"));
    EXPECT_THAT(output(),
                HasSubstr("Runs: 1 (1 PASS); ended by the test, runs left out: 2; exit value 0\n"));
    EXPECT_EQ(start({"run", "B"}), 0) << "the request is over with its run";
}

TEST_F(Runs, StartNothingMoreAfterAStopRequestAndCountItAsAborted) {
    registerTest("A", [this](const DiagDevice&) {
        tesk5::RunContext::current().stopRequest.raise();
        EXPECT_TRUE(DiagModule::checkForStop());
        m_calls.emplace_back("A");
        return TestResult::PASS();
    });
    noting("B");
    EXPECT_EQ(start({"run"}), TestResult::USERABORTED().value());
    EXPECT_THAT(m_calls, ElementsAre("A"));
    EXPECT_EQ(output(), "A on Card 1\n"
                        "  PASS after 0.0\u00A0s\n"
                        "B on Card 1\n"
                        "  USERABORTED: not started\n"
                        "Runs: 2 (1 USERABORTED, 1 PASS); exit value 6\n");
}

TEST_F(Runs, AStopRequestDuringTheLastTestChangesNothing) {
    registerStopping("A");
    EXPECT_EQ(start({"run"}), 0);
}

TEST_F(Runs, GoOnAfterATeskExceptionWhichIsAnInternalError) {
    registerThrowing("A", TeskException("no such\nthing"));
    noting("B");
    EXPECT_EQ(start({"run"}), TestResult::INTERNALERROR().value());
    EXPECT_THAT(m_calls, ElementsAre("B on Card 1"));
    EXPECT_THAT(output(), HasSubstr("  INTERNALERROR after 0.0\u00A0s: no such\\nthing\n"));
}

TEST_F(Runs, LetEveryOtherExceptionPassAndSayWhichTestItEndedAndWhy) {
    const struct {
        std::function<void()> fail;
        const char* reason;
    } rows[] = {
        {[] { throw mrl::Exception("no memory"); }, ": no memory"},
        {[] { throw std::runtime_error("oops"); }, ": oops"},
        {[] { static_cast<void>(mrl::MRLArray<int>()[0]); }, ": structured exception with code 7"},
        {[] { throw 7; }, ""},
    };
    std::function<void()> fail;
    registerTest("A", [&fail](const DiagDevice&) {
        fail();
        return TestResult::PASS();
    });
    noting("B");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reason);
        fail = row.fail;
        forgetOutput();
        EXPECT_ANY_THROW(start({"run", "--json", file("r.json")}));
        EXPECT_THAT(m_calls, IsEmpty());
        EXPECT_EQ(errors(), std::string("example: an exception ended A on Card 1; the run ends "
                                        "here") +
                                row.reason + "\n");
        EXPECT_EQ(bytesOfFile(file("r.json")).find("\"failure\"") != std::string::npos,
                  *row.reason != '\0');
    }
}

TEST_F(Runs, AreLoggedBeforeAndAfterWhatTheTestDoes) {
    const Journal journal;
    const CapturedLog log;
    struct Listener final : tesk5::RunListener {
        void onTestStart(const tesk5::PlannedRun& /*run*/) override { Journal::note("start"); }
        void onTestEnd(const tesk5::Outcome& /*outcome*/) override { Journal::note("end"); }
        void onTestBroken(const tesk5::PlannedRun& /*run*/,
                          const std::string& /*reason*/) override {
            Journal::note("broken");
        }
    } listener;
    const DiagDevice card("Card", DeviceCapability::Wireless());
    const tesk5::Test* const needy = registerTest("A", [](const DiagDevice&) {
        Journal::note("A");
        return TestResult::CANNOTRUN();
    });
    g_module.examine = [](const auto&...) { Journal::note("examination"); };
    tesk5::RunRecord record;
    tesk5::runAll({{needy, &card},
                   {registerThrowing("B", TeskException("no card")), &card},
                   {registerThrowing("C", std::runtime_error("oops")), &card}},
                  listener, record, tesk5::RunContext::current());
    EXPECT_THAT(journal.entries(),
                ElementsAre("log 1 tesk5.run: A on Card starts", "start", "A",
                            "log 1 tesk5.run: A on Card ends with CANNOTRUN", "examination", "end",
                            "log 1 tesk5.run: B on Card starts", "start",
                            "log 4 tesk5.run: B on Card: no card",
                            "log 1 tesk5.run: B on Card ends with INTERNALERROR", "end",
                            "log 1 tesk5.run: C on Card starts", "start",
                            "log 4 tesk5.run: C on Card is left by an exception oops", "broken"));
}

TEST_F(Runs, TurnAFailureOfTheModulesCallbackIntoOneWithAReason) {
    registerTest("A", TestResult::PASS());
    DiagModule::setModuleInitCallback([] { throw std::runtime_error("no room"); });
    EXPECT_THROW(start({"run"}), TeskException);
}

TEST_F(Runs, ShowWhatRunsWhereAndHowItWent) {
    registerTest("Signal", [this](const DiagDevice&) {
        clock().sleep(std::chrono::milliseconds(7940));
        auto* event = DiagModule::createEvent("WEAK");
        event->setVariable("Name", "Lab\x1b[2J")
            ->setVariable("Strength", mrl::Uint32{12})
            ->setVariable("Limit", mrl::Uint32{30});
        DiagModule::error(event, "modules/a.cpp", 10);
        DiagModule::measured({"Strength",
                              72,
                              "%",
                              0,
                              100,
                              {{"Warn", 40, Severity::warning}, {"Fail", 20, Severity::error}}});
        DiagModule::measured({"Rate", 3, "%", 0, 100, {}});
        DiagModule::warning(DiagModule::createEvent("PLAIN"), "modules/a.cpp", 11);
        return TestResult::FAIL();
    });
    registerTest("Other", TestResult::PASS());
    setDevices(R"([{"name": "Card\n1\u202E", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(start({"run"}), 2);
    EXPECT_EQ(output(), "Signal on Card\\n1\\u202E\n"
                        "  error: The signal of Lab\\x1B[2J is 12%.\n"
                        "         Limit: 30\n"
                        "  warning: Something happened.\n"
                        "  Strength: 72% [#####|####|#######.......] above the warning limit of "
                        "40%\n"
                        "  Rate: 3% [#........................]\n"
                        "  FAIL after 7.9\u00A0s\n"
                        "Other on Card\\n1\\u202E\n"
                        "  PASS after 0.0\u00A0s\n"
                        "Runs: 2 (1 FAIL, 1 PASS); exit value 2\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(Runs, WithoutADeviceSayWhichThereAreAndWhyNoneSuits) {
    noting("A")->addDevicePropertyRequirement("wlanAPISupported", "");
    setDevices(R"([{"name": "Wired", "capabilities": ["NetworkCard"]},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(start({"run"}), TestResult::CANNOTRUN().value());
    EXPECT_THAT(m_calls, IsEmpty());
    EXPECT_EQ(errors(), "example: no device for A\n"
                        "  Wired: lacks the capability \"Wireless\"; lacks the property "
                        "\"wlanAPISupported\"\n"
                        "  Card: lacks the property \"wlanAPISupported\"\n");
    EXPECT_EQ(output(), "Runs: 0; tests without a device: 1; exit value 3\n");
}

TEST_F(Runs, WithoutAnyDeviceOrWithAFilterThatLeavesOutEachSaySo) {
    noting("A");
    EXPECT_EQ(start({"run", "--device", "realtek"}), 3);
    EXPECT_EQ(errors(), "example: no device for A\n"
                        "  Card 1: has no \"realtek\" in its name or system name\n"
                        "  possible cause: No device has \"realtek\" in its name or system name. "
                        "Give --device a part of a name that the command list shows, or leave it "
                        "out.\n");
    forgetOutput();
    setDevices("[]");
    EXPECT_EQ(start({"run"}), 3);
    EXPECT_THAT(errors(), testing::StartsWith("example: no device for A: there is none at all\n"));
}

TEST_F(Runs, ATestWithoutADeviceDoesNotHideTheOthers) {
    noting("A")->addDevicePropertyRequirement("None", "");
    noting("B", TestResult::FAIL());
    EXPECT_EQ(start({"run"}), TestResult::FAIL().value()) << "worse than CANNOTRUN";
    EXPECT_THAT(m_calls, ElementsAre("B on Card 1"));
    m_calls.clear();
    noting("C");
    EXPECT_EQ(start({"run", "A", "C"}), TestResult::CANNOTRUN().value());
    EXPECT_THAT(m_calls, ElementsAre("C on Card 1"));
}

} // namespace

} // namespace test
