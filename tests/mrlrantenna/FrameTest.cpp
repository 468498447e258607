// The frame: the order in which the module's objects come to be, and the application object's life.
#include <MRLrAntenna.h>
#include <MRLrAntennaApp.h>
#include <ModuleObjects.h>

#include "doubles/DiagModuleDouble.h"

#include <support/CapturedLog.h>
#include <support/CapturedStream.h>

#include <mrl/Exception.h>

#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Journal = std::vector<std::string>;

// What had been created when main() began.
const Journal& createdAtStart() {
    static const Journal journal = doubles::journal();
    return journal;
}

// The parameters that the verification test had when main() began.
const std::vector<const tesk5::Parameter*>& parametersAtStart() {
    static const std::vector<const tesk5::Parameter*> parameters = signalStrengthTest->parameters();
    return parameters;
}

class Frame : public testing::Test {
protected:
    Frame() {
        createdAtStart();
        parametersAtStart();
        doubles::journal().clear();
        doubles::oleStarts = true;
        doubles::onParseCommandLine = nullptr;
        doubles::onSetVersion = nullptr;
        doubles::onStart = nullptr;
    }
};

TEST(StaticInitialisation, CreatesEveryObjectInTheOrderThatHostsKnow) {
    // A second reader of the list, so that the list itself cannot change unnoticed.
    const struct {
        std::string kind;
        std::vector<std::string> names;
    } groups[] = {
        {"text ",
         {"TITLE", "NETWORK_ADAPTER", "AVAILABLE_NETWORKS", "BSS_TYPE", "SECURITY", "CONNECTABLE",
          "SIGNAL_QUALITY", "AUTHENTICATION", "SIGNAL_STRENGTH", "VALID_STATE", "FINISH",
          "INSTRUCTIONS_1", "CIPHER", "TURN_RADIO_ON", "TURN_RADIO_OFF", "RADIO_BUTTON_OFF",
          "RADIO_BUTTON_ON", "HARDWARE_SWITCH_OFF", "RADIO_STATE_UNKNOWN"}},
        {"event ",
         {"WARNING_EVENT", "NETWORK_CONFIGURATION_ERROR", "ERROR_NDIS_DOT11_POWER_STATE_INVALID",
          "ERROR_NOT_ENOUGH_MEMORY"}},
        {"text ",
         {"ERROR_INVALID_STATE", "ENABLED", "NOT_ENABLED", "YES", "NO", "INFRASTRUCTURE",
          "AD_HOC_INDEPENDENT", "ANY", "UNKNOWN_BSS_TYPE", "AUTHENTICATION_OPEN",
          "AUTHENTICATION_SHARED_KEY", "UNKNOWN_AUTHENTICATION_ALGORITHM"}},
        {"test ", {"DiversityTest", "WirelessSignalStrengthVerificationTest"}},
        {"parameter ", {"SSID", "WarningSignalStrength", "FailingSignalStrength"}},
        {"event ",
         {"SSID_NOT_SET", "NO_ACCESS_POINT_FOUND", "ACCESS_POINT_NOT_FOUND",
          "WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO", "PARAM_OUT_OF_RANGE",
          "FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN", "FAILING_SIGNAL_STRENGTH_DETECTED"}},
        {"text ", {"RETRY_PROMPT_TITLE", "RETRY_PROMPT_MESSAGE"}},
        {"application object", {""}},
        {"text ", {"EXCELLENT", "VERY_GOOD", "GOOD", "LOW", "VERY_LOW", "NO_SIGNAL"}},
    };
    Journal expected;
    for (const auto& [kind, names] : groups) {
        for (const std::string& name : names) {
            expected.push_back(kind + name);
        }
    }
    EXPECT_EQ(createdAtStart(), expected);
}

