#include <readings/Target.h>

#include <algorithm>
#include <charconv>

namespace readings {

namespace {

constexpr std::size_t PAIR = 2;

} // namespace

std::optional<Bssid> parseBssid(std::string_view text) {
    Bssid bssid{};
    const std::size_t stride = text.size() == PAIR * bssid.size() ? PAIR : PAIR + 1;
    if (stride != PAIR && text.size() != stride * bssid.size() - 1) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < bssid.size(); ++i) {
        const char* const begin = text.data() + i * stride;
        const char* const end = begin + PAIR;
        const auto [stopped, error] = std::from_chars(begin, end, bssid[i], 16);
        if (error != std::errc() || stopped != end) {
            return std::nullopt;
        }
        const bool separated = stride != PAIR && i + 1 < bssid.size();
        if (separated && ((*end != ':' && *end != '-') || *end != text[PAIR])) {
            return std::nullopt;
        }
    }
    return bssid;
}

std::string bssidText(const Bssid& bssid) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string text;
    for (const UCHAR byte : bssid) {
        text += text.empty() ? "" : ":";
        text += DIGITS[byte >> 4U];
        text += DIGITS[byte & 0x0FU];
    }
    return text;
}

Bssid bssidOf(const DOT11_MAC_ADDRESS& address) {
    Bssid bssid{};
    std::copy(std::begin(address), std::end(address), bssid.begin());
    return bssid;
}

bool Target::matches(std::string_view name, const Bssid& address, std::uint32_t mhz) const {
    return (!ssid || *ssid == name) && (!bssid || *bssid == address) &&
           (!band || nativewifi::bandOf(mhz) == band);
}

} // namespace readings
