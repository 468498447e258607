// The order of a guided study, and its file.
#include "FixedRandom.h"

#include <study/StudySession.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace study {
namespace {

const gauge::Design DESIGN{.parts = 4, .operators = 2, .trials = 3};

StudySession newSession(unsigned seed = 1) {
    std::mt19937 random = test::fixedRandom(seed);
    return {DESIGN, "Lab", random};
}

// Measures all that is left. \return the steps in their order
std::vector<StudyStep> finish(StudySession& session) {
    std::vector<StudyStep> steps;
    while (const std::optional<StudyStep> step = session.next()) {
        session.add(-50 - static_cast<double>(steps.size()), 15, "2026-11-22T10:00:00.000Z");
        steps.push_back(*step);
    }
    return steps;
}

TEST(StudySessions, MeasureEachPartOfAnOperatorOnceBeforeAnyComesAgain) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        StudySession session = newSession(seed);
        const std::vector<StudyStep> steps = finish(session);
        ASSERT_EQ(steps.size(), session.planned());
        for (std::size_t i = 0; i < steps.size(); ++i) {
            EXPECT_EQ(steps[i].op, i / 12);
            EXPECT_EQ(steps[i].trial, i % 12 / 4);
            if (i % 12 > 0) {
                EXPECT_NE(steps[i].part, steps[i - 1].part) << seed;
            }
        }
        EXPECT_EQ(session.left(), 0U);
    }
}

TEST(StudySessions, HaveAnotherOrderEachTimeAndForEachOperator) {
    std::set<std::string> orders;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const mrl::Json order = newSession(seed).json()["order"];
        orders.insert(order[0].dump());
        orders.insert(order[1].dump());
    }
    EXPECT_GT(orders.size(), 35U);
}

TEST(StudySessions, GoOnFromTheirFileWhereTheyWere) {
    StudySession session = newSession();
    for (int i = 0; i < 5; ++i) {
        session.add(-50.5, 15, "2026-11-22T10:00:00.000Z");
    }
    session.strikeOut("slipped", Again::NOW);
    std::optional<StudySession> read = StudySession::ofFile(mrl::parseJson(session.file().dump()));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->file(), session.file());
    EXPECT_EQ(read->target(), "Lab");
    EXPECT_EQ(read->done(), 4U);
    EXPECT_EQ(finish(*read), finish(session));
}

TEST(StudySessions, RepeatTheLastMeasurementNowOrAtTheEndOfItsOperator) {
    StudySession session = newSession();
    session.add(-50, 15, "");
    const StudyStep first = session.last()->step;
    session.strikeOut("slipped", Again::NOW);
    EXPECT_EQ(session.next(), first);
    session.add(-51, 15, "");
    session.strikeOut("wrong part", Again::LAST);
    EXPECT_NE(session.next(), first);
    const std::vector<StudyStep> steps = finish(session);
    EXPECT_EQ(steps[11].op, first.op);
    EXPECT_EQ(steps[11].part, first.part);
    const mrl::Json struck = session.json()["struckOut"];
    ASSERT_EQ(struck.size(), 2U);
    EXPECT_EQ(struck[0]["reason"], "slipped");
    EXPECT_EQ(struck[1]["level"], -51);
    EXPECT_TRUE(StudySession::ofFile(session.file()));
}

TEST(StudySessions, StrikeOutTheLastOneOfTheOperatorBefore) {
    StudySession session = newSession();
    for (int i = 0; i < 12; ++i) {
        session.add(-50, 15, "");
    }
    EXPECT_EQ(session.next()->op, 1U);
    session.strikeOut("slipped", Again::LAST);
    EXPECT_EQ(session.next()->op, 0U);
}

TEST(StudySessions, HandOverTheReadingsByTheirTrial) {
    StudySession session = newSession();
    const std::vector<StudyStep> steps = finish(session);
    gauge::CrossedReadings readings = session.readings();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        EXPECT_EQ(readings.at(steps[i].part, steps[i].op, steps[i].trial),
                  -50 - static_cast<double>(i));
    }
}

TEST(StudySessions, RefuseFilesThatNoSessionWrote) {
    StudySession session = newSession();
    session.add(-50, 15, "");
    const mrl::Json good = session.file();
    ASSERT_TRUE(StudySession::ofFile(good));
    const auto changed = [&good](const char* place, const mrl::Json& value) {
        mrl::Json file = good;
        file[mrl::Json::json_pointer(place)] = value;
        return file;
    };
    const std::size_t other = good["session"]["order"][0][0] == 1 ? 2 : 1;
    for (const mrl::Json& wrong :
         {mrl::Json(),
          mrl::Json::array(),
          mrl::Json::object(),
          changed("/studyVersion", 2),
          changed("/design", 3),
          changed("/design/parts", 5),
          changed("/design/parts", 1),
          changed("/design/trials", 1),
          changed("/design/operators", -1),
          changed("/design/operators", 1e9),
          changed("/session", nullptr),
          changed("/session/target", 1),
          changed("/session/order", "x"),
          changed("/session/order/0", 1),
          changed("/session/order/0/0", 5),
          changed("/session/order/0/0", other),
          changed("/session/measurements", 1),
          changed("/session/measurements/0", "x"),
          changed("/session/measurements/0/part", other),
          changed("/session/measurements/0/operator", 2),
          changed("/session/measurements/0/level", "strong"),
          changed("/session/measurements/0/level", -1e300),
          changed("/session/measurements/0/readings", 0),
          changed("/session/measurements/0/time", 5),
          changed("/session/struckOut", {{"reason", "x"}}),
          changed("/session/struckOut/0", good["session"]["measurements"][0])}) {
        EXPECT_FALSE(StudySession::ofFile(wrong)) << wrong.dump();
    }
}

} // namespace
} // namespace study
