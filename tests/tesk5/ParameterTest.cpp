#include "FrameworkTest.h"

namespace test {

namespace {

using tesk5::Parameter;
using tesk5::Value;

struct NumericParameter : testing::Test {
    Parameter parameter{"Threshold", DataType::UINT32(), "", false, true};
};

TEST_F(NumericParameter, ReadsAsZeroWithoutAValue) {
    EXPECT_EQ(parameter.value(), Value(mrl::Uint32{0}));
    parameter.set("");
    EXPECT_EQ(parameter.value(), Value(mrl::Uint32{0}));
}

TEST_F(NumericParameter, IsSetOnceAValueIsGiven) {
    EXPECT_FALSE(parameter.isSet());
    parameter.set("0");
    EXPECT_TRUE(parameter.isSet());
    parameter.set("");
    EXPECT_FALSE(parameter.isSet());
    EXPECT_TRUE(Parameter("Threshold", DataType::UINT32(), "7", false, true).isSet());
}

TEST_F(NumericParameter, TakesEveryUnsigned32BitNumber) {
    for (const char* text : {"0", "1", "40", "007", "4294967295"}) {
        EXPECT_TRUE(parameter.accepts(text)) << text;
    }
    parameter.set("4294967295");
    EXPECT_EQ(parameter.value().valueUint32(), 4294967295U);
    parameter.set("007");
    EXPECT_EQ(parameter.value().valueUint32(), 7U);
}

TEST_F(NumericParameter, RefusesEverythingElseAndKeepsItsValue) {
    parameter.set("40");
    for (const char* text : {"4294967296", "99999999999999999999", "-1", "+1", " 1", "1 ", "1e3",
                             "0x10", "1.0", "1,000", "ten", "\u0661", "-"}) {
        EXPECT_FALSE(parameter.accepts(text)) << text;
        EXPECT_THROW(parameter.set(text), TeskException) << text;
    }
    EXPECT_EQ(parameter.value().valueUint32(), 40U) << "the value before";
}

TEST_F(NumericParameter, SaysWhatItRefusesAndWhy) {
    EXPECT_EQ(reasonOf([this] { parameter.set("1e3"); }),
              "parameter \"Threshold\": \"1e3\" is not a whole number from 0 to 4294967295");
}

TEST(Parameters, GoBackToTheirDefault) {
    Parameter parameter("Name", DataType::STRING(), "Lab", false, true);
    EXPECT_EQ(parameter.value(), Value("Lab"));
    parameter.set("");
    EXPECT_EQ(parameter.value(), Value(""));
    parameter.set("Office");
    EXPECT_EQ(parameter.value(), Value("Office"));
    parameter.reset();
    EXPECT_EQ(parameter.value(), Value("Lab"));
}

TEST(Parameters, OfTextTakeAnything) {
    Parameter parameter("Name", DataType::STRING(), "", false, true);
    for (const char* text : {"", " ", "-1", "a=b", "\n", "\U0001F4F6"}) {
        EXPECT_TRUE(parameter.accepts(text));
    }
}

TEST(Values, KeepTheirType) {
    EXPECT_EQ(Value("12").type(), DataType::STRING());
    EXPECT_EQ(Value(mrl::Uint32{12}).type(), DataType::UINT32());
    EXPECT_FALSE(Value("12") == Value(mrl::Uint32{12}));
    EXPECT_STREQ(DataType::STRING().name(), "string");
    EXPECT_STREQ(DataType::UINT32().name(), "uint32");
}

TEST(Values, ReadAsTheOtherTypeWhereTheyCan) {
    EXPECT_EQ(Value("12").valueUint32(), 12U);
    EXPECT_EQ(Value("twelve").valueUint32(), 0U);
    EXPECT_EQ(Value("").valueUint32(), 0U);
    EXPECT_EQ(Value(mrl::Uint32{4294967295U}).valueString(), "4294967295");
}

} // namespace

} // namespace test
