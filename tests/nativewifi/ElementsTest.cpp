// What access points announce, and what anybody may send in their place.
#include <nativewifi/Elements.h>

#include <support/ElementBytes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace nativewifi {

static void PrintTo(const Security& security, std::ostream* out) {
    *out << (security.enabled ? "enabled " : "open ") << security.authentication << " "
         << security.cipher << (security.oneX ? " 802.1X" : "");
}

namespace {

using namespace test::elements;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::uint16_t PRIVACY = 0x0010;

Security security(const Bytes& elements, std::uint16_t capability = PRIVACY) {
    return securityOf(readElements(elements), capability);
}

Security secured(DOT11_AUTH_ALGORITHM authentication, DOT11_CIPHER_ALGORITHM cipher,
                 bool oneX = false) {
    return {.enabled = true, .authentication = authentication, .cipher = cipher, .oneX = oneX};
}

TEST(Elements, AreFoundByTheirNumbers) {
    const Bytes bytes = join({name("Lab"), element(1, {0x82, 0x84}), element(42, {0}),
                              element(50, {12}), element(45, Bytes(26)), element(191, Bytes(12)),
                              element(255, {35, 1, 2}), element(255, {108}), rsn(), wpa()});
    const Elements found = readElements(bytes);
    EXPECT_THAT(found.ssid, ElementsAreArray(bytesOf("Lab")));
    EXPECT_THAT(found.rates, ElementsAre(0x82, 0x84));
    EXPECT_THAT(found.extendedRates, ElementsAre(12));
    EXPECT_EQ(found.rsn.size(), 20U);
    EXPECT_EQ(found.wpa.size(), 18U) << "without the vendor";
    EXPECT_TRUE(found.erp && found.ht && found.vht && found.he && found.eht);
}

TEST(Elements, SayNothingOfOneAnother) {
    const Parts each = {name("Lab"),
                        element(1, {12}),
                        element(50, {12}),
                        element(45, Bytes(26)),
                        element(191, {}),
                        element(255, {35}),
                        element(255, {108}),
                        rsn(),
                        wpa(),
                        element(42, {0})};
    for (const Bytes& one : each) {
        const Elements found = readElements(one);
        const int present = int{found.ssid.data() != nullptr} + int{found.rates.data() != nullptr} +
                            int{found.extendedRates.data() != nullptr} +
                            int{found.rsn.data() != nullptr} + int{found.wpa.data() != nullptr} +
                            int{found.erp} + int{found.ht} + int{found.vht} + int{found.he} +
                            int{found.eht};
        EXPECT_EQ(present, 1) << int{one[0]};
    }
}

TEST(Elements, AreAbsentWhenTheBytesEndBeforeThem) {
    const Elements none = readElements({});
    EXPECT_EQ(none.ssid.data(), nullptr);
    EXPECT_EQ(none.rsn.data(), nullptr);
    EXPECT_FALSE(none.erp || none.ht || none.vht || none.he || none.eht);
    const Bytes whole = join({name("Lab"), rsn()});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Elements found = readElements(cut);
        EXPECT_EQ(found.ssid.size(), size < 5 ? 0U : 3U) << size;
        EXPECT_EQ(found.rsn.data(), nullptr) << size;
    }
}

TEST(Elements, AreReadBehindUnknownOnesAndFragments) {
    const Bytes full(255, 7);
    const Bytes bytes = join({element(255, full), element(242, full), element(221, full),
                              element(255, {}), element(221, {}), element(3, {6}), name("Lab")});
    const Elements found = readElements(bytes);
    EXPECT_THAT(found.ssid, ElementsAreArray(bytesOf("Lab")));
    EXPECT_EQ(found.wpa.data(), nullptr);
    EXPECT_FALSE(found.he || found.eht);
}

TEST(Elements, CountOnceTheFirstTime) {
    const Bytes bytes = join({element(0, {}), name("Later"), rsn({.authentications = {8}}), rsn()});
    EXPECT_THAT(readElements(bytes).ssid, IsEmpty());
    EXPECT_EQ(security(bytes), secured(DOT11_AUTH_ALGO_WPA3_SAE, DOT11_CIPHER_ALGO_CCMP));
}

TEST(NetworkSecurity, IsNoneOrWepWithoutAnElement) {
    EXPECT_EQ(security({}, 0), Security{});
    EXPECT_EQ(security({}, PRIVACY), secured(DOT11_AUTH_ALGO_80211_OPEN, DOT11_CIPHER_ALGO_WEP));
}

