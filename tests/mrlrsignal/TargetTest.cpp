#include <readings/Target.h>

#include <gtest/gtest.h>

namespace readings {
namespace {

constexpr Bssid HOME{0x02, 0, 0, 0, 0xab, 0xff};

TEST(Bssids, AreReadInTheUsualForms) {
    for (const char* const text :
         {"02:00:00:00:ab:ff", "02-00-00-00-AB-FF", "02000000abff", "02:00:00:00:AB:ff"}) {
        EXPECT_EQ(parseBssid(text), HOME) << text;
    }
}

TEST(Bssids, AreReadInNoOtherForm) {
    for (const char* const text :
         {"", "02", "02:00:00:00:ab", "02:00:00:00:ab:ff:00", "02:00:00:00:ab:f", "2:0:0:0:ab:ff",
          "02:00:00:00:ab:fg", "02:00-00:00:ab:ff", "02 00 00 00 ab ff", "0x0000000abf",
          "02:00:00:00:ab:-1", "02:00:00:00:ab:ff ", "020000000abfff"}) {
        EXPECT_FALSE(parseBssid(text)) << text;
    }
}

TEST(Bssids, AreWrittenInLowerCaseWithColons) {
    EXPECT_EQ(bssidText(HOME), "02:00:00:00:ab:ff");
}

TEST(Targets, WithNothingSetAreEveryAccessPoint) {
    EXPECT_TRUE(Target{}.matches("Lab", HOME, 2412));
    EXPECT_TRUE(Target{}.matches("", {}, 0));
}

TEST(Targets, AreTheAccessPointWithAllThatIsSet) {
    const Target target{.ssid = "Lab", .bssid = HOME, .band = nativewifi::Band::GHZ_5};
    EXPECT_TRUE(target.matches("Lab", HOME, 5180));
    EXPECT_FALSE(target.matches("lab", HOME, 5180));
    EXPECT_FALSE(target.matches("Lab", {}, 5180));
    EXPECT_FALSE(target.matches("Lab", HOME, 2412));
    EXPECT_FALSE(target.matches("Lab", HOME, 0));
}

} // namespace
} // namespace readings
