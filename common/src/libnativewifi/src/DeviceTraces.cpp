#include <nativewifi/DeviceTraces.h>

#include <algorithm>

namespace nativewifi {

namespace {

constexpr unsigned MOST_NAME_BITS = 8;

bool isZero(ByteSpan bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

// The first bytes as an array; nothing when there are too few, or zeros alone.
template <typename Array>
std::optional<Array> arrayOf(ByteSpan bytes) {
    Array array{};
    if (bytes.size() < array.size() || isZero(bytes.first(array.size()))) {
        return std::nullopt;
    }
    std::ranges::copy(bytes.first(array.size()), array.begin());
    return array;
}

// Two bytes, the higher first.
std::size_t numberAt(ByteSpan bytes, std::size_t place) {
    return bytes[place] * std::size_t{0x100} + bytes[place + 1];
}

// The attributes of WPS have a number and a length of two bytes each.
std::optional<std::array<std::uint8_t, 16>> uuidIn(ByteSpan attributes) {
    constexpr std::size_t HEAD = 4;
    constexpr std::size_t UUID = 0x1047;
    while (attributes.size() >= HEAD) {
        const std::size_t number = numberAt(attributes, 0);
        const std::size_t length = numberAt(attributes, 2);
        if (length > attributes.size() - HEAD) {
            break;
        }
        if (number == UUID) {
            return arrayOf<std::array<std::uint8_t, 16>>(attributes.subspan(HEAD, length));
        }
        attributes = attributes.subspan(HEAD + length);
    }
    return std::nullopt;
}

std::optional<MacAddress> multiLinkIn(ByteSpan element) {
    constexpr unsigned KIND = 0x07;    // 0: what a beacon has
    constexpr std::size_t ADDRESS = 3; // behind the control field and a length
    if (element.size() < ADDRESS || (element[0] & KIND) != 0) {
        return std::nullopt;
    }
    return arrayOf<MacAddress>(element.subspan(ADDRESS));
}

// A report has lists of radios that share a channel, each behind a head of four bytes.
std::vector<MacAddress> colocatedIn(ByteSpan report) {
    constexpr std::size_t HEAD = 4;
    constexpr std::size_t ADDRESS = 1; // behind the offset of the next beacon
    constexpr unsigned COLOCATED = 0x40;
    std::vector<MacAddress> found;
    while (report.size() >= HEAD) {
        const std::size_t count = (report[0] >> 4U) + 1U;
        const std::size_t length = report[1];
        report = report.subspan(HEAD);
        // Behind the address; in long records a short form of the name is between.
        const std::size_t parameters = length >= 12 ? 11 : 7;
        for (std::size_t i = 0; i < count && length <= report.size(); ++i) {
            const ByteSpan radio = report.first(length);
            report = report.subspan(length);
            const bool hasBoth = length == 8 || length == 9 || length >= 12;
            if (!hasBoth || (radio[parameters] & COLOCATED) == 0) {
                continue;
            }
            if (const auto address = arrayOf<MacAddress>(radio.subspan(ADDRESS))) {
                found.push_back(*address);
            }
        }
    }
    return found;
}

} // namespace

DeviceTraces deviceTracesOf(const Elements& elements) {
    DeviceTraces traces{.uuid = uuidIn(elements.wps),
                        .multiLink = multiLinkIn(elements.multiLink),
                        .colocated = colocatedIn(elements.neighbours)};
    if (!elements.multipleBssid.empty() && elements.multipleBssid.front() <= MOST_NAME_BITS) {
        traces.nameBits = elements.multipleBssid.front();
    }
    return traces;
}

} // namespace nativewifi
