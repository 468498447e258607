// Tables as spreadsheets of several countries export them, and where they are wrong.
#include <tables/CsvTable.h>

#include <gtest/gtest.h>

namespace {

using namespace tables;
using Problem = TableFailure::Problem;

double onlyNumber(std::string_view text) {
    return CsvTable(text).number(0, 0);
}

TableFailure failureOf(std::string_view text) {
    try {
        const CsvTable table(text);
        for (std::size_t row = 0; row < table.rows(); ++row) {
            table.number(row, *table.column({"level"}));
        }
    } catch (const TableFailure& failure) {
        return failure;
    }
    ADD_FAILURE() << "no failure in " << text;
    return {};
}

void expectFailure(std::string_view text, Problem problem, std::size_t line, std::size_t column) {
    const TableFailure found = failureOf(text);
    EXPECT_EQ(found.problem, problem) << text;
    EXPECT_EQ(found.line, line) << text;
    EXPECT_EQ(found.column, column) << text;
}

TEST(CsvTables, FindTheirColumnsByName) {
    const CsvTable table("Unit,Level\nA1,-55.5\nA2,-57\n");
    ASSERT_EQ(table.rows(), 2U);
    EXPECT_EQ(table.column({"level"}), 1U);
    EXPECT_EQ(table.column({"serial", "unit"}), 0U);
    EXPECT_FALSE(table.column({"operator"}));
    EXPECT_EQ(table.text(1, 0), "A2");
    EXPECT_EQ(table.number(0, 1), -55.5);
}

TEST(CsvTables, OfOneColumnNeedNoName) {
    const CsvTable table("-55\r\n\r\n-56.5\r\n");
    EXPECT_EQ(table.column({"level"}), 0U);
    EXPECT_EQ(table.rows(), 2U);
    EXPECT_EQ(table.number(1, 0), -56.5);
}

TEST(CsvTables, UnderstandDecimalCommasWhereCommasDoNotSeparate) {
    EXPECT_EQ(CsvTable("unit;level\nA;-55,5").number(0, 1), -55.5);
    EXPECT_EQ(CsvTable("unit\tlevel\nA\t-55,5").number(0, 1), -55.5);
    EXPECT_EQ(onlyNumber("level\n-55,5"), -55.5);
    EXPECT_EQ(CsvTable("unit;level\nA;-55.5").number(0, 1), -55.5);
}

TEST(CsvTables, UnderstandSignsSpacesQuotesAndTheMarkOfUtf8) {
    EXPECT_EQ(onlyNumber("\xEF\xBB\xBFlevel\n \xE2\x88\x92"
                         "55 \n"),
              -55);
    EXPECT_EQ(onlyNumber("level\n+3"), 3);
    const CsvTable table("unit, \"the \"\"level\"\"\" ,x\n\"A,1\", \"-55\" ,\n");
    EXPECT_EQ(table.text(0, 0), "A,1");
    EXPECT_EQ(table.column({"the \"level\""}), 1U);
    EXPECT_EQ(table.number(0, 1), -55);
    EXPECT_EQ(table.text(0, 2), "");
}

TEST(CsvTables, SayWhereANumberIsNone) {
    for (const char* wrong : {"x", "", "-", "1.", ".5", "1e3", "nan", "0x10", "1.234,5", "1,234,5",
                              "--5", "5 5", "- 5"}) {
        expectFailure(std::string("unit;level\nA;1\nB;") + wrong, Problem::NO_NUMBER, 3, 3);
    }
    EXPECT_EQ(failureOf("unit;level\nA;weak").detail, "weak");
}

TEST(CsvTables, RefuseDecimalCommasBetweenCommas) {
    expectFailure("unit,level\nA,-55\nB,-55,5", Problem::FIELDS, 3, 7);
    EXPECT_EQ(failureOf("unit,level\nB,-55,5").detail, "3");
    expectFailure("unit,level\nB,\"-55,5\"", Problem::NO_NUMBER, 2, 3);
}

TEST(CsvTables, RefuseNumbersInSeveralColumnsWithoutNames) {
    expectFailure("-55,5\n-56,5", Problem::NO_NAMES, 1, 1);
    expectFailure("1;-55", Problem::NO_NAMES, 1, 1);
}

TEST(CsvTables, RefuseWhatIsNoTable) {
    expectFailure("", Problem::EMPTY, 1, 1);
    expectFailure("level\n\n", Problem::EMPTY, 1, 1);
    expectFailure("level\n\"-55", Problem::QUOTE, 2, 1);
    expectFailure("unit,level\n\"A\"x,-55", Problem::QUOTE, 2, 4);
    expectFailure("unit,level\nA", Problem::FIELDS, 2, 1);
}

TEST(CsvTables, RefuseOtherEncodings) {
    expectFailure("part,level\nA,-50\nB\xFCro,-51", Problem::NOT_UTF8, 3, 2);
    expectFailure(std::string_view("\xFF\xFEl\0e\0v\0e\0l\0", 12), Problem::NOT_UTF8, 1, 1);
    EXPECT_EQ(CsvTable("unit\nB\u00FCro \uFFFD").text(0, 0), "B\u00FCro \uFFFD");
}

TEST(CsvTables, RefuseANameThatSeveralColumnsHave) {
    expectFailure("\nlevel;unit;Level\n-50;A;-60", Problem::TWICE, 2, 12);
    EXPECT_EQ(CsvTable("level,note,note\n-50,,").column({"level"}), 0U);
}

TEST(CsvTables, RefuseNumbersWhoseSquaresDrownTheOthers) {
    expectFailure("level\n1000001", Problem::TOO_LARGE, 2, 1);
    expectFailure("level\n-" + std::string(300, '9'), Problem::TOO_LARGE, 2, 1);
    EXPECT_EQ(onlyNumber("level\n-1000000"), -1e6);
}

} // namespace
