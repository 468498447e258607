#include <nativewifi/Guid.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

constexpr GUID SAMPLE{0x8C2F6B1E, 0x4D37, 0x4A59, {0x9E, 0x0B, 0x5F, 0x6A, 0x7D, 0x3C, 0x1B, 0x20}};

TEST(Guid, IsReadFromItsTextInAnyLetterCase) {
    for (const mrl::CharView text : {MRL_TEXT("8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20"),
                                     MRL_TEXT("8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20")}) {
        const std::optional<GUID> guid = parseGuid(text);
        ASSERT_TRUE(guid);
        EXPECT_TRUE(sameGuid(*guid, SAMPLE));
    }
}

TEST(Guid, IsWrittenInLowerCaseWithoutBraces) {
    EXPECT_EQ(guidText(SAMPLE), mrl::String("8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20"));
    EXPECT_EQ(guidText(GUID{}), mrl::String("00000000-0000-0000-0000-000000000000"));
}

TEST(Guid, IsNotReadFromAnythingElse) {
    for (const mrl::CharView text :
         {MRL_TEXT(""), MRL_TEXT("8c2f6b1e"), MRL_TEXT("{8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20}"),
          MRL_TEXT("8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b2"),
          MRL_TEXT("8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b200"),
          MRL_TEXT("8c2f6b1e04d37-4a59-9e0b-5f6a7d3c1b20"),
          MRL_TEXT("8c2f6b1-e4d37-4a59-9e0b-5f6a7d3c1b20"),
          MRL_TEXT("8c2f6b1g-4d37-4a59-9e0b-5f6a7d3c1b20"),
          MRL_TEXT("\u01388c2f6b1-4d37-4a59-9e0b-5f6a7d3c1b20"),
          MRL_TEXT(" 8c2f6b1-4d37-4a59-9e0b-5f6a7d3c1b20")}) {
        EXPECT_FALSE(parseGuid(text)) << mrl::String(text).getUTF8String().c_str();
    }
}

TEST(Guid, DiffersWhenAnyByteDiffers) {
    for (std::size_t byte = 0; byte < sizeof(GUID); ++byte) {
        GUID other = SAMPLE;
        reinterpret_cast<unsigned char*>(&other)[byte] ^= 1U;
        EXPECT_FALSE(sameGuid(SAMPLE, other)) << byte;
    }
    EXPECT_TRUE(sameGuid(SAMPLE, SAMPLE));
}

TEST(Guid, OfAnAddressIsAlwaysTheSameAndOfAnotherAnother) {
    EXPECT_EQ(guidText(guidOfAddress({0x02, 0x00, 0x5E, 0xAB, 0xCD, 0xEF})),
              mrl::String("6d726c72-6c78-8000-8000-02005eabcdef"));
    EXPECT_FALSE(sameGuid(guidOfAddress({2, 0, 0, 0, 0, 0}), guidOfAddress({2, 0, 0, 0, 0, 1})));
}

TEST(DeviceSystemName, CarriesTheGuidInUpperCase) {
    EXPECT_EQ(deviceSystemName(SAMPLE),
              mrl::String("\\DEVICE\\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}"));
}

TEST(DeviceSystemName, HasItsGuidBetweenTheFirstBraceAndTheLastCharacter) {
    EXPECT_EQ(guidTextOf("x{ab}"), mrl::String("ab"));
    EXPECT_EQ(guidTextOf("{ab}cd"), mrl::String("ab}c"));
    EXPECT_EQ(guidTextOf("{{ab}"), mrl::String("{ab"));
    EXPECT_EQ(guidTextOf("{ab"), mrl::String("a"));
}

TEST(DeviceSystemName, HasNoGuidWithoutABraceOrBehindTheEndOrBehindPosition65535) {
    EXPECT_EQ(guidTextOf(mrl::String(std::string(65535, 'x') + "{ab}")), mrl::String("ab"));
    for (const std::string& name :
         {std::string(), std::string("{"), std::string("}"), std::string("{}"),
          std::string(65536, 'x') + "{ab}", std::string("8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20")}) {
        EXPECT_TRUE(guidTextOf(mrl::String(name)).empty()) << name;
    }
}

} // namespace
} // namespace nativewifi
