#include <nativewifi/Guid.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

TEST(DeviceSystemName, CarriesTheGuidInUpperCase) {
    const GUID guid{0x8C2F6B1E, 0x4D37, 0x4A59, {0x9E, 0x0B, 0x5F, 0x6A, 0x7D, 0x3C, 0x1B, 0x20}};
    EXPECT_EQ(deviceSystemName(guid),
              mrl::String("\\DEVICE\\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}"));
}

TEST(DeviceSystemName, GivesItsGuidBack) {
    const GUID guid{0x01234567, 0x89AB, 0xCDEF, {0, 1, 2, 3, 4, 5, 6, 0xFF}};
    const auto parsed = parseGuid(guidTextOf(deviceSystemName(guid)).view());
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(sameGuid(*parsed, guid));
}

TEST(DeviceSystemName, HasItsGuidBetweenTheFirstBraceAndTheLastCharacter) {
    EXPECT_EQ(guidTextOf("x{ab}"), mrl::String("ab"));
    EXPECT_EQ(guidTextOf("{ab}cd"), mrl::String("ab}c"));
    EXPECT_EQ(guidTextOf("{{ab}"), mrl::String("{ab"));
    EXPECT_EQ(guidTextOf("{ab"), mrl::String("a"));
}

TEST(DeviceSystemName, HasNoGuidWithoutABraceOrBehindTheEnd) {
    for (const char* name : {"", "{", "}", "8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20"}) {
        EXPECT_TRUE(guidTextOf(name).empty()) << name;
    }
}

TEST(DeviceSystemName, HasNoGuidBehindPosition65535) {
    const auto behind = [](std::size_t prefix) {
        return mrl::String(std::string(prefix, 'x') + "{ab}");
    };
    EXPECT_EQ(guidTextOf(behind(65535)), mrl::String("ab"));
    EXPECT_TRUE(guidTextOf(behind(65536)).empty());
}

} // namespace
} // namespace nativewifi
