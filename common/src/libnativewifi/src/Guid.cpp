#include <nativewifi/Guid.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace nativewifi {

namespace {

constexpr std::size_t TEXT_LENGTH = 36;
constexpr std::size_t BYTES = 16;

// Where each byte of the text's hexadecimal digits lies in the structure: its first three fields
// are numbers in the machine's (little-endian) order.
constexpr std::size_t bytePlaces[BYTES] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};

int digitValue(mrl::Char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const int lower = digit | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

constexpr bool isDashPlace(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

} // namespace

std::optional<GUID> parseGuid(mrl::CharView text) {
    if (text.size() != TEXT_LENGTH) {
        return std::nullopt;
    }
    unsigned char bytes[BYTES] = {};
    std::size_t nibble = 0;
    for (std::size_t position = 0; position < TEXT_LENGTH; ++position) {
        if (isDashPlace(position)) {
            if (text[position] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const int value = digitValue(text[position]);
        if (value < 0) {
            return std::nullopt;
        }
        unsigned char& byte = bytes[bytePlaces[nibble / 2]];
        byte = static_cast<unsigned char>(byte << 4 | value);
        ++nibble;
    }
    GUID guid = {};
    std::memcpy(&guid, bytes, sizeof guid);
    return guid;
}

mrl::String guidText(const GUID& guid) {
    char buffer[TEXT_LENGTH + 1];
    std::snprintf(buffer, sizeof buffer, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                  static_cast<unsigned>(guid.Data1), guid.Data2, guid.Data3, guid.Data4[0],
                  guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5],
                  guid.Data4[6], guid.Data4[7]);
    return mrl::String(buffer);
}

bool sameGuid(const GUID& a, const GUID& b) {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

GUID guidOfAddress(const std::array<std::uint8_t, 6>& address) {
    // Version 8: a GUID by a rule of its maker.
    GUID guid = {0x6d726c72, 0x6c78, 0x8000, {0x80, 0x00}};
    std::copy(address.begin(), address.end(), guid.Data4 + 2);
    return guid;
}

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
