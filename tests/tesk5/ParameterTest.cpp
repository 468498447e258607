#include "FrameworkTest.h"

#include <tesk5/ByteText.h>
#include <tesk5/Texts.h>

namespace test {

namespace {

using tesk5::Parameter;
using tesk5::TeskString;
using tesk5::toHexForm;
using tesk5::Value;
using tesk5::withUtf8Reading;

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

TEST(Parameters, OfNamesTakeTheirBytesInHexadecimalForm) {
    Parameter parameter("Name", DataType::STRING(), "", false, true);
    parameter.set("hex:4c61");
    EXPECT_EQ(parameter.value(), Value("hex:4c61"));
    parameter.setBytesAllowed(32);
    parameter.set("hex:42C3BC726F");
    EXPECT_EQ(parameter.value(), Value("B\xC3\x83\xC2\xBCro"));
    parameter.set("HEX:4c6162");
    EXPECT_EQ(parameter.value(), Value("Lab"));
    parameter.set("Hexagon");
    EXPECT_EQ(parameter.value(), Value("Hexagon"));
}

TEST(Parameters, OfNamesRefuseBrokenBytesWithTheReason) {
    Parameter parameter("Name", DataType::STRING(), "", false, true);
    parameter.setBytesAllowed(2);
    EXPECT_STREQ(parameter.refusal("hex:"), "INPUT_HEX_EMPTY");
    EXPECT_STREQ(parameter.refusal("hex:4"), "INPUT_HEX_ODD");
    EXPECT_STREQ(parameter.refusal("hex:4G"), "INPUT_HEX_NO_DIGIT");
    EXPECT_STREQ(parameter.refusal("hex:\u00C4"), "INPUT_HEX_NO_DIGIT");
    EXPECT_STREQ(parameter.refusal("hex:4C6162"), "INPUT_HEX_TOO_LONG");
    EXPECT_STREQ(parameter.refusal("hex:4C00"), "INPUT_HEX_ZERO");
    EXPECT_EQ(reasonOf([&parameter] { parameter.set("hex:4"); }),
              "parameter \"Name\": \"hex:4\" is not in hexadecimal form");
}

TEST(ByteTexts, AreShownInHexadecimalFormAndAsUtf8) {
    const TeskString name("B\xC3\x83\xC2\xBCro");
    EXPECT_EQ(toHexForm(name), "hex:42C3BC726F");
    EXPECT_EQ(toHexForm("\u30E9"), "\u30E9"); // no byte
    EXPECT_EQ(withUtf8Reading(name.utf8()), name.utf8() + " [UTF-8: B\u00FCro]");
    for (const char* text : {"", "Lab", "B\u00FCro", "\u30E9"}) {
        EXPECT_EQ(withUtf8Reading(text), text);
    }
}

TEST(Values, KeepTheirType) {
    EXPECT_EQ(Value("12").type(), DataType::STRING());
    EXPECT_EQ(Value(mrl::Uint32{12}).type(), DataType::UINT32());
    EXPECT_FALSE(Value("12") == Value(mrl::Uint32{12}));
    EXPECT_STREQ(DataType::STRING().name(), "string");
    EXPECT_STREQ(DataType::UINT32().name(), "uint32");
}

TEST(Values, AreShownAsAnotherText) {
    const Value value = Value("Colour").shownAs("Color");
    EXPECT_EQ(value.valueString(), "Colour");
    EXPECT_EQ(value.shownString(), "Color");
    EXPECT_EQ(tesk5::fillPlaceholders("{Name}", {{"Name", value}}), "Color");
    EXPECT_EQ(Value(mrl::Uint32{7}).shownString(), "7");
}

TEST(Values, ReadAsTheOtherTypeWhereTheyCan) {
    EXPECT_EQ(Value("12").valueUint32(), 12U);
    EXPECT_EQ(Value("twelve").valueUint32(), 0U);
    EXPECT_EQ(Value("").valueUint32(), 0U);
    EXPECT_EQ(Value(mrl::Uint32{4294967295U}).valueString(), "4294967295");
}

} // namespace

} // namespace test
