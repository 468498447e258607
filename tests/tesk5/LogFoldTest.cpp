#include <reports/LogFold.h>

#include <gmock/gmock.h>

#include <deque>

namespace test {

namespace {

using tesk5::LoggedLine;
using testing::ElementsAre;

class LogFold : public testing::Test {
protected:
    void logs(const std::string& text, int priority = 1) {
        m_lines.push_back({{}, priority, "logger", text});
    }
    void logsAll(std::initializer_list<const char*> texts) {
        for (const char* text : texts) {
            logs(text);
        }
    }
    /// The folded log: "2*3 C 9" is a mark for two lines that repeat three times, the last of which
    /// is "C 9".
    std::vector<std::string> folded() const {
        std::vector<const LoggedLine*> lines;
        for (const LoggedLine& line : m_lines) {
            lines.push_back(&line);
        }
        std::vector<std::string> texts;
        for (const tesk5::FoldedLine& line : tesk5::folded(lines)) {
            const std::string mark =
                std::to_string(line.block) + "*" + std::to_string(line.times) + " ";
            texts.push_back((line.block == 0 ? "" : mark) + line.line->text);
        }
        return texts;
    }

private:
    std::deque<LoggedLine> m_lines;
};

TEST_F(LogFold, ShowsABlockOnceThatRepeatsButForNumbers) {
    logsAll({"begin", "poll 1", "Lab: 70%", "poll 2", "Lab: 9%", "poll 13", "Lab: 100%", "end"});
    EXPECT_THAT(folded(), ElementsAre("begin", "poll 1", "Lab: 70%", "2*2 Lab: 100%", "end"));
}

TEST_F(LogFold, LeavesAloneWhatDoesNotRepeat) {
    logsAll({"A", "B", "A", "C", "A"});
    EXPECT_THAT(folded(), ElementsAre("A", "B", "A", "C", "A"));
    EXPECT_TRUE(tesk5::folded({}).empty());
}

TEST_F(LogFold, KeepsASecondLineThatAMarkWouldOnlyReplace) {
    logsAll({"wait 1", "wait 2"});
    EXPECT_THAT(folded(), ElementsAre("wait 1", "wait 2"));
    logs("wait 3");
    EXPECT_THAT(folded(), ElementsAre("wait 1", "1*2 wait 3"));
}

TEST_F(LogFold, TakesAPollForTheSameThoughPartsOfItRepeatMoreOrLessOften) {
    logsAll({"poll", "net 1", "net 2", "net 3", "done"});
    logsAll({"poll", "net 1", "net 2", "net 3", "net 4", "done"});
    logsAll({"poll", "net 1", "net 2", "net 3", "done"});
    EXPECT_THAT(folded(), ElementsAre("poll", "net 1", "1*2 net 3", "done", "4*2 done"));
}

TEST_F(LogFold, TellsNamesAndCodesWithDigitsApart) {
    for (const char* name : {"Lab", "Lab-", "Lab_", "0x", "Caf\xC3\xA9"}) {
        for (const char* number : {"1", "2", "3"}) {
            logs(name + std::string(number));
        }
    }
    constexpr std::size_t ALL = 15;
    EXPECT_EQ(folded().size(), ALL);
}

TEST_F(LogFold, TellsPrioritiesApart) {
    logs("A", 1);
    logs("A", 4);
    logs("A", 1);
    EXPECT_THAT(folded(), ElementsAre("A", "A", "A"));
}

TEST_F(LogFold, EndsARepetitionWithALineThatIsNew) {
    logsAll({"poll", "no", "poll", "no", "poll", "found", "poll", "no"});
    EXPECT_THAT(folded(), ElementsAre("poll", "no", "2*1 no", "poll", "found", "poll", "no"));
}

TEST_F(LogFold, RecognisesPollsOfHundredsOfLines) {
    constexpr int POLLS = 5;
    constexpr int LINES = 400;
    for (int poll = 0; poll < POLLS; ++poll) {
        for (int line = 0; line < LINES; ++line) {
            logs("network" + std::to_string(line));
        }
    }
    const std::vector<std::string> shown = folded();
    ASSERT_EQ(shown.size(), LINES + 1U);
    EXPECT_EQ(shown.back(), "400*4 network399");
}

} // namespace

} // namespace test
