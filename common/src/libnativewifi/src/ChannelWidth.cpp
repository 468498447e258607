#include <nativewifi/ChannelWidth.h>

#include <array>
#include <cstdlib>
#include <optional>

namespace nativewifi {

namespace {

using Width = std::optional<std::uint32_t>;

constexpr std::uint32_t MHZ_20 = 20;
constexpr std::uint32_t MHZ_40 = 40;
constexpr std::uint32_t MHZ_80 = 80;
constexpr std::uint32_t MHZ_160 = 160;
// By the number in the control field of newer elements.
constexpr std::array<std::uint32_t, 5> widths = {MHZ_20, MHZ_40, MHZ_80, MHZ_160, 320};

// The byte at `place`; nothing behind the end.
std::optional<unsigned> byteAt(ByteSpan bytes, std::size_t place) {
    return place < bytes.size() ? std::optional<unsigned>(bytes[place]) : std::nullopt;
}

Width widthNumbered(std::optional<unsigned> control, unsigned mask) {
    const std::size_t number = control.value_or(mask) & mask;
    return control && number < widths.size() ? Width(widths.at(number)) : std::nullopt;
}

Width ofEht(ByteSpan operation) {
    constexpr unsigned HAS_INFORMATION = 0x01;
    constexpr unsigned WIDTH = 0x07;
    constexpr std::size_t CONTROL = 5; // behind the parameters and the basic rates
    return (byteAt(operation, 0).value_or(0) & HAS_INFORMATION) != 0
               ? widthNumbered(byteAt(operation, CONTROL), WIDTH)
               : std::nullopt;
}

// The element has a width for the 6 GHz band alone.
Width ofHe(ByteSpan operation) {
    constexpr unsigned HAS_VHT = 0x40;      // in the second byte of the parameters
    constexpr unsigned HAS_COHOSTED = 0x80; // likewise
    constexpr unsigned HAS_6_GHZ = 0x02;    // in the third
    constexpr unsigned WIDTH = 0x03;
    if ((byteAt(operation, 2).value_or(0) & HAS_6_GHZ) == 0) {
        return std::nullopt;
    }
    std::size_t place = 6; // behind parameters, colour and basic rates
    place += (operation[1] & HAS_VHT) != 0 ? 3 : 0;
    place += (operation[1] & HAS_COHOSTED) != 0 ? 1 : 0;
    return widthNumbered(byteAt(operation, place + 1), WIDTH); // behind the primary channel
}

// \param htSegment the second segment, where a network of fewer streams writes it
Width ofVht(ByteSpan operation, unsigned htSegment) {
    if (operation.size() < 3) {
        return std::nullopt;
    }
    const unsigned second = operation[2] != 0 ? operation[2] : htSegment;
    switch (operation[0]) {
    case 0: // as HT says
        return std::nullopt;
    case 1:
        // Numbers of channels: 8 apart lie the middles of 80 and 160 MHz, further apart two halves.
        return second != 0 && std::abs(static_cast<int>(second) - operation[1]) >= 8 ? MHZ_160
                                                                                     : MHZ_80;
    case 2: // the older notation of 160 MHz, and of two halves
    case 3:
        return MHZ_160;
    default:
        return std::nullopt;
    }
}

Width ofHt(ByteSpan operation) {
    constexpr unsigned SECONDARY = 0x03;
    constexpr unsigned ANY_WIDTH = 0x04;
    const std::optional<unsigned> flags = byteAt(operation, 1);
    if (!flags) {
        return std::nullopt;
    }
    return (*flags & SECONDARY) != 0 && (*flags & ANY_WIDTH) != 0 ? MHZ_40 : MHZ_20;
}

// The second segment that stands in the HT element.
unsigned htSegmentOf(ByteSpan operation) {
    const unsigned bits = byteAt(operation, 2).value_or(0) | byteAt(operation, 3).value_or(0) << 8U;
    return bits >> 5U & 0xFFU;
}

} // namespace

std::uint32_t widthOf(const Elements& elements) {
    const Width found[] = {ofEht(elements.ehtOperation), ofHe(elements.heOperation),
                           ofVht(elements.vhtOperation, htSegmentOf(elements.htOperation)),
                           ofHt(elements.htOperation)};
    for (const Width& width : found) {
        if (width) {
            return *width;
        }
    }
    const bool older = elements.rates.data() != nullptr && !elements.ht;
    return older ? MHZ_20 : 0;
}

} // namespace nativewifi
