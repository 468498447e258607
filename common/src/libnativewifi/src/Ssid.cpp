#include <nativewifi/Ssid.h>

#include <mrl/System.h>

#include <algorithm>

namespace nativewifi {

std::string_view ssidBytes(const DOT11_SSID& ssid) {
    return {reinterpret_cast<const char*>(ssid.ucSSID),
            std::min<std::size_t>(ssid.uSSIDLength, DOT11_SSID_MAX_LENGTH)};
}

DOT11_SSID toSsid(std::string_view bytes) {
    bytes = bytes.substr(0, DOT11_SSID_MAX_LENGTH);
    DOT11_SSID ssid{};
    ssid.uSSIDLength = static_cast<ULONG>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), ssid.ucSSID);
    return ssid;
}

mrl::String ssidText(const DOT11_SSID& ssid) {
    mrl::Char text[DOT11_SSID_MAX_LENGTH + 1] = {};
    const std::string_view bytes = ssidBytes(ssid);
    std::transform(bytes.begin(), bytes.end(), text, &mrl::System::byteToChar);
    return mrl::String(text);
}

} // namespace nativewifi
