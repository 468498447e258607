#include "Elements.h"

#include <nativewifi/Ssid.h>

#include <optional>

namespace radiosim {

namespace {

using Octets = std::vector<std::uint8_t>;

void append(Octets& all, const Octets& more) {
    all.insert(all.end(), more.begin(), more.end());
}

Octets element(std::uint8_t id, const Octets& body) {
    Octets bytes = {id, static_cast<std::uint8_t>(body.size())};
    append(bytes, body);
    return bytes;
}

// The number of a cipher's suite; nothing without one.
std::optional<std::uint8_t> suiteOfCipher(std::int32_t cipher) {
    switch (cipher) {
    case DOT11_CIPHER_ALGO_WEP40:
        return 1;
    case DOT11_CIPHER_ALGO_TKIP:
        return 2;
    case DOT11_CIPHER_ALGO_CCMP:
        return 4;
    case DOT11_CIPHER_ALGO_GCMP:
        return 8;
    case DOT11_CIPHER_ALGO_WEP104:
        return 5;
    default:
        return std::nullopt;
    }
}

// One suite of the vendor, with its count of one.
Octets list(const Octets& vendor, std::uint8_t suite) {
    Octets bytes = {1, 0};
    append(bytes, vendor);
    bytes.push_back(suite);
    return bytes;
}

Octets securityElement(const AccessPoint& accessPoint) {
    struct Row {
        std::int32_t auth;
        bool wpa;
        std::uint8_t suite;
    };
    constexpr Row rows[] = {
        {DOT11_AUTH_ALGO_WPA, true, 1},        {DOT11_AUTH_ALGO_WPA_PSK, true, 2},
        {DOT11_AUTH_ALGO_RSNA, false, 1},      {DOT11_AUTH_ALGO_RSNA_PSK, false, 2},
        {DOT11_AUTH_ALGO_WPA3, false, 12},     {DOT11_AUTH_ALGO_WPA3_SAE, false, 8},
        {DOT11_AUTH_ALGO_WPA3_ENT, false, 23}, {DOT11_AUTH_ALGO_OWE, false, 18}};
    const std::optional<std::uint8_t> cipher = suiteOfCipher(accessPoint.cipher);
    for (const Row& row : rows) {
        if (!cipher || row.auth != accessPoint.auth) {
            continue;
        }
        const Octets vendor = row.wpa ? Octets{0x00, 0x50, 0xF2} : Octets{0x00, 0x0F, 0xAC};
        Octets body = row.wpa ? Octets{0x00, 0x50, 0xF2, 1} : Octets();
        append(body, {1, 0});
        append(body, vendor);
        body.push_back(*cipher);
        append(body, list(vendor, *cipher));
        append(body, list(vendor, row.suite));
        if (!row.wpa) {
            append(body, {0, 0});
        }
        return element(row.wpa ? 221 : 48, body);
    }
    return {};
}

// HT says 40 MHz, VHT 80 and 160, and EHT 320.
Octets widthElements(const Bss& bss) {
    constexpr std::size_t HT_OPERATION_SIZE = 22;
    const auto channel = static_cast<std::uint8_t>(bss.channel);
    Octets ht(HT_OPERATION_SIZE);
    ht[0] = channel;
    ht[1] = bss.width >= 40 ? 0x05 : 0; // the second channel is above
    Octets all = element(61, ht);
    if (bss.width >= 80) {
        const auto first = static_cast<std::uint8_t>(channel + 6);
        const auto second = static_cast<std::uint8_t>(bss.width >= 160 ? first + 8 : 0);
        append(all, element(192, {1, first, second, 0, 0}));
    }
    if (bss.width == 320) {
        append(all, element(255, {106, 1, 0x44, 0x44, 0x44, 0x44, 4, 0, 0}));
    }
    return all;
}

} // namespace

Octets elementsOf(const AccessPoint& accessPoint, const Bss& bss, const DOT11_SSID& shown) {
    const std::string_view name = nativewifi::ssidBytes(shown);
    Octets all = element(0, Octets(name.begin(), name.end()));
    if (bss.elements) {
        append(all, *bss.elements);
        return all;
    }
    append(all, element(1, {0x8C, 0x98, 0xB0})); // 6, 12 and 24 Mbit/s
    append(all, securityElement(accessPoint));
    append(all, widthElements(bss));
    return all;
}

} // namespace radiosim
