// What access points announce of their device and of its other radios.
#include <nativewifi/DeviceTraces.h>

#include <support/ElementBytes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nativewifi {
namespace {

using namespace test::elements;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr MacAddress OTHER = {2, 0, 0, 0, 1, 5};

DeviceTraces traces(const Bytes& bytes) {
    return deviceTracesOf(readElements(bytes));
}

Bytes wps(const Bytes& attributes) {
    return element(221, join({{0x00, 0x50, 0xF2, 4}, attributes}));
}

// A record of `length` bytes about OTHER, whose parameters are at `place`.
Bytes neighbour(std::uint8_t length, std::size_t place, std::uint8_t parameters) {
    Bytes record(length);
    std::copy(OTHER.begin(), OTHER.end(), record.begin() + 1);
    record[place] = parameters;
    return join({{0, length, 131, 37}, record});
}

TEST(DeviceTraces, OfPlainNetworksAreNone) {
    const DeviceTraces none = traces(name("Lab"));
    EXPECT_FALSE(none.uuid || none.multiLink);
    EXPECT_THAT(none.colocated, IsEmpty());
    EXPECT_EQ(none.nameBits, 0U);
}

TEST(DeviceTraces, HaveTheNumberOfWps) {
    const Bytes uuid(16, 0xAB);
    const DeviceTraces found =
        traces(wps(join({{0x10, 0x4A, 0, 1, 0x10}, {0x10, 0x47, 0, 16}, uuid})));
    ASSERT_TRUE(found.uuid);
    EXPECT_TRUE(std::ranges::equal(*found.uuid, uuid));
    EXPECT_FALSE(traces(wps(join({{0x10, 0x47, 0, 16}, Bytes(16)}))).uuid) << "zeros";
    EXPECT_FALSE(traces(wps(join({{0x10, 0x47, 0, 15}, Bytes(15, 1)}))).uuid) << "too short";
    EXPECT_FALSE(traces(wps(join({{0x10, 0x47, 0, 16}, Bytes(15, 1)}))).uuid) << "cut";
    EXPECT_FALSE(traces(wps({0x10, 0x4A, 0xFF, 0xFF, 0x10, 0x47})).uuid)
        << "a length without bytes";
}

TEST(DeviceTraces, HaveTheAddressOfAllLinks) {
    EXPECT_EQ(traces(element(255, join({{107, 0x10, 0, 7}, Bytes(OTHER.begin(), OTHER.end())})))
                  .multiLink,
              OTHER);
    EXPECT_FALSE(traces(element(255, join({{107, 0x11, 0, 7}, Bytes(6, 2)}))).multiLink)
        << "of another kind";
    EXPECT_FALSE(traces(element(255, {107, 0x10, 0, 7, 2, 2})).multiLink) << "cut";
    EXPECT_FALSE(traces(element(255, {107})).multiLink);
}

TEST(DeviceTraces, HaveTheRadiosOfTheSameDevice) {
    EXPECT_THAT(traces(element(201, neighbour(8, 7, 0x40))).colocated, ElementsAre(OTHER));
    EXPECT_THAT(traces(element(201, neighbour(13, 11, 0x42))).colocated, ElementsAre(OTHER));
    EXPECT_THAT(traces(element(201, neighbour(13, 11, 0x02))).colocated, IsEmpty()) << "elsewhere";
    EXPECT_THAT(traces(element(201, neighbour(7, 6, 0x40))).colocated, IsEmpty())
        << "without parameters";
    const Bytes two = join({neighbour(7, 6, 0), neighbour(12, 11, 0x40)});
    EXPECT_THAT(traces(element(201, two)).colocated, ElementsAre(OTHER)) << "in the second list";
    Bytes cut = neighbour(13, 11, 0x40);
    cut.resize(cut.size() - 2);
    EXPECT_THAT(traces(element(201, cut)).colocated, IsEmpty());
    EXPECT_THAT(traces(element(201, {0xF0, 0, 131, 37})).colocated, IsEmpty()) << "empty records";
}

TEST(DeviceTraces, HaveTheBitsInWhichNamesOfOneRadioDiffer) {
    EXPECT_EQ(traces(element(71, {3})).nameBits, 3U);
    EXPECT_EQ(traces(element(71, {9})).nameBits, 0U) << "more than an address has";
    EXPECT_EQ(traces(element(71, {})).nameBits, 0U);
}

} // namespace
} // namespace nativewifi
