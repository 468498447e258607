#include <nativewifi/LinuxFiles.h>

#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

using Address = std::array<std::uint8_t, 6>;

TEST(LinuxFiles, HaveLinesAndValues) {
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "status";
    std::ofstream(file) << "Name:\tx\nCapEff:\t1f\nCapEff:\t0";
    EXPECT_EQ(lineOf(file), "Name:\tx");
    EXPECT_EQ(valueIn(file, "CapEff:\t"), "1f");
    EXPECT_EQ(valueIn(file, "CapBnd:"), "");
    EXPECT_EQ(lineOf(folder.path() / "none"), "");
    EXPECT_EQ(lineOf(folder.path()), "");
}

TEST(LinuxFiles, NameWhatALinkLeadsToAlsoToNothing) {
    const test::TemporaryFolder folder;
    std::filesystem::create_symlink("../drivers/iwlwifi", folder.path() / "driver");
    EXPECT_EQ(linkedName(folder.path() / "driver"), "iwlwifi");
    EXPECT_EQ(linkedName(folder.path()), "");
}

TEST(LinuxFiles, HaveNumbersInHexadecimalDigits) {
    EXPECT_EQ(hexNumber("0x1003"), 0x1003U);
    EXPECT_EQ(hexNumber("000001ffffffffff"), 0x1ffffffffffU);
    for (const char* const text : {"", "0x", "zz", "1 2", "-1", "10000000000000000"}) {
        EXPECT_EQ(hexNumber(text), std::nullopt) << text;
    }
}

TEST(LinuxFiles, HaveAddressesOfSixBytes) {
    EXPECT_EQ(hardwareAddress("02:00:5e:AB:cd:ef"), (Address{2, 0, 0x5E, 0xAB, 0xCD, 0xEF}));
    for (const char* const text :
         {"", "00:11:22:33:44", "00:11:22:33:44:5", "00-11-22-33-44-55", "0g:11:22:33:44:55",
          "00:11:22:33:44:55:66", "+1:11:22:33:44:55", "00:11:22:33:44:5x"}) {
        EXPECT_EQ(hardwareAddress(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace nativewifi
