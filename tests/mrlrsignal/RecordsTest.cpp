// Records as programs read them.
#include <records/Records.h>

#include <support/CapturedStream.h>

#include <gtest/gtest.h>

namespace records {
namespace {

using mrl::Json;

Json recordOf(std::string_view name) {
    Json record;
    record["level"] = -48;
    addName(record, name);
    return record;
}

std::string written(Format format, const std::vector<Json>& all) {
    mrl::OutputStream stream(mrl::OutputStream::Target::standardOutput);
    const test::CapturedStream captured(stream);
    Writer writer(stream, format);
    for (const Json& record : all) {
        EXPECT_TRUE(writer.write(record));
    }
    return captured.text();
}

TEST(Records, HaveAFormatByItsWord) {
    EXPECT_EQ(formatNamed("csv"), Format::CSV);
    EXPECT_EQ(formatNamed("jsonl"), Format::JSONL);
    EXPECT_FALSE(formatNamed("json"));
}

TEST(Records, AreLinesOfJson) {
    EXPECT_EQ(written(Format::JSONL, {recordOf("Lab"), recordOf("")}),
              R"({"level":-48,"name":"Lab","nameHex":"4c6162"})"
              "\n"
              R"({"level":-48,"name":"","nameHex":""})"
              "\n");
}

TEST(Records, HaveANameWhereItsBytesAreUtf8AndTheBytesAlways) {
    EXPECT_EQ(written(Format::JSONL, {recordOf("Caf\xC3\xA9\x1B")}),
              R"({"level":-48,"name":"Caf\u00e9\u001b","nameHex":"436166c3a91b"})"
              "\n");
    EXPECT_EQ(written(Format::JSONL, {recordOf("Caf\xE9")}),
              R"({"level":-48,"name":null,"nameHex":"436166e9"})"
              "\n");
    EXPECT_EQ(written(Format::CSV, {recordOf("Caf\xE9")}),
              "level,name,nameHex\r\n-48,,436166e9\r\n");
}

TEST(Records, OfCsvBeginWithTheNamesOfTheFieldsOnce) {
    EXPECT_EQ(written(Format::CSV, {recordOf("Lab"), recordOf("Lab")}),
              "level,name,nameHex\r\n-48,Lab,4c6162\r\n-48,Lab,4c6162\r\n");
}

TEST(Records, OfCsvQuoteWhatWouldEndAField) {
    Json record;
    record["a"] = nullptr;
    record["b"] = "one,two";
    record["c"] = "say \"x\"";
    record["d"] = "two\r\nlines";
    record["e"] = Json::array({-50, nullptr, -52});
    record["f"] = nullptr;
    record["g"] = 2.4;
    EXPECT_EQ(written(Format::CSV, {record}),
              "a,b,c,d,e,f,g\r\n,\"one,two\",\"say \"\"x\"\"\",\"two\r\nlines\",-50;;-52,,2.4\r\n");
}

} // namespace
} // namespace records
