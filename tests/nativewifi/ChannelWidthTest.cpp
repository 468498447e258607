// Widths of channels, by what access points of each generation announce.
#include <nativewifi/ChannelWidth.h>

#include <support/ElementBytes.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

using namespace test::elements;

const Bytes RATES = element(1, {0x82, 0x84});
const Bytes HT = element(45, Bytes(26));

// Of 22 bytes; the flags are those of the second channel and of any width.
Bytes htOperation(std::uint8_t flags, std::uint8_t segment = 0) {
    Bytes body(22);
    body[0] = 36;
    body[1] = flags;
    body[2] = static_cast<std::uint8_t>(segment << 5U);
    body[3] = static_cast<std::uint8_t>(segment >> 3U);
    return element(61, body);
}

Bytes vhtOperation(std::uint8_t width, std::uint8_t first, std::uint8_t second) {
    return element(192, {width, first, second, 0, 0});
}

// \param parameters of the element, which say what precedes the width
Bytes heOperation(std::uint8_t width, const Bytes& parameters = {0, 0, 0x02},
                  std::size_t between = 0) {
    return element(255, join({{36}, parameters, Bytes(3 + between), {37, width, 0, 0, 6}}));
}

Bytes ehtOperation(std::uint8_t width, std::uint8_t parameters = 1) {
    return element(255, {106, parameters, 0x44, 0x44, 0x44, 0x44, width, 0, 0});
}

std::uint32_t width(const Parts& parts) {
    const Bytes bytes = join(parts);
    return widthOf(readElements(bytes));
}

TEST(ChannelWidths, OfNetworksWithoutAWidthAre20MHzWhereTheyAreOlder) {
    EXPECT_EQ(width({RATES}), 20U);
    EXPECT_EQ(width({}), 0U) << "nothing is known";
    EXPECT_EQ(width({RATES, HT}), 0U) << "the element that says it is missing";
}

TEST(ChannelWidths, OfHtHaveASecondChannelInUse) {
    EXPECT_EQ(width({RATES, HT, htOperation(0)}), 20U);
    EXPECT_EQ(width({RATES, HT, htOperation(5)}), 40U) << "above";
    EXPECT_EQ(width({RATES, HT, htOperation(7)}), 40U) << "below";
    EXPECT_EQ(width({RATES, HT, htOperation(1)}), 20U) << "20 MHz at the moment";
}

TEST(ChannelWidths, OfVhtHaveTwoSegmentsAbove80MHz) {
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(0, 0, 0)}), 40U) << "as HT says";
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(1, 42, 0)}), 80U);
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(1, 42, 50)}), 160U);
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(1, 106, 114)}), 160U);
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(1, 42, 155)}), 160U) << "two halves";
    EXPECT_EQ(width({HT, htOperation(5, 50), vhtOperation(1, 42, 0)}), 160U) << "written in HT";
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(2, 50, 0)}), 160U) << "older notation";
    EXPECT_EQ(width({HT, htOperation(5), vhtOperation(9, 42, 0)}), 40U) << "not known";
}

TEST(ChannelWidths, OfHeAreInItAt6GHzAlone) {
    EXPECT_EQ(width({heOperation(0)}), 20U);
    EXPECT_EQ(width({heOperation(3)}), 160U);
    EXPECT_EQ(width({heOperation(2, {0, 0xC0, 0x02}, 4)}), 80U) << "behind two more fields";
    EXPECT_EQ(width({heOperation(2, {0, 0x40, 0x02}, 3)}), 80U);
    EXPECT_EQ(width({heOperation(2, {0, 0, 0}), HT, htOperation(5)}), 40U);
}

TEST(ChannelWidths, OfEhtWinOverTheOlderElements) {
    EXPECT_EQ(width({ehtOperation(4), heOperation(3)}), 320U);
    EXPECT_EQ(width({ehtOperation(2)}), 80U);
    EXPECT_EQ(width({ehtOperation(4, 0), heOperation(3)}), 160U) << "without the field";
    EXPECT_EQ(width({ehtOperation(7), heOperation(3)}), 160U) << "not known";
}

TEST(ChannelWidths, OfElementsThatAreCutAreThoseOfTheOthers) {
    for (const Bytes& whole : {ehtOperation(4), heOperation(3), vhtOperation(1, 42, 50)}) {
        const std::size_t head = whole[0] == 255 ? 3 : 2;
        for (std::size_t size = head; size < whole.size() - 2; ++size) {
            Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            cut[1] = static_cast<std::uint8_t>(size - 2);
            const std::uint32_t found = width({cut, HT, htOperation(5)});
            EXPECT_TRUE(found == 40 || found == widthOf(readElements(whole)))
                << size << " bytes of " << int{whole[0]} << ": " << found;
        }
    }
    EXPECT_EQ(width({element(61, {})}), 0U);
    EXPECT_EQ(width({element(61, {36})}), 0U);
}

} // namespace
} // namespace nativewifi
