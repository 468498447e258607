#include <nativewifi/DeviceSystemName.h>

#include <nativewifi/Guid.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace nativewifi {

mrl::String deviceSystemName(const GUID& guid) {
    std::string text = guidText(guid).getUTF8String().bytes();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    return mrl::String("\\DEVICE\\{" + text + "}");
}

mrl::String guidTextOf(const mrl::String& deviceSystemName) {
    const std::size_t brace = deviceSystemName.find(MRL_TEXT('{'));
    if (brace == mrl::String::NOT_FOUND || brace > UINT16_MAX ||
        deviceSystemName.length() < brace + 2) {
        return mrl::String();
    }
    return deviceSystemName.subString(brace + 1, deviceSystemName.length() - brace - 2);
}

} // namespace nativewifi
