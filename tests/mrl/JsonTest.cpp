// What every reader of JSON gets: values in their order, and refusals with their place.
#include <support/DeepJson.h>

#include <mrl/Json.h>

#include <gtest/gtest.h>

#include <optional>

namespace test {

namespace {

using JsonReason = mrl::JsonFailure::Reason;

std::optional<mrl::JsonFailure> failureOf(const std::string& text) {
    try {
        mrl::parseJson(text);
        return std::nullopt;
    } catch (const mrl::JsonFailure& failure) {
        return failure;
    }
}

TEST(JsonTexts, KeepTheOrderOfTheirMembers) {
    EXPECT_EQ(mrl::parseJson(R"({"b": 1, "a": [true, "x"]})").dump(), R"({"b":1,"a":[true,"x"]})");
}

struct Place {
    std::string text;
    std::size_t line;
    std::size_t column;
};

TEST(JsonTexts, ThatAreMalformedAreRefusedWithLineAndColumn) {
    for (const auto& [text, line, column] :
         {Place{"", 1, 1}, Place{"{\"a\": []", 1, 9}, Place{"{\n  \"a\": [}\n", 2, 9},
          Place{"[1 2\n]", 1, 4}, Place{"{} x", 1, 4}, Place{"{\n\n\"\xFF\": 1}", 3, 2},
          Place{deepBrackets(), 1, DEPTH_OF_BRACKETS + 1}}) {
        const std::optional<mrl::JsonFailure> failure = failureOf(text);
        ASSERT_TRUE(failure) << text.substr(0, 20);
        EXPECT_EQ(failure->reason, JsonReason::syntax);
        EXPECT_EQ(failure->line, line) << text.substr(0, 20);
        EXPECT_EQ(failure->column, column) << text.substr(0, 20);
        EXPECT_EQ(failure->detail.rfind("syntax error", 0), 0U) << failure->detail;
        EXPECT_EQ(failure->what(), "line " + std::to_string(line) + ", column " +
                                       std::to_string(column) + ": " + failure->detail);
    }
}

TEST(JsonTexts, ThatNameAMemberTwiceInOneObjectAreRefused) {
    const std::optional<mrl::JsonFailure> failure = failureOf(R"([{"a": {"b": 1}, "a": 2}])");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->reason, JsonReason::memberTwice);
    EXPECT_EQ(failure->detail, "a");
    EXPECT_STREQ(failure->what(), "the member \"a\" is there twice in one object");
    EXPECT_FALSE(failureOf(R"([{"a": {"a": 1}}, {"a": 2}])"));
}

TEST(JsonTexts, WithObjectsOfVeryManyMembersAreRefused) {
    const auto objectOf = [](std::size_t members) {
        std::string text;
        for (std::size_t i = 1; i <= members; ++i) {
            text += (text.empty() ? "{\"" : ",\"") + std::to_string(i) + "\":0";
        }
        return text + "}";
    };
    EXPECT_FALSE(failureOf("[" + objectOf(2000) + "," + objectOf(2000) + "]"));
    const std::optional<mrl::JsonFailure> failure = failureOf(objectOf(100000));
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->reason, JsonReason::tooManyMembers);
    EXPECT_STREQ(failure->what(),
                 "one object has more than 2000 members, the first beyond being \"2001\"");
}

TEST(JsonTexts, WithANumberThatNoTypeHoldsAreRefused) {
    const std::optional<mrl::JsonFailure> failure = failureOf("[1e999]");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->reason, JsonReason::number);
    EXPECT_STREQ(failure->what(), "number overflow parsing '1e999'");
}

} // namespace

} // namespace test
