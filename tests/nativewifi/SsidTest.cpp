#include <nativewifi/Ssid.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace nativewifi {
namespace {

DOT11_SSID ssid(std::string_view bytes) {
    DOT11_SSID made{};
    made.uSSIDLength = static_cast<ULONG>(bytes.size());
    std::copy_n(bytes.begin(), std::min(bytes.size(), sizeof made.ucSSID), made.ucSSID);
    return made;
}

TEST(Ssid, HasAsManyBytesAsItsLengthSaysAnd32AtMost) {
    EXPECT_EQ(ssidBytes(ssid("")), "");
    EXPECT_EQ(ssidBytes(ssid(std::string_view("L\0b", 3))), std::string_view("L\0b", 3));
    DOT11_SSID full = ssid(std::string(32, 'a'));
    EXPECT_EQ(ssidBytes(full), std::string(32, 'a'));
    full.uSSIDLength = 0xFFFFFFFF;
    EXPECT_EQ(ssidBytes(full), std::string(32, 'a'));
}

TEST(Ssid, IsMadeOfBytesAndEndsWithThe32nd) {
    const DOT11_SSID lab = toSsid(std::string_view("L\0b", 3));
    EXPECT_EQ(ssidBytes(lab), std::string_view("L\0b", 3));
    EXPECT_EQ(lab.ucSSID[3], 0) << "the rest";
    const DOT11_SSID cut = toSsid(std::string(40, 'a'));
    EXPECT_EQ(cut.uSSIDLength, 32U);
    EXPECT_EQ(toSsid("").uSSIDLength, 0U);
}

TEST(Ssid, ReadsOneCharacterAByte) {
    EXPECT_EQ(ssidText(ssid("Lab-5G")), mrl::String("Lab-5G"));
    EXPECT_EQ(ssidText(ssid("Caf\xC3\xA9")), mrl::String("Caf\xC3\x83\xC2\xA9"));
    EXPECT_EQ(ssidText(ssid(std::string(40, 'a'))), mrl::String(std::string(32, 'a')));
}

TEST(Ssid, EndsAsTextAtAByteOf0) {
    EXPECT_EQ(ssidText(ssid(std::string_view("La\0b", 4))), mrl::String("La"));
    EXPECT_TRUE(ssidText(ssid(std::string_view("\0ab", 3))).empty());
}

} // namespace
} // namespace nativewifi
