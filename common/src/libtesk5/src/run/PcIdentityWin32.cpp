#include "run/PcIdentity.h"

#include "model/Decimal.h"
#include "run/Smbios.h"

#include <mrl/SystemLibrary.h>
#include <mrl/Unicode.h>

#include <windows.h>

#include <cstddef>

namespace tesk5 {

namespace {

std::string computerName() {
    DWORD size = 0;
    GetComputerNameExW(ComputerNameDnsHostname, nullptr, &size); // ERROR_MORE_DATA: the size
    std::wstring name(size, L'\0');
    if (GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size) == 0) {
        return {};
    }
    name.resize(size);
    return identityText(mrl::toUtf8(name));
}

// A value of the key that describes the installed Windows; empty when it is not there.
class WindowsVersion {
public:
    std::string text(const wchar_t* name) const {
        wchar_t text[256]; // longer ones are none
        DWORD size = sizeof text;
        return get(name, RRF_RT_REG_SZ, text, size) ? identityText(mrl::toUtf8(mrl::CharView(text)))
                                                    : std::string();
    }
    std::string number(const wchar_t* name) const {
        DWORD number = 0;
        DWORD size = sizeof number;
        return get(name, RRF_RT_REG_DWORD, &number, size) ? std::to_string(number) : std::string();
    }

private:
    // ERROR_FILE_NOT_FOUND, ERROR_MORE_DATA, ERROR_UNSUPPORTED_TYPE: no such value
    bool get(const wchar_t* name, DWORD type, void* value, DWORD& size) const {
        return m_getValue != nullptr &&
               m_getValue(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
                          name, type, nullptr, value, &size) == ERROR_SUCCESS;
    }

    mrl::SystemLibrary m_library{L"advapi32.dll"};
    decltype(RegGetValueW)* m_getValue = m_library.find<decltype(RegGetValueW)>("RegGetValueW");
};

// Windows 11 calls itself "Windows 10" there, with a build from 22000 on.
std::string productName(std::string name, const std::string& build) {
    constexpr std::string_view BEFORE = "Windows 10";
    constexpr mrl::Uint32 FIRST_BUILD_OF_11 = 22000;
    const std::size_t place = name.find(BEFORE);
    if (place != std::string::npos && parseUint32(build).value_or(0) >= FIRST_BUILD_OF_11) {
        name.replace(place, BEFORE.size(), "Windows 11");
    }
    return name;
}

// The raw SMBIOS tables: RawSMBIOSData, whose last member are the structures.
std::string firmwareStructures() {
    constexpr DWORD SIGNATURE = 0x52534D42; // 'RSMB'
    constexpr std::size_t HEAD = 8;         // flags, versions, length
    constexpr UINT LARGEST = 0x100000;
    const UINT size = GetSystemFirmwareTable(SIGNATURE, 0, nullptr, 0);
    if (size <= HEAD || size > LARGEST) {
        return {};
    }
    std::string table(size, '\0');
    if (GetSystemFirmwareTable(SIGNATURE, 0, table.data(), size) != size) {
        return {};
    }
    return table.substr(HEAD);
}

} // namespace

std::optional<PcIdentity> pcIdentity() {
    const WindowsVersion version;
    PcIdentity pc;
    pc.name = computerName();
    setFromFirmware(firmwareStructures(), pc);
    pc.build = version.text(L"CurrentBuildNumber");
    pc.system = productName(version.text(L"ProductName"), pc.build);
    const std::string update = version.number(L"UBR");
    if (!pc.build.empty() && !update.empty()) {
        pc.build += "." + update;
    }
    return pc.facts().empty() ? std::nullopt : std::optional(pc);
}

} // namespace tesk5