TEST(NetworkSecurity, NamesTheWayToJoin) {
    const struct {
        std::uint8_t suite;
        DOT11_AUTH_ALGORITHM authentication;
        bool oneX;
    } rows[] = {
        {1, DOT11_AUTH_ALGO_RSNA, true},       {2, DOT11_AUTH_ALGO_RSNA_PSK, false},
        {3, DOT11_AUTH_ALGO_RSNA, true},       {4, DOT11_AUTH_ALGO_RSNA_PSK, false},
        {5, DOT11_AUTH_ALGO_RSNA, true},       {6, DOT11_AUTH_ALGO_RSNA_PSK, false},
        {8, DOT11_AUTH_ALGO_WPA3_SAE, false},  {9, DOT11_AUTH_ALGO_WPA3_SAE, false},
        {11, DOT11_AUTH_ALGO_RSNA, true},      {12, DOT11_AUTH_ALGO_WPA3, true},
        {13, DOT11_AUTH_ALGO_WPA3, true},      {18, DOT11_AUTH_ALGO_OWE, false},
        {19, DOT11_AUTH_ALGO_RSNA_PSK, false}, {20, DOT11_AUTH_ALGO_RSNA_PSK, false},
        {22, DOT11_AUTH_ALGO_WPA3_ENT, true},  {23, DOT11_AUTH_ALGO_WPA3_ENT, true},
        {24, DOT11_AUTH_ALGO_WPA3_SAE, false}, {25, DOT11_AUTH_ALGO_WPA3_SAE, false},
        {7, DOT11_AUTH_ALGO_IHV_START, false}, {0, DOT11_AUTH_ALGO_IHV_START, false},
    };
    for (const auto& [suite, authentication, oneX] : rows) {
        EXPECT_EQ(security(rsn({.authentications = {suite}})),
                  secured(authentication, DOT11_CIPHER_ALGO_CCMP, oneX))
            << int{suite};
    }
}

TEST(NetworkSecurity, NamesTheCipher) {
    const struct {
        std::uint8_t suite;
        DOT11_CIPHER_ALGORITHM cipher;
    } rows[] = {
        {1, DOT11_CIPHER_ALGO_WEP40},     {2, DOT11_CIPHER_ALGO_TKIP},
        {4, DOT11_CIPHER_ALGO_CCMP},      {5, DOT11_CIPHER_ALGO_WEP104},
        {8, DOT11_CIPHER_ALGO_GCMP},      {9, DOT11_CIPHER_ALGO_GCMP_256},
        {10, DOT11_CIPHER_ALGO_CCMP_256}, {6, DOT11_CIPHER_ALGO_IHV_START},
    };
    for (const auto& [suite, cipher] : rows) {
        EXPECT_EQ(security(rsn({.ciphers = {suite}})), secured(DOT11_AUTH_ALGO_RSNA_PSK, cipher))
            << int{suite};
    }
    EXPECT_EQ(security(rsn({.group = 2, .ciphers = {0}})),
              secured(DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_TKIP))
        << "the group's";
}

TEST(NetworkSecurity, IsTheStrongestOfWhatIsOffered) {
    EXPECT_EQ(security(rsn({.ciphers = {2, 4}, .authentications = {2, 8}})),
              secured(DOT11_AUTH_ALGO_WPA3_SAE, DOT11_CIPHER_ALGO_CCMP))
        << "WPA2 and WPA3";
    EXPECT_EQ(security(rsn({.ciphers = {4, 2}, .authentications = {77, 8, 2}})),
              secured(DOT11_AUTH_ALGO_WPA3_SAE, DOT11_CIPHER_ALGO_CCMP));
    EXPECT_EQ(security(join({wpa(), rsn()})),
              secured(DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_CCMP))
        << "WPA and WPA2";
}

TEST(NetworkSecurity, IsWpa3EnterpriseWhereProtectionIsRequired) {
    constexpr std::uint8_t PROTECTION_REQUIRED = 0x40;
    constexpr std::uint8_t PROTECTION_POSSIBLE = 0x80;
    const auto with = [](std::vector<std::uint8_t> authentications, std::uint8_t capabilities) {
        return security(rsn({.authentications = std::move(authentications),
                             .capabilities = capabilities}))
            .authentication;
    };
    EXPECT_EQ(with({5}, PROTECTION_REQUIRED | PROTECTION_POSSIBLE), DOT11_AUTH_ALGO_WPA3_ENT);
    EXPECT_EQ(with({1, 5}, PROTECTION_POSSIBLE), DOT11_AUTH_ALGO_RSNA);
    EXPECT_EQ(with({1}, PROTECTION_REQUIRED), DOT11_AUTH_ALGO_RSNA);
    EXPECT_EQ(with({5}, 0xBF), DOT11_AUTH_ALGO_RSNA) << "every other capability";
}

