#include <nativewifi/Channels.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

struct KnownChannel {
    std::uint32_t mhz;
    ULONG channel;
    std::optional<Band> band;
};

class Channels : public testing::TestWithParam<KnownChannel> {};

TEST_P(Channels, HaveTheNumberOfTheirBand) {
    EXPECT_EQ(channelOf(GetParam().mhz), GetParam().channel) << GetParam().mhz;
    EXPECT_EQ(bandOf(GetParam().mhz), GetParam().band) << GetParam().mhz;
}

INSTANTIATE_TEST_SUITE_P(
    Frequencies, Channels,
    testing::Values(KnownChannel{2412, 1, Band::GHZ_2_4}, KnownChannel{2437, 6, Band::GHZ_2_4},
                    KnownChannel{2472, 13, Band::GHZ_2_4}, KnownChannel{2484, 14, Band::GHZ_2_4},
                    KnownChannel{4920, 184, Band::GHZ_5}, KnownChannel{5180, 36, Band::GHZ_5},
                    KnownChannel{5885, 177, Band::GHZ_5}, KnownChannel{5935, 2, Band::GHZ_6},
                    KnownChannel{5955, 1, Band::GHZ_6}, KnownChannel{7115, 233, Band::GHZ_6},
                    KnownChannel{0, 0, std::nullopt}, KnownChannel{2411, 0, std::nullopt},
                    KnownChannel{2483, 0, std::nullopt}, KnownChannel{5900, 0, std::nullopt},
                    KnownChannel{60480, 0, std::nullopt}));

} // namespace
} // namespace nativewifi
