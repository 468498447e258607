#include <nativewifi/Reasons.h>

#include <algorithm>

namespace nativewifi {

namespace {

struct Reason {
    DWORD code;
    std::string_view text;
};

constexpr Reason reasons[] = {
    {0x00000, "The operation succeeds."},
    {0x10001, "The reason for failure is unknown."},
    {0x20001, "The wireless network is not compatible."},
    {0x20002, "The wireless network profile is not compatible."},
    {0x28001, "The profile specifies no automatic connection."},
    {0x28002, "The wireless network is not visible."},
    {0x28003, "The wireless network is blocked by group policy."},
    {0x28004, "The wireless network is blocked by the user."},
    {0x28005, "The basic service set type is not allowed on this wireless adapter."},
    {0x28006, "The wireless network is in the failed list."},
    {0x28007, "The wireless network is in the blocked list."},
    {0x28008, "The size of the network name list exceeds the maximum size."},
    {0x28009, "The call to connect to the network failed."},
    {0x2800A, "The call to scan for networks failed."},
    {0x2800B, "The wireless network is not available."},
    {0x2800C, "The profile was changed or deleted before the connection was established."},
    {0x2800D, "The profile key does not match the network key."},
    {0x30001, "The network's security settings are not supported by the operating system."},
    {0x30002, "The network's security settings are not supported by the wireless adapter."},
    {0x30003, "The basic service set type is not supported."},
    {0x30004, "The physical layer type is not supported."},
    {0x38001, "The user cancelled the connection."},
    {0x38002, "The association with the wireless network failed."},
    {0x38003, "The association with the wireless network timed out."},
    {0x38004, "The security exchange with the wireless network failed."},
    {0x38005, "The security exchange with the wireless network timed out."},
};

} // namespace

std::string_view reasonText(DWORD code) {
    for (const Reason& reason : reasons) {
        if (reason.code == code) {
            return reason.text;
        }
    }
    return "There is no text for this reason.";
}

void copyReason(DWORD code, DWORD bufferSize, WCHAR* buffer) {
    const std::string_view text = reasonText(code);
    const std::size_t length = std::min<std::size_t>(text.size(), bufferSize - 1);
    std::copy_n(text.begin(), length, buffer); // ASCII
    buffer[length] = 0;
}

} // namespace nativewifi