TEST(NetworkSecurity, ReadsTheFirstWpa) {
    EXPECT_EQ(security(wpa(2, 2)), secured(DOT11_AUTH_ALGO_WPA_PSK, DOT11_CIPHER_ALGO_TKIP));
    EXPECT_EQ(security(wpa(4, 1)), secured(DOT11_AUTH_ALGO_WPA, DOT11_CIPHER_ALGO_CCMP, true));
    EXPECT_EQ(security(element(221, {0x00, 0x50, 0xF2, 2, 1, 0})),
              secured(DOT11_AUTH_ALGO_80211_OPEN, DOT11_CIPHER_ALGO_WEP))
        << "another element of that vendor";
}

TEST(NetworkSecurity, HasTheStandardsDefaultsWhereTheElementEnds) {
    const Security defaults = secured(DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP, true);
    const Bytes whole = rsn({.ciphers = {9}, .authentications = {8}});
    const Bytes body(whole.begin() + 2, whole.end());
    for (std::size_t size = 0; size <= body.size(); ++size) {
        const Bytes cut(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(size));
        Security expected = defaults;
        expected.cipher = size >= 12 ? DOT11_CIPHER_ALGO_GCMP_256 : expected.cipher;
        if (size >= 18) {
            expected.authentication = DOT11_AUTH_ALGO_WPA3_SAE;
            expected.oneX = false;
        }
        EXPECT_EQ(security(element(48, cut)), expected) << size;
    }
    EXPECT_EQ(security(element(221, {0x00, 0x50, 0xF2, 1})),
              secured(DOT11_AUTH_ALGO_WPA, DOT11_CIPHER_ALGO_TKIP, true));
}

TEST(NetworkSecurity, TakesTheSuitesThatAreThereOfAListThatSaysMore) {
    Bytes lie = rsn({.ciphers = {4}, .authentications = {8}});
    lie[2 + 6] = 0xFF; // the number of ciphers: the authentications are none of theirs
    lie[2 + 7] = 0xFF;
    EXPECT_EQ(security(lie), secured(DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP, true));
    Bytes more = rsn({.authentications = {8}});
    more[2 + 12] = 9;
    EXPECT_EQ(security(more), secured(DOT11_AUTH_ALGO_WPA3_SAE, DOT11_CIPHER_ALGO_CCMP));
    EXPECT_EQ(security(rsn({.ciphers = {}, .authentications = {}})),
              secured(DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP, true))
        << "no suite at all";
    const std::vector<std::uint8_t> many(58, 2);
    EXPECT_EQ(security(rsn({.authentications = many})),
              secured(DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_CCMP));
}

TEST(NetworkSecurity, DoesNotTakeAVendorsSuiteForTheStandards) {
    Bytes bytes = rsn({.authentications = {8}});
    bytes[2 + 14] = 0x50; // the first byte of the suite
    EXPECT_EQ(security(bytes), secured(DOT11_AUTH_ALGO_IHV_START, DOT11_CIPHER_ALGO_CCMP));
}

TEST(PhyType, IsTheNewestThatIsAnnounced) {
    const Bytes slow = element(1, {0x82, 0x84});
    const Bytes fast = element(1, {0x82, 0x84, 0x8B, 0x96});
    const Bytes ofdm = element(50, {0x30, 0x48});
    const Bytes ht = element(45, Bytes(26));
    const Bytes vht = element(191, Bytes(12));
    const Bytes he = element(255, {35});
    const Bytes eht = element(255, {108});
    const auto type = [](const Parts& parts, std::uint32_t frequency = 2412) {
        const Bytes bytes = join(parts);
        return phyTypeOf(readElements(bytes), frequency);
    };
    EXPECT_EQ(type({slow}), dot11_phy_type_dsss);
    EXPECT_EQ(type({fast}), dot11_phy_type_hrdsss);
    EXPECT_EQ(type({element(1, {23})}), dot11_phy_type_erp);
    EXPECT_EQ(type({fast, ofdm}), dot11_phy_type_erp);
    EXPECT_EQ(type({slow}, 4899), dot11_phy_type_dsss);
    EXPECT_EQ(type({slow}, 4900), dot11_phy_type_ofdm);
    EXPECT_EQ(type({slow}, 56999), dot11_phy_type_ofdm);
    EXPECT_EQ(type({slow}, 57000), dot11_phy_type_dmg);
    EXPECT_EQ(type({fast, element(42, {0})}), dot11_phy_type_erp);
    EXPECT_EQ(type({ofdm}, 5180), dot11_phy_type_ofdm);
    EXPECT_EQ(type({fast, ofdm, ht}), dot11_phy_type_ht);
    EXPECT_EQ(type({ofdm, ht, vht}, 5180), dot11_phy_type_vht);
    EXPECT_EQ(type({ofdm, he}, 5955), dot11_phy_type_he);
    EXPECT_EQ(type({eht, he, vht, ht}, 5955), dot11_phy_type_eht);
    EXPECT_EQ(type({}, 58320), dot11_phy_type_dmg);
    EXPECT_EQ(type({element(1, {0x82, 0xFF})}), dot11_phy_type_dsss) << "a feature is no rate";
}

