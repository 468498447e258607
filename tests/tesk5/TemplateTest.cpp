// How a template renders its values.
#include <reports/Template.h>

#include <gtest/gtest.h>

namespace test {

namespace {

using mrl::Json;
using tesk5::filled;

TEST(Templates, ShowValuesEscaped) {
    const Json data = {{"name", "<a> & \x1B{{count}}"}, {"count", 3}};
    EXPECT_EQ(filled("{{name}}: {{count}}", data), "&lt;a&gt; &amp; \\x1B{{count}}: 3");
}

TEST(Templates, ShowMarkupInTripleBracesAsItIs) {
    EXPECT_EQ(filled("{{{markup}}}", Json::object({{"markup", "<b>{{x}}</b>"}})), "<b>{{x}}</b>");
}

TEST(Templates, LeaveOutSectionsOfNullFalseAndEmptyLists) {
    const Json data = {{"none", nullptr}, {"no", false}, {"empty", Json::array()}};
    EXPECT_EQ(filled("{{#none}}1{{/none}}{{#no}}2{{/no}}{{#empty}}3{{/empty}}.", data), ".");
}

TEST(Templates, KnowWhetherAListHasAnything) {
    const Json data = mrl::parseJson(R"({"some": [1, 2], "empty": []})");
    EXPECT_EQ(filled("{{#hasSome}}[{{#some}}{{.}}{{/some}}]{{/hasSome}}"
                     "{{#hasEmpty}}[{{#empty}}{{.}}{{/empty}}]{{/hasEmpty}}",
                     data),
              "[12]");
}

TEST(Templates, IncludeOthersByName) {
    const Json data = mrl::parseJson(R"({"parts": [{"kind": "good"}, {"kind": "bad"}]})");
    EXPECT_EQ(filled("{{#parts}}{{>mark}} {{/parts}}", data, {{"mark", "<i>{{kind}}</i>"}}),
              "<i>good</i> <i>bad</i> ");
}

} // namespace

} // namespace test
