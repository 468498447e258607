// Hostile names: every byte, every length, arrays without a terminator. The module makes harmless
// text of them, one line each.
#include "DeviceTest.h"

#include <support/SafeText.h>

#include <cstring>
#include <functional>
#include <numeric>

namespace {

using testing::Contains;
using testing::IsEmpty;

// Lengths of names: every possible one, and fields that lie.
std::vector<ULONG> ssidLengths() {
    std::vector<ULONG> lengths(DOT11_SSID_MAX_LENGTH + 8);
    std::iota(lengths.begin(), lengths.end(), 0U);
    lengths.insert(lengths.end(), {255, 256, 0x80000000, 0xFFFFFFFF});
    return lengths;
}

// Characters of the wide arrays: Latin-1, and those that deceive readers or are none.
std::vector<unsigned> hostileUnits() {
    std::vector<unsigned> units(0xFF);
    std::iota(units.begin(), units.end(), 1U);
    units.insert(units.end(),
                 {0x061C, 0x200B, 0x200F, 0x2028, 0x2029, 0x202A, 0x202E, 0x2066, 0x2069, 0xD800,
                  0xDBFF, 0xDC00, 0xDFFF, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF});
    return units;
}

// What the arrays are filled with.
mrl::Char g_hostileUnit = 0;

DWORD WINAPI enumWithHostileDescriptions(HANDLE handle, PVOID reserved,
                                         WLAN_INTERFACE_INFO_LIST** list) {
    const DWORD result = test::PatchedApi::service().WlanEnumInterfaces(handle, reserved, list);
    for (DWORD i = 0; result == ERROR_SUCCESS && i < (*list)->dwNumberOfItems; ++i) {
        WCHAR(&array)[WLAN_MAX_NAME_LENGTH] = (*list)->InterfaceInfo[i].strInterfaceDescription;
        std::fill(std::begin(array), std::end(array), g_hostileUnit);
    }
    return result;
}

DWORD WINAPI hostileReason(DWORD /*code*/, DWORD size, WCHAR* buffer, PVOID /*reserved*/) {
    std::fill(buffer, buffer + size, g_hostileUnit);
    return ERROR_SUCCESS;
}

class HostileNames : public test::DeviceTest {
protected:
    /// Everything that was logged since the last look must be harmless.
    void expectHarmlessLines(const std::string& of) {
        for (const std::string& line : lines()) {
            EXPECT_EQ(test::findUnsafe(line), "") << of << ": " << line;
        }
        log().clear();
    }
    /// Has an array filled with each hostile unit; with 'x' the log gets `line`.
    void expectHarmless(const std::function<void(mrl::Char unit)>& logArray,
                        const std::string& line) {
        for (const unsigned unit : hostileUnits()) {
            logArray(static_cast<mrl::Char>(unit));
            if (unit == 'x') {
                EXPECT_THAT(lines(), Contains(line));
            }
            expectHarmlessLines("unit " + std::to_string(unit));
        }
    }
};

TEST_F(HostileNames, OfEveryByteAndEveryLengthAreCutToTheirArrayAndLoggedHarmlessly) {
    WirelessDevice& device = opened();
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        for (const ULONG length : ssidLengths()) {
            WLAN_AVAILABLE_NETWORK network{};
            std::memset(network.dot11Ssid.ucSSID, static_cast<int>(byte), DOT11_SSID_MAX_LENGTH);
            network.dot11Ssid.uSSIDLength = length;
            network.wlanSignalQuality = 50;
            device.m_visibleNetworks.clear();
            device.printNetworkInfo(&network);
            const std::string of =
                "byte " + std::to_string(byte) + ", length " + std::to_string(length);
            if (byte == 0 || length == 0) {
                ASSERT_EQ(device.m_visibleNetworks.size(), 0U) << of;
                ASSERT_THAT(lines(), IsEmpty()) << of;
                continue;
            }
            ASSERT_EQ(device.m_visibleNetworks.size(), 1U) << of;
            const mrl::CharString name(std::min<ULONG>(length, DOT11_SSID_MAX_LENGTH),
                                       static_cast<mrl::Char>(byte));
            ASSERT_EQ(device.m_visibleNetworks[0].getSsid(), mrl::String(mrl::CharView(name)))
                << of;
            expectHarmlessLines(of);
        }
    }
}

TEST_F(HostileNames, OfProfilesNeedNoTerminator) {
    WirelessDevice& device = opened();
    expectHarmless(
        [&device](mrl::Char unit) {
            WLAN_AVAILABLE_NETWORK network{};
            std::fill(std::begin(network.strProfileName), std::end(network.strProfileName), unit);
            network.dwFlags = WLAN_AVAILABLE_NETWORK_HAS_PROFILE;
            network.dot11Ssid = {1, {'x'}};
            network.wlanSignalQuality = 50;
            device.printNetworkInfo(&network);
        },
        "1293 Has a matching profile: " + std::string(256, 'x') + ".");
}

TEST_F(HostileNames, OfInterfacesNeedNoTerminator) {
    WirelessDevice& device = opened();
    test::PatchedApi patched;
    patched->WlanEnumInterfaces = &enumWithHostileDescriptions;
    for (const unsigned unit : hostileUnits()) {
        g_hostileUnit = static_cast<mrl::Char>(unit);
        const mrl::CharString whole(WLAN_MAX_NAME_LENGTH, g_hostileUnit);
        EXPECT_EQ(device.getInterfaceDescription(), mrl::String(mrl::CharView(whole))) << unit;
        expectHarmlessLines("unit " + std::to_string(unit));
    }
}

TEST_F(HostileNames, OfReasonsNeedNoTerminator) {
    WirelessDevice& device = opened();
    test::PatchedApi patched;
    patched->WlanReasonCodeToString = &hostileReason;
    expectHarmless(
        [&](mrl::Char unit) {
            g_hostileUnit = unit;
            device.printReason(1);
            EXPECT_EQ(lines().size(), 1U) << static_cast<unsigned>(unit);
        },
        "1377  The reason is \"" + std::string(256, 'x') + "\".");
}

} // namespace