TEST_F(Frame, AttachesTheThreeParametersOnlyWhenTheFrameworkAsksForIt) {
    EXPECT_THAT(parametersAtStart(), IsEmpty());
    theApp.Run();
    EXPECT_THAT(signalStrengthTest->parameters(),
                ElementsAre(parameters::ssid, parameters::warningSignalStrength,
                            parameters::failingSignalStrength));
}

TEST_F(Frame, StartsOleThenTheControlContainerThenRegistersItsWindowClass) {
    EXPECT_TRUE(theApp.InitInstance());
    EXPECT_THAT(doubles::journal(), ElementsAre("AfxOleInit", "AfxEnableControlContainer",
                                                "AfxRegisterWndClass 8203 bare"));
}

TEST_F(Frame, ReportsThatOleCannotStartAndEnds) {
    doubles::oleStarts = false;
    EXPECT_FALSE(theApp.InitInstance());
    EXPECT_THAT(doubles::journal(),
                ElementsAre("AfxOleInit", "AfxMessageBox Ole Initialization Failed 0 0"));
}

TEST_F(Frame, HandsArgumentsVersionAndCallbackToTheFrameworkThenStartsIt) {
    doubles::onStart = [] { return 42; };
    EXPECT_EQ(theApp.Run(), 42);
    EXPECT_THAT(doubles::journal(),
                ElementsAre("ParseCommandLine", "argv", "argc", "setCmdLineArgs 1 mrlrantenna.k5x",
                            "setVersion 6 5 000000001", "setModuleInitCallback", "start",
                            "parser destroyed"));
}

TEST_F(Frame, ReportsAnExceptionOfTheRunUnlessItIsUnknownAndLogsNone) {
    const struct {
        std::function<int()> run;
        int result;
        const char* errors;
    } rows[] = {
        {[]() -> int {
             throw mrl::Exception("the disk is \xC3\xBC"
                                  "ber");
         },
         8,
         "Exception: the disk is \xC3\xBC"
         "ber\n"},
        {[]() -> int { throw tesk5::TeskException("no such device"); }, 8,
         "TeskException: no such device\n"},
        {[]() -> int { throw mrl::StructuredException{7}; }, 0, ""},
        {[]() -> int { throw std::runtime_error("unknown"); }, 0, ""},
    };
    ASSERT_EQ(tesk5::TestResult::EXITEDABNORMALLY().value(), 8);
    const test::CapturedLog log(1);
    for (const auto& [run, result, expected] : rows) {
        doubles::onStart = run;
        const test::CapturedStream errors(mrl::cerr);
        const test::CapturedStream output(mrl::cout);
        EXPECT_EQ(theApp.Run(), result);
        EXPECT_EQ(errors.text(), expected);
        EXPECT_EQ(output.text(), "");
        EXPECT_EQ(doubles::journal().back(), "parser destroyed");
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Frame, AFrameworkExceptionOfSetVersionIsReportedAndNothingStarts) {
    doubles::onSetVersion = [] { throw tesk5::TeskException("bad version"); };
    const test::CapturedStream errors(mrl::cerr);
    EXPECT_EQ(theApp.Run(), 8);
    EXPECT_EQ(errors.text(), "TeskException: bad version\n");
    EXPECT_THAT(doubles::journal(), testing::Not(testing::Contains("start")));
}

TEST_F(Frame, LeavesAnExceptionOfTheCommandLineToItsCaller) {
    doubles::onParseCommandLine = [] { throw mrl::Exception("no command line"); };
    const test::CapturedStream errors(mrl::cerr);
    EXPECT_THROW(theApp.Run(), mrl::Exception);
    EXPECT_EQ(errors.text(), "");
}

TEST_F(Frame, TracesItsRunUntilTheParserIsGone) {
    const test::CapturedLog log(0);
    doubles::onStart = []() -> int { throw 1; };
    theApp.Run();
    EXPECT_THAT(log.texts("mrlrantenna"),
                ElementsAre("> MRLRAntenna Run "
                            "(modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:112)",
                            "< MRLRAntenna Run"));
}

} // namespace
