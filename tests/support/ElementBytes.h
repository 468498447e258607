// Makes the bytes of information elements: as access points do, and, from the same pieces, as they
// should not.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace test::elements {

using Bytes = std::vector<std::uint8_t>;
using Parts = std::vector<Bytes>;

/// The parts one behind the other.
inline Bytes join(const Parts& parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

inline Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

/// An information element; of `body` as many bytes as the length can say.
inline Bytes element(std::uint8_t id, Bytes body) {
    body.resize(body.size() > 255 ? 255 : body.size());
    const auto length = static_cast<std::uint8_t>(body.size());
    body.insert(body.begin(), {id, length});
    return body;
}

inline Bytes name(std::string_view ssid) {
    return element(0, bytesOf(ssid));
}

/// Suites of the standard: 00-0F-AC and the number.
inline Bytes suites(const std::vector<std::uint8_t>& numbers) {
    Bytes bytes;
    for (const std::uint8_t number : numbers) {
        bytes.insert(bytes.end(), {0x00, 0x0F, 0xAC, number});
    }
    return bytes;
}

struct Rsn {
    std::uint8_t group = 4;
    std::vector<std::uint8_t> ciphers = {4};
    std::vector<std::uint8_t> authentications = {2};
    std::uint8_t capabilities = 0;
};
inline Bytes rsn(const Rsn& fields = {}) {
    const auto count = [](const std::vector<std::uint8_t>& numbers) {
        return Bytes{static_cast<std::uint8_t>(numbers.size()), 0};
    };
    return element(48, join({{1, 0},
                             suites({fields.group}),
                             count(fields.ciphers),
                             suites(fields.ciphers),
                             count(fields.authentications),
                             suites(fields.authentications),
                             {fields.capabilities, 0}}));
}

/// The vendor's element of the first WPA, with one cipher and one authentication.
inline Bytes wpa(std::uint8_t cipher = 2, std::uint8_t authentication = 2) {
    return element(221, {0x00, 0x50, 0xF2,   1, 1, 0,    0x00, 0x50, 0xF2,          2, 1, 0, 0x00,
                         0x50, 0xF2, cipher, 1, 0, 0x00, 0x50, 0xF2, authentication});
}

} // namespace test::elements
