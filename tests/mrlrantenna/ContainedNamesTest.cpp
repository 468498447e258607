// The set of names answers as a comparison with each of them would.
#include <ContainedNames.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using mrl::CharString;
using mrl::CharView;

class ContainedNamesTest : public testing::Test {
protected:
    void add(CharView name) {
        m_names.add(name);
        m_listed.emplace_back(name);
    }
    void clear() {
        m_names.clear();
        m_listed.clear();
    }
    /// Whether the set and the list agree, and on what.
    void expectWithin(CharView text, bool expected) const {
        EXPECT_EQ(m_names.anyWithin(text), expected);
        EXPECT_EQ(std::any_of(
                      m_listed.begin(), m_listed.end(),
                      [text](const CharString& name) { return text.find(name) != CharView::npos; }),
                  expected);
    }

    ContainedNames m_names;

private:
    std::vector<CharString> m_listed;
};

TEST_F(ContainedNamesTest, NothingOccursInAnythingWhileTheSetIsEmpty) {
    expectWithin(MRL_TEXT("Lab"), false);
    expectWithin(MRL_TEXT(""), false);
    EXPECT_EQ(m_names.size(), 0U);
}

TEST_F(ContainedNamesTest, ANameOccursAtTheBeginningInTheMiddleAndAtTheEnd) {
    add(MRL_TEXT("Lab"));
    for (const CharView text : {MRL_TEXT("Lab"), MRL_TEXT("Lab-5G"), MRL_TEXT("MyLab-5G"),
                                MRL_TEXT("The Lab"), MRL_TEXT("LLab"), MRL_TEXT("LaLab")}) {
        expectWithin(text, true);
    }
    for (const CharView text : {MRL_TEXT("La"), MRL_TEXT("lab"), MRL_TEXT("Lbb"), MRL_TEXT("ab"),
                                MRL_TEXT("LaXb"), MRL_TEXT("")}) {
        expectWithin(text, false);
    }
}

TEST_F(ContainedNamesTest, NamesOfDifferentLengthsThatBeginAlikeAreAllFound) {
    add(MRL_TEXT("Lab-5G"));
    expectWithin(MRL_TEXT("Lab"), false);
    expectWithin(MRL_TEXT("Lab-5"), false);
    add(MRL_TEXT("Lab"));
    add(MRL_TEXT("Lab-5G-guest"));
    expectWithin(MRL_TEXT("Lab"), true);
    expectWithin(MRL_TEXT("xLab-5G"), true);
    EXPECT_EQ(m_names.size(), 3U);
}

TEST_F(ContainedNamesTest, TheEmptyNameOccursEverywhere) {
    add(MRL_TEXT(""));
    expectWithin(MRL_TEXT("Lab"), true);
    expectWithin(MRL_TEXT(""), true);
}

TEST_F(ContainedNamesTest, ClearedItKnowsNoneOfTheNamesBefore) {
    add(MRL_TEXT("Lab"));
    add(MRL_TEXT(""));
    add(CharString(100, 'x'));
    clear();
    EXPECT_EQ(m_names.size(), 0U);
    expectWithin(MRL_TEXT("Lab"), false);
    expectWithin(CharString(100, 'x'), false);
    add(MRL_TEXT("Attic"));
    expectWithin(MRL_TEXT("Attic and Lab"), true);
    expectWithin(MRL_TEXT("Lab"), false);
}

TEST_F(ContainedNamesTest, ANameMayBeAddedTwice) {
    add(MRL_TEXT("Lab"));
    add(MRL_TEXT("Lab"));
    EXPECT_EQ(m_names.size(), 2U);
    expectWithin(MRL_TEXT("Lab"), true);
}

TEST_F(ContainedNamesTest, LengthsAroundTheLongestHashedOneAreFoundToTheUnit) {
    for (const std::size_t length :
         {ContainedNames::LONGEST_HASHED - 1, ContainedNames::LONGEST_HASHED,
          ContainedNames::LONGEST_HASHED + 1, std::size_t{500}}) {
        clear();
        add(CharString(length, 'x'));
        expectWithin(CharString(length - 1, 'x'), false);
        expectWithin(CharString(length, 'x'), true);
        expectWithin(MRL_TEXT("y") + CharString(length, 'x') + MRL_TEXT("z"), true);
        expectWithin(CharString(length - 1, 'x') + MRL_TEXT("y") + CharString(length - 1, 'x'),
                     false);
    }
}

// Few different units, so that names do occur in one another; 64 apart, so that kinds of first
// units coincide.
TEST_F(ContainedNamesTest, AgreesWithTheComparisonOfEachForAnyNames) {
    std::mt19937 random(20261121); // NOLINT(cert-msc51-cpp,cert-msc32-c): the same names each time
    const auto name = [&random] {
        CharString made(1 + random() % 32, mrl::Char());
        for (mrl::Char& unit : made) {
            unit = static_cast<mrl::Char>('A' + 64 * (random() % 2) + random() % 3);
        }
        return made;
    };
    int within = 0;
    constexpr int TEXTS = 3000;
    for (int i = 0; i < TEXTS; ++i) {
        if (i % 500 == 0) {
            clear();
        }
        const CharString text = name();
        const bool found = m_names.anyWithin(text);
        within += found ? 1 : 0;
        expectWithin(text, found);
        if (!found || i % 7 == 0) {
            add(text);
        }
    }
    EXPECT_GT(within, TEXTS / 10);
    EXPECT_LT(within, TEXTS);
}

TEST_F(ContainedNamesTest, ThousandsOfNamesAreFoundEach) {
    const auto numbered = [](int i) {
        const std::string digits = std::to_string(10000 + i);
        return MRL_TEXT("Network ") + CharString(digits.begin(), digits.end());
    };
    constexpr int NAMES = 5000;
    for (int i = 0; i < NAMES; ++i) {
        ASSERT_FALSE(m_names.anyWithin(numbered(i)));
        m_names.add(numbered(i));
    }
    for (int i = 0; i < NAMES; ++i) {
        ASSERT_TRUE(m_names.anyWithin(numbered(i) + MRL_TEXT("-5G")));
    }
    EXPECT_FALSE(m_names.anyWithin(numbered(NAMES)));
}

} // namespace
