#include "FrameworkTest.h"

#include <tesk5/TestRecorder.h>
#include <tesk5/Texts.h>

namespace test {

namespace {

using tesk5::Event;
using tesk5::fillPlaceholders;
using tesk5::TestRecorder;
using tesk5::Value;
using testing::Pair;

class Events : public FrameworkTest {};

TEST_F(Events, AreRecordedAsTheyWereWhenRaised) {
    Event* event = DiagModule::createEvent("WEAK");
    const TestRecorder recorder;
    event->setVariable("Name", "")
        ->setVariable("Strength", mrl::Uint32{12})
        ->setVariable("Name", "Lab"); // stays where it is
    DiagModule::error(event, "modules/a.cpp", 245);
    clock().sleep(std::chrono::seconds(2));
    event->setVariable("Strength", mrl::Uint32{30});
    DiagModule::warning(event, "modules/b.cpp", 300);

    ASSERT_EQ(recorder.events().size(), 2U);
    const tesk5::RaisedEvent& first = recorder.events()[0];
    EXPECT_EQ(first.text, "The signal of Lab is 12%.");
    EXPECT_THAT(first.variables,
                ElementsAre(Pair("Name", Value("Lab")), Pair("Strength", Value(mrl::Uint32{12}))));
    const tesk5::RaisedEvent& second = recorder.events()[1];
    EXPECT_STREQ(severityName(second.severity), "warning");
    EXPECT_EQ(second.text, "The signal of Lab is 30%.");
    EXPECT_EQ(second.time - first.time, std::chrono::seconds(2));
}

TEST_F(Events, GoToTheInnermostRecorderAndAreLostWithoutOne) {
    Event* event = DiagModule::createEvent("PLAIN");
    DiagModule::error(event, "", 1);
    const TestRecorder outer;
    DiagModule::error(event, "", 2);
    {
        const TestRecorder inner;
        DiagModule::error(event, "", 3);
        ASSERT_EQ(inner.events().size(), 1U);
        EXPECT_EQ(inner.events()[0].line, 3);
    }
    DiagModule::error(event, "", 4);
    ASSERT_EQ(outer.events().size(), 2U);
    EXPECT_EQ(outer.events()[0].line, 2);
    EXPECT_EQ(outer.events()[1].line, 4);
}

TEST_F(Events, AndWhatElseATestReportsAreDroppedWithoutARecorderAndObservedOnlyWhereOneObserves) {
    Event* const event = DiagModule::createEvent("PLAIN");
    const auto report = [event] {
        DiagModule::error(event, "", 1);
        DiagModule::measured({"Strength", 7, "%", 0, 100, {}});
        DiagModule::surveyed({"VISIBLE", "%", 0, 100, {}});
        DiagModule::progresses("PLAIN", std::nullopt);
        DiagModule::requestAdvice();
    };
    report();
    const TestRecorder recorder;
    EXPECT_TRUE(recorder.events().empty());
    report();
    EXPECT_EQ(recorder.events().size(), 1U);
    EXPECT_EQ(recorder.measurements().size(), 1U);
    EXPECT_EQ(recorder.surveys().size(), 1U);
    EXPECT_TRUE(recorder.adviceRequested());
}

TEST_F(Events, ThatAreNullAreRefused) {
    EXPECT_THROW(DiagModule::error(nullptr, "", 1), TeskException);
}

TEST(Placeholders, AreFilledWithTheVariableOfTheirNameAndStayWithoutOne) {
    const Event::Variables variables = {
        {"a", Value("A")},        {"n", Value(mrl::Uint32{7})},
        {"braces", Value("{a}")}, {"denied", "Access is denied.\r\n"},
        {"end", "\r\n"},          {"lines", "x\r\ny "}};
    const std::pair<const char*, const char*> rows[] = {
        {"{a}-{n}-{a}", "A-7-A"},
        {"", ""},
        {"no braces", "no braces"},
        {"{b} {a", "{b} {a"},
        {"{} {{a}}", "{} {A}"},
        {"} {x {a}", "} {x A"},
        {"{braces}{a}", "{a}A"}, // a value is text
        // a message of the system ends with a line end, which is left out
        {"not: {denied}|{end}|{lines}|", "not: Access is denied.||x\r\ny |"},
    };
    for (const auto& [pattern, filled] : rows) {
        EXPECT_EQ(fillPlaceholders(pattern, variables), filled);
    }
}

} // namespace

} // namespace test
