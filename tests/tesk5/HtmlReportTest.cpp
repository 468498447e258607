#include "FrameworkTest.h"

#include <tesk5/TeskException.h>

#include <mrl/LoggerStream.h>

namespace test {

namespace {

using tesk5::DataType;
using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::Measurement;
using tesk5::Severity;
using tesk5::Survey;
using tesk5::TestResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

void log(int priority, const char* text) {
    mrl::Logger& logger = mrl::LogFactory::createLogger("page");
    mrl::LoggerStream(logger.admitting(priority), priority) << text;
}

class HtmlReports : public FrameworkTest {
protected:
    /// The page of a run with these arguments.
    std::string pageOf(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), {"run", "--html", file("report.html")});
        start(std::move(arguments));
        return bytesOfFile(file("report.html"));
    }
};

TEST_F(HtmlReports, ShowTheVerdictTheNumberItsLimitsAndWhatWasVisible) {
    registerTest("Signal", [](const DiagDevice&) {
        DiagModule::surveyed(
            Survey{"VISIBLE", "%", 0, 100, {{"Far", 5, false}, {"Lab", 30, true}}});
        DiagModule::measured(
            Measurement{"Strength",
                        30,
                        "%",
                        0,
                        100,
                        {{"Warning", 40, Severity::warning}, {"Failing", 20, Severity::error}}});
        return TestResult::WARN();
    });
    const std::string page = pageOf();
    EXPECT_THAT(page, HasSubstr(R"(<html lang="en" dir="ltr">)"));
    EXPECT_THAT(page, HasSubstr("<strong>Passed with a warning</strong> <small>WARN</small>"));
    EXPECT_THAT(page, HasSubstr("<bdi>Card 1</bdi>"));
    EXPECT_THAT(page, HasSubstr("<bdi>example 6.5 (build 000000001)</bdi>"));
    EXPECT_THAT(page, HasSubstr(R"(aria-label="Strength: 30 %; Warning at 40 % or below; )"
                                R"(Failing at 20 % or below")"));
    EXPECT_THAT(page, HasSubstr(R"(<rect class="bad" x="0.00%" y="24" width="20.00%")"));
    EXPECT_THAT(page, HasSubstr(R"(<rect class="warning" x="20.00%" y="24" width="20.00%")"));
    EXPECT_THAT(page, HasSubstr(R"(<rect class="good" x="40.00%" y="24" width="60.00%")"));
    EXPECT_THAT(page, HasSubstr(R"(<rect class="bar" x="0.00%" y="32" width="30.00%")"));
    EXPECT_LT(page.find("<bdi>Lab</bdi>"), page.find("<bdi>Far</bdi>")) << "the strongest first";
    EXPECT_THAT(page, HasSubstr(R"(<tr class="measured"><th scope="row"><bdi>Lab</bdi>)"));
}

TEST_F(HtmlReports, HaveNoScriptLoadNothingAndLeaveNoTagOrKeyUnfilled) {
    registerTest("A", TestResult::PASS());
    const std::string page = pageOf();
    EXPECT_THAT(page, HasSubstr("content=\"default-src 'none'; style-src 'sha256-"));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("src=")),
                            Not(HasSubstr("url(")), Not(HasSubstr("style=")),
                            Not(HasSubstr("http://")), Not(HasSubstr("https://"))));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("REPORT_")), Not(HasSubstr("{{"))));
}

TEST_F(HtmlReports, NamesFromOutsideAreTextIsolatedInItsDirection) {
    auto* event = DiagModule::createEvent("WEAK");
    registerTest("A", [event](const DiagDevice&) {
        DiagModule::surveyed(Survey{"VISIBLE", "%", 0, 100, {{"</bdi><b>\x1b", 5, false}}});
        event->setVariable("Name", "<i>\xE2\x80\xAE&\r\n")->setVariable("Other", "{{exit}}<u>");
        DiagModule::error(event, "a.cpp", 1);
        return TestResult::FAIL();
    });
    setDevices(R"([{"name": "<img src=x>\u0000", "capabilities": ["Wireless"]}])");
    const std::string page = pageOf();
    EXPECT_THAT(page, HasSubstr("<bdi>&lt;img src=x&gt;\\x00</bdi>"));
    EXPECT_THAT(page, HasSubstr("<bdi>&lt;/bdi&gt;&lt;b&gt;\\x1B</bdi>"));
    EXPECT_THAT(page, HasSubstr("The signal of <bdi>&lt;i&gt;\\u202E&amp;</bdi> is {Strength} %."));
    EXPECT_THAT(page, HasSubstr("<bdi>Other</bdi>: <bdi>{{exit}}&lt;u&gt;</bdi>"));
}

TEST_F(HtmlReports, SayWhyThereIsNoVerdict) {
    registerTest("Broken", [](const DiagDevice&) -> TestResult {
        throw tesk5::TeskException(tesk5::TeskString("the card vanished"));
    });
    registerTest("Silent", TestResult::CANNOTRUN());
    const std::string page = pageOf();
    EXPECT_THAT(page, HasSubstr("<p class=\"remark\"><bdi>the card vanished</bdi></p>"));
    EXPECT_THAT(page, HasSubstr("The test gave no reason. The log may show more."));
}

TEST_F(HtmlReports, OfSeveralRunsBeginWithTheWorst) {
    registerTest("A", TestResult::PASS());
    registerTest("B", TestResult::FAIL());
    const std::string page = pageOf();
    EXPECT_LT(page.find("<strong>Failed</strong>"), page.find("<strong>Passed</strong>"));
    EXPECT_THAT(page, HasSubstr("<a href=\"#result-2\"><bdi>B</bdi></a>"));
    EXPECT_THAT(page, HasSubstr("<article class=\"card\" id=\"result-2\">"));
}

TEST_F(HtmlReports, SayWhyATestHasNoDevice) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Cable", "capabilities": []}])");
    const std::string page = pageOf();
    EXPECT_THAT(page, HasSubstr("<small>CANNOTRUN</small>"));
    EXPECT_THAT(page, HasSubstr("<li><bdi>Cable: "));
}

TEST_F(HtmlReports, HoldTheLogWithoutALogOption) {
    registerTest("A", [](const DiagDevice&) {
        log(1, "the <line>");
        log(0, "a trace");
        return TestResult::PASS();
    });
    const std::string page = pageOf();
    EXPECT_THAT(page, HasSubstr("2026-11-20T19:55:01.123Z 1 page: the &lt;line&gt;\n"));
    EXPECT_THAT(page, Not(HasSubstr("a trace")));
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(mrl::LogFactory::getPriority(), mrl::LogFactory::OFF);
}

TEST_F(HtmlReports, LeaveARequestedLogUnchanged) {
    registerTest("A", [](const DiagDevice&) {
        log(1, "ordinary");
        log(3, "grave");
        return TestResult::PASS();
    });
    EXPECT_THAT(pageOf({"--log-level", "3"}), AllOf(HasSubstr("ordinary"), HasSubstr("grave")));
    EXPECT_THAT(errors(), AllOf(HasSubstr(" 3 page: grave\n"), Not(HasSubstr("ordinary"))));
    EXPECT_EQ(mrl::LogFactory::getPriority(), 3);
}

} // namespace

} // namespace test
