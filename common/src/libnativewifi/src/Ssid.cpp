#include <nativewifi/Ssid.h>

#include <mrl/System.h>

#include <algorithm>

namespace nativewifi {

std::string_view ssidBytes(const DOT11_SSID& ssid) {
    return {reinterpret_cast<const char*>(ssid.ucSSID),
            std::min<std::size_t>(ssid.uSSIDLength, DOT11_SSID_MAX_LENGTH)};
}

mrl::String ssidText(const DOT11_SSID& ssid) {
    mrl::Char text[DOT11_SSID_MAX_LENGTH + 1] = {};
    const std::string_view bytes = ssidBytes(ssid);
    std::transform(bytes.begin(), bytes.end(), text, &mrl::System::byteToChar);
    return mrl::String(text);
}

} // namespace nativewifi
