// The frame: the order in which the module's objects come to be, and the application object's life.
#include <MRLrAntenna.h>
#include <MRLrAntennaApp.h>
#include <ModuleObjects.h>

#include "doubles/DiagModuleDouble.h"

#include <support/CapturedLog.h>

#include <mrl/Exception.h>
#include <mrl/OutputStream.h>

#include <gmock/gmock.h>

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

// Keeps what is written to a stream.
class Captured final : public mrl::OutputStream::Receiver {
public:
    explicit Captured(mrl::OutputStream& stream)
        : m_stream(stream), m_previous(stream.redirect(this)) {}
    ~Captured() override { m_stream.redirect(m_previous); }
    void write(std::string_view utf8) override { text += utf8; }

    std::string text;

private:
    mrl::OutputStream& m_stream;
    mrl::OutputStream::Receiver* m_previous;
};

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
    const Journal expected = {
        "text TITLE",
        "text NETWORK_ADAPTER",
        "text AVAILABLE_NETWORKS",
        "text BSS_TYPE",
        "text SECURITY",
        "text CONNECTABLE",
        "text SIGNAL_QUALITY",
        "text AUTHENTICATION",
        "text SIGNAL_STRENGTH",
        "text VALID_STATE",
        "text FINISH",
        "text INSTRUCTIONS_1",
        "text CIPHER",
        "text TURN_RADIO_ON",
        "text TURN_RADIO_OFF",
        "text RADIO_BUTTON_OFF",
        "text RADIO_BUTTON_ON",
        "text HARDWARE_SWITCH_OFF",
        "text RADIO_STATE_UNKNOWN",
        "event WARNING_EVENT",
        "event NETWORK_CONFIGURATION_ERROR",
        "event ERROR_NDIS_DOT11_POWER_STATE_INVALID",
        "event ERROR_NOT_ENOUGH_MEMORY",
        "text ERROR_INVALID_STATE",
        "text ENABLED",
        "text NOT_ENABLED",
        "text YES",
        "text NO",
        "text INFRASTRUCTURE",
        "text AD_HOC_INDEPENDENT",
        "text ANY",
        "text UNKNOWN_BSS_TYPE",
        "text AUTHENTICATION_OPEN",
        "text AUTHENTICATION_SHARED_KEY",
        "text UNKNOWN_AUTHENTICATION_ALGORITHM",
        "test DiversityTest",
        "test WirelessSignalStrengthVerificationTest",
        "parameter SSID",
        "parameter WarningSignalStrength",
        "parameter FailingSignalStrength",
        "event SSID_NOT_SET",
        "event NO_ACCESS_POINT_FOUND",
        "event ACCESS_POINT_NOT_FOUND",
        "event WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO",
        "event PARAM_OUT_OF_RANGE",
        "event FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN",
        "event FAILING_SIGNAL_STRENGTH_DETECTED",
        "text RETRY_PROMPT_TITLE",
        "text RETRY_PROMPT_MESSAGE",
        "application object",
        "text EXCELLENT",
        "text VERY_GOOD",
        "text GOOD",
        "text LOW",
        "text VERY_LOW",
        "text NO_SIGNAL",
    };
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
    static_assert(0x200B == 8203);
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

TEST_F(Frame, ABasekitExceptionIsReported) {
    doubles::onStart = []() -> int {
        throw mrl::Exception("the disk is \xC3\xBC"
                             "ber");
    };
    const Captured errors(mrl::cerr);
    EXPECT_EQ(theApp.Run(), tesk5::TestResult::EXITEDABNORMALLY().value());
    EXPECT_EQ(errors.text, "Exception: the disk is \xC3\xBC"
                           "ber\n");
    EXPECT_EQ(doubles::journal().back(), "parser destroyed");
}

TEST_F(Frame, AFrameworkExceptionOfStartIsReported) {
    doubles::onStart = []() -> int { throw tesk5::TeskException("no such device"); };
    const Captured errors(mrl::cerr);
    EXPECT_EQ(theApp.Run(), 8);
    EXPECT_EQ(errors.text, "TeskException: no such device\n");
}

TEST_F(Frame, AFrameworkExceptionOfSetVersionIsReportedAndNothingStarts) {
    doubles::onSetVersion = [] { throw tesk5::TeskException("bad version"); };
    const Captured errors(mrl::cerr);
    EXPECT_EQ(theApp.Run(), 8);
    EXPECT_EQ(errors.text, "TeskException: bad version\n");
    EXPECT_THAT(doubles::journal(), testing::Not(testing::Contains("start")));
}

TEST_F(Frame, AnUnknownExceptionEndsWithZeroAndWithoutAMessage) {
    doubles::onStart = []() -> int { throw mrl::StructuredException{7}; };
    const Captured errors(mrl::cerr);
    const Captured output(mrl::cout);
    EXPECT_EQ(theApp.Run(), 0);
    doubles::onStart = []() -> int { throw std::runtime_error("unknown"); };
    EXPECT_EQ(theApp.Run(), 0);
    EXPECT_EQ(errors.text, "");
    EXPECT_EQ(output.text, "");
}

TEST_F(Frame, LeavesAnExceptionOfTheCommandLineToItsCaller) {
    doubles::onParseCommandLine = [] { throw mrl::Exception("no command line"); };
    const Captured errors(mrl::cerr);
    EXPECT_THROW(theApp.Run(), mrl::Exception);
    EXPECT_EQ(errors.text, "");
}

TEST_F(Frame, DoesNotLogAnExceptionThatItPrints) {
    const test::CapturedLog log(1);
    const Captured errors(mrl::cerr);
    doubles::onStart = []() -> int { throw mrl::Exception("disk"); };
    theApp.Run();
    doubles::onStart = []() -> int { throw tesk5::TeskException("device"); };
    theApp.Run();
    EXPECT_EQ(errors.text, "Exception: disk\nTeskException: device\n");
    EXPECT_THAT(log.lines(), IsEmpty());
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
