// Commands that the module adds to those of the framework.
#include "FrameworkTest.h"

namespace test {

namespace {

using ModuleCommands = FrameworkTest;

TEST_F(ModuleCommands, GetTheirArgumentsAndTheContextOfTheRun) {
    EXPECT_EQ(startBare({"echo", "one", "two"}), 2);
    EXPECT_EQ(output(), "one two 6.5\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(ModuleCommands, TakeTheOptionsOfEveryCommandAndNoOthers) {
    EXPECT_EQ(startBare({"echo", "one", "--color", "never"}), 1);
    EXPECT_EQ(output(), "one 6.5\n");
    EXPECT_EQ(startBare({"echo", "--json", file("r.json")}), 64);
    EXPECT_THAT(errors(), HasSubstr("the command echo takes no \"--json\""));
}

TEST_F(ModuleCommands, WithoutArgumentsRefuseThem) {
    EXPECT_EQ(startBare({"bare"}), 0);
    EXPECT_EQ(startBare({"bare", "one"}), 64);
    EXPECT_THAT(errors(), HasSubstr("the command bare takes no \"one\""));
}

TEST_F(ModuleCommands, StandOnTheHelpPageBehindThoseOfTheFramework) {
    EXPECT_EQ(startBare({"--help"}), 0);
    EXPECT_THAT(output(), HasSubstr("  example.k5x echo [WORD...] [OPTIONS]\n"
                                    "    Something happened.\n"));
    EXPECT_LT(output().find(" doctor "), output().find(" echo "));
    forgetOutput();
    EXPECT_EQ(startBare({"echo", "--help"}), 0);
    EXPECT_THAT(output(), HasSubstr("  example.k5x echo one two\n"));
}

} // namespace

} // namespace test
