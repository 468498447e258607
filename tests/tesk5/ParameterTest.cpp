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
    EXPECT_EQ(parameter.bytes(), "B\xC3\xBCro");
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

struct RangedParameter : testing::Test {
    Parameter level{"Level", DataType::DECIMAL(), "-70", false, true};
    Parameter samples{"Samples", DataType::INTEGER(), "", false, true};

    RangedParameter() {
        level.setRange({-110, -10, "dBm"});
        samples.setRange({5, 1000, ""});
    }
    std::string refusalOfLevel(const char* text) const {
        const char* const key = level.refusal(text);
        return key == nullptr ? "" : key;
    }
};

TEST_F(RangedParameter, HasANumberOrNone) {
    EXPECT_EQ(level.number(), tesk5::Number(-70));
    EXPECT_EQ(level.value(), Value(tesk5::Number(-70)));
    level.set("-57.5");
    EXPECT_EQ(level.value().valueString(), "-57.5");
    level.set("");
    EXPECT_FALSE(level.isSet());
    EXPECT_EQ(level.number(), std::nullopt);
    EXPECT_EQ(samples.number(), std::nullopt);
    EXPECT_EQ(samples.value(), Value(tesk5::Number(0)));
    samples.set("15");
    EXPECT_EQ(samples.number(), tesk5::Number(15));
    EXPECT_EQ(Parameter("Name", DataType::STRING(), "7", false, true).number(), std::nullopt);
}

TEST_F(RangedParameter, TakesItsRangeWithBothEnds) {
    for (const char* text : {"", "-110", "-10", "-10.000", "-110.0", "-57.125"}) {
        EXPECT_EQ(refusalOfLevel(text), "") << text;
    }
    for (const char* text : {"-110.1", "-9.999", "0", "-1e2", "5000"}) {
        EXPECT_FALSE(level.accepts(text)) << text;
        EXPECT_THROW(level.set(text), TeskException) << text;
    }
    EXPECT_EQ(level.number(), tesk5::Number(-70)) << "the value before";
}

TEST_F(RangedParameter, SaysWhyItRefuses) {
    EXPECT_EQ(refusalOfLevel("-120"), "INPUT_NUMBER_OUT_OF_RANGE");
    EXPECT_EQ(refusalOfLevel("120"), "INPUT_NUMBER_OUT_OF_RANGE");
    EXPECT_EQ(refusalOfLevel("70"), "INPUT_NUMBER_OTHER_SIGN");
    EXPECT_EQ(refusalOfLevel("-70,5"), "INPUT_NUMBER_COMMA");
    EXPECT_EQ(refusalOfLevel("-70,5,1"), "INPUT_NO_NUMBER");
    EXPECT_EQ(refusalOfLevel("-70 dBm"), "INPUT_NO_NUMBER");
    EXPECT_EQ(refusalOfLevel("-70.1234"), "INPUT_NUMBER_TOO_FINE");
    EXPECT_STREQ(samples.refusal("15.5"), "INPUT_NUMBER_NOT_WHOLE");
    level.setReasonForOtherSign("LEVELS_ARE_NEGATIVE");
    EXPECT_EQ(refusalOfLevel("70"), "LEVELS_ARE_NEGATIVE");
    EXPECT_EQ(refusalOfLevel("120"), "INPUT_NUMBER_OUT_OF_RANGE");
    EXPECT_EQ(reasonOf([this] { level.set("70"); }),
              "parameter \"Level\": \"70\" is not a number from -110 to -10");
    EXPECT_EQ(reasonOf([this] { samples.set("4"); }),
              "parameter \"Samples\": \"4\" is not a whole number from 5 to 1000");
}

TEST(Parameters, OfChoicesTakeOneOfThemInAnyLetterCase) {
    Parameter band("Band", DataType::CHOICE(), "", false, true);
    band.setChoices({"2.4", "Both"});
    band.set("bOTH");
    EXPECT_EQ(band.value(), Value("Both"));
    band.set("");
    EXPECT_FALSE(band.isSet());
    EXPECT_STREQ(band.refusal("5"), "INPUT_NO_CHOICE");
    EXPECT_EQ(reasonOf([&band] { band.set("5"); }),
              "parameter \"Band\": \"5\" is not one of its choices");
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
    EXPECT_EQ(Value(tesk5::Number(12)).type(), DataType::INTEGER());
    EXPECT_EQ(Value(tesk5::Number::rounded(12, 1)).type(), DataType::DECIMAL());
    EXPECT_FALSE(Value(tesk5::Number(12)) == Value(mrl::Uint32{12}));
    EXPECT_STREQ(DataType::INTEGER().name(), "integer");
    EXPECT_STREQ(DataType::DECIMAL().name(), "decimal");
    EXPECT_STREQ(DataType::CHOICE().name(), "choice");
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
    EXPECT_EQ(Value("-57.5").valueNumber(), tesk5::Number::rounded(-57.5, 1));
    EXPECT_EQ(Value("much").valueNumber(), tesk5::Number());
    EXPECT_EQ(Value(mrl::Uint32{7}).valueNumber(), tesk5::Number(7));
    EXPECT_EQ(Value(tesk5::Number(7)).valueUint32(), 0U);
    EXPECT_EQ(Value(mrl::Uint32{4294967295U}).valueString(), "4294967295");
}

} // namespace

} // namespace test