std::vector<DOT11_AUTH_ALGORITHM> offered(const Bytes& elements,
                                          std::uint16_t capability = PRIVACY) {
    return authenticationsOf(readElements(elements), capability);
}

TEST(Authentications, AreAllThatAreOffered) {
    EXPECT_THAT(offered({}, 0), ElementsAre(DOT11_AUTH_ALGO_80211_OPEN));
    EXPECT_THAT(offered({}), ElementsAre(DOT11_AUTH_ALGO_80211_SHARED_KEY)) << "WEP";
    EXPECT_THAT(offered(rsn()), ElementsAre(DOT11_AUTH_ALGO_RSNA_PSK));
    EXPECT_THAT(offered(rsn({.authentications = {8, 2, 6}})),
                ElementsAre(DOT11_AUTH_ALGO_RSNA_PSK, DOT11_AUTH_ALGO_WPA3_SAE));
    EXPECT_THAT(offered(join({rsn(), wpa()})),
                ElementsAre(DOT11_AUTH_ALGO_WPA_PSK, DOT11_AUTH_ALGO_RSNA_PSK));
    EXPECT_THAT(offered(rsn({.authentications = {18}})), ElementsAre(DOT11_AUTH_ALGO_OWE));
    EXPECT_THAT(offered(rsn({.authentications = {1, 5}})), ElementsAre(DOT11_AUTH_ALGO_RSNA));
    EXPECT_THAT(offered(rsn({.authentications = {5}, .capabilities = 0xC0})),
                ElementsAre(DOT11_AUTH_ALGO_WPA3_ENT));
    EXPECT_THAT(offered(rsn({.authentications = {200}})), ElementsAre(DOT11_AUTH_ALGO_IHV_START));
}

TEST(Authentications, OfCutElementsAreTheDefaultsOfTheStandard) {
    EXPECT_THAT(offered(element(48, {})), ElementsAre(DOT11_AUTH_ALGO_RSNA));
    EXPECT_THAT(offered(element(221, {0x00, 0x50, 0xF2, 1})), ElementsAre(DOT11_AUTH_ALGO_WPA));
    EXPECT_THAT(
        offered(element(48, {1, 0, 0, 0x0F, 0xAC, 4, 1, 0, 0, 0x0F, 0xAC, 4, 9, 0, 0, 0x0F})),
        ElementsAre(DOT11_AUTH_ALGO_RSNA));
}

TEST(Rates, AreThoseOfBothElementsInTheUnitsOfTheInterface) {
    const Bytes bytes = join({element(1, {0x82, 0x0B}), element(50, {0x6C})});
    const WLAN_RATE_SET set = ratesOf(readElements(bytes));
    ASSERT_EQ(set.uRateSetLength, 3 * sizeof(USHORT));
    EXPECT_EQ(set.usRateSet[0], 0x8002) << "basic, 1 Mbit/s";
    EXPECT_EQ(set.usRateSet[1], 0x000B);
    EXPECT_EQ(set.usRateSet[2], 0x006C) << "54 Mbit/s";
}

TEST(Rates, LeaveOutFeaturesAndWhatDoesNotFit) {
    const Bytes features = element(1, {0x8C, 0xFF, 0xFE, 0xFB, 0xFA, 0xF8});
    EXPECT_EQ(ratesOf(readElements(features)).uRateSetLength, sizeof(USHORT));
    const Bytes many = join({element(1, Bytes(255, 12)), element(50, Bytes(255, 12))});
    const WLAN_RATE_SET set = ratesOf(readElements(many));
    EXPECT_EQ(set.uRateSetLength, DOT11_RATE_SET_MAX_LENGTH * sizeof(USHORT));
    EXPECT_EQ(set.usRateSet[DOT11_RATE_SET_MAX_LENGTH - 1], 12);
    EXPECT_EQ(ratesOf({}).uRateSetLength, 0U);
}

} // namespace
} // namespace nativewifi
