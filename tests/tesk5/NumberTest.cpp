// Numbers with sign and decimals: how they are read, rounded, compared and written.
#include <tesk5/Number.h>
#include <tesk5/TeskException.h>

#include <gtest/gtest.h>

#include <limits>

namespace test {

namespace {

using tesk5::Number;
using tesk5::TeskException;

std::string read(const char* text) {
    const std::optional<Number> number = Number::parse(text);
    return number ? number->text() : "none";
}

TEST(Numbers, AreReadAsTheyAreWritten) {
    for (const char* text : {"0", "7", "-70", "-57.5", "-0.05", "3.000001", "1000000000000",
                             "-1000000000000.000000"}) {
        EXPECT_EQ(read(text), text);
    }
    EXPECT_EQ(read("+1.50"), "1.50");
    EXPECT_EQ(read("007"), "7");
    EXPECT_EQ(read("-0"), "0");
    EXPECT_EQ(read("-0.0"), "0.0");
    EXPECT_EQ(read("\u221270"), "-70") << "the minus sign of printed texts";
}

TEST(Numbers, AreNotReadFromAnythingElse) {
    for (const char* text : {"",
                             "-",
                             "+",
                             ".",
                             "5.",
                             ".5",
                             "-.5",
                             "1e3",
                             "0x10",
                             "--5",
                             "+-5",
                             "1,5",
                             "1.2.3",
                             " 1",
                             "1 ",
                             "1-",
                             "ten",
                             "nan",
                             "inf",
                             "5dB",
                             "1 000",
                             "\u0661",
                             "1.0000001",
                             "1000000000001",
                             "1000000000000.1",
                             "99999999999999999999",
                             "1.-5"}) {
        EXPECT_EQ(read(text), "none") << text;
    }
}

TEST(Numbers, AreRoundedHalvesAwayFromZero) {
    EXPECT_EQ(Number::rounded(-57.54, 1).text(), "-57.5");
    EXPECT_EQ(Number::rounded(0.25, 1).text(), "0.3");
    EXPECT_EQ(Number::rounded(-0.25, 1).text(), "-0.3");
    EXPECT_EQ(Number::rounded(-0.04, 1).text(), "0.0") << "no zero has a sign";
    EXPECT_EQ(Number::rounded(2.5, 0).text(), "3");
    EXPECT_EQ(Number::rounded(1, 3).text(), "1.000");
    EXPECT_EQ(Number::rounded(1, 99).decimals(), Number::MOST_DECIMALS);
    EXPECT_EQ(Number::rounded(1, -1).decimals(), 0);
}

TEST(Numbers, HaveABound) {
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Number::rounded(INFINITE, 1).text(), "1000000000000.0");
    EXPECT_EQ(Number::rounded(-INFINITE, 0), Number(-Number::GREATEST));
    EXPECT_EQ(Number(std::numeric_limits<std::int64_t>::max()), Number(Number::GREATEST));
    EXPECT_THROW(Number::rounded(std::numeric_limits<double>::quiet_NaN(), 1), TeskException);
}

TEST(Numbers, AreComparedByTheirValue) {
    EXPECT_EQ(*Number::parse("5.0"), Number(5));
    EXPECT_LT(*Number::parse("-57.6"), *Number::parse("-57.5"));
    EXPECT_LT(Number(-1), Number(0U));
    EXPECT_GT(*Number::parse("0.000001"), Number(0));
    EXPECT_EQ(Number(4294967295U).text(), "4294967295");
    EXPECT_EQ(Number::parse("-57.5")->negated().text(), "57.5");
    EXPECT_DOUBLE_EQ(Number::parse("-57.5")->toDouble(), -57.5);
}

} // namespace

} // namespace test
