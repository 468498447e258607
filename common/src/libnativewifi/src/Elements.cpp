#include <nativewifi/Elements.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace nativewifi {

namespace {

// The numbers of elements, and of those behind ID_EXTENSION.
enum : std::uint8_t {
    ID_SSID = 0,
    ID_RATES = 1,
    ID_ERP = 42,
    ID_HT_CAPABILITIES = 45,
    ID_RSN = 48,
    ID_EXTENDED_RATES = 50,
    ID_HT_OPERATION = 61,
    ID_MULTIPLE_BSSID = 71,
    ID_VHT_CAPABILITIES = 191,
    ID_VHT_OPERATION = 192,
    ID_NEIGHBOURS = 201,
    ID_VENDOR = 221,
    ID_EXTENSION = 255,
    EXTENSION_HE_CAPABILITIES = 35,
    EXTENSION_HE_OPERATION = 36,
    EXTENSION_EHT_OPERATION = 106,
    EXTENSION_MULTI_LINK = 107,
    EXTENSION_EHT_CAPABILITIES = 108,
};

constexpr std::array<std::uint8_t, 4> WPA_VENDOR = {0x00, 0x50, 0xF2, 1};
constexpr std::array<std::uint8_t, 4> WPS_VENDOR = {0x00, 0x50, 0xF2, 4};

constexpr std::uint16_t CAPABILITY_PRIVACY = 0x0010;
constexpr std::uint16_t RSN_PROTECTION_REQUIRED = 0x0040; // of management frames

// Rates have 7 bits; the highest is set for a basic one.
constexpr std::uint8_t BASIC_RATE = 0x80;
constexpr USHORT BASIC_RATE_OF_SET = 0x8000;
// From here on a basic rate is the number of a feature.
constexpr std::uint8_t FIRST_FEATURE = 0xF8;
constexpr unsigned FASTEST_DSSS = 4;    // 2 Mbit/s
constexpr unsigned FASTEST_HRDSSS = 22; // 11 Mbit/s

constexpr std::uint32_t FIRST_5_GHZ = 4900;
constexpr std::uint32_t FIRST_60_GHZ = 57000;

bool startsWith(ByteSpan bytes, std::span<const std::uint8_t> start) {
    return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

// The first of several.
void keep(ByteSpan& target, ByteSpan body) {
    if (target.data() == nullptr) {
        target = body;
    }
}

void readExtension(Elements& elements, ByteSpan body) {
    if (body.empty()) {
        return;
    }
    const ByteSpan rest = body.subspan(1);
    switch (body.front()) {
    case EXTENSION_HE_CAPABILITIES:
        elements.he = true;
        break;
    case EXTENSION_HE_OPERATION:
        keep(elements.heOperation, rest);
        break;
    case EXTENSION_EHT_OPERATION:
        keep(elements.ehtOperation, rest);
        break;
    case EXTENSION_MULTI_LINK:
        keep(elements.multiLink, rest);
        break;
    case EXTENSION_EHT_CAPABILITIES:
        elements.eht = true;
        break;
    default:
        break;
    }
}

void readElement(Elements& elements, std::uint8_t id, ByteSpan body) {
    switch (id) {
    case ID_SSID:
        keep(elements.ssid, body);
        break;
    case ID_RATES:
        keep(elements.rates, body);
        break;
    case ID_EXTENDED_RATES:
        keep(elements.extendedRates, body);
        break;
    case ID_RSN:
        keep(elements.rsn, body);
        break;
    case ID_VENDOR:
        if (startsWith(body, WPA_VENDOR)) {
            keep(elements.wpa, body.subspan(WPA_VENDOR.size()));
        } else if (startsWith(body, WPS_VENDOR)) {
            keep(elements.wps, body.subspan(WPS_VENDOR.size()));
        }
        break;
    case ID_HT_OPERATION:
        keep(elements.htOperation, body);
        break;
    case ID_VHT_OPERATION:
        keep(elements.vhtOperation, body);
        break;
    case ID_MULTIPLE_BSSID:
        keep(elements.multipleBssid, body);
        break;
    case ID_NEIGHBOURS:
        keep(elements.neighbours, body);
        break;
    case ID_ERP:
        elements.erp = true;
        break;
    case ID_HT_CAPABILITIES:
        elements.ht = true;
        break;
    case ID_VHT_CAPABILITIES:
        elements.vht = true;
        break;
    case ID_EXTENSION:
        readExtension(elements, body);
        break;
    default:
        break;
    }
}

// Reads the fields of an RSN or WPA element one after another; behind the end there is nothing.
class FieldReader {
public:
    explicit FieldReader(ByteSpan bytes) : m_rest(bytes) {}

    std::uint16_t number() {
        const ByteSpan bytes = next(2, 1);
        return bytes.empty() ? 0 : static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8U);
    }
    /// `count` suites, or as many as there are.
    ByteSpan suites(std::size_t count) { return next(SUITE_SIZE, count); }

    static constexpr std::size_t SUITE_SIZE = 4;

private:
    ByteSpan next(std::size_t size, std::size_t count) {
        const std::size_t whole = std::min(count, m_rest.size() / size);
        const ByteSpan found = m_rest.first(whole * size);
        // A field that is cut is the last one.
        m_rest = whole == count ? m_rest.subspan(found.size()) : ByteSpan();
        return found;
    }

    ByteSpan m_rest;
};

template <typename Value>
struct Suite {
    std::uint8_t number;
    Value value;
};

// Both from the weakest to the strongest.
constexpr Suite<DOT11_CIPHER_ALGORITHM> ciphers[] = {
    {1, DOT11_CIPHER_ALGO_WEP40},    {5, DOT11_CIPHER_ALGO_WEP104},
    {2, DOT11_CIPHER_ALGO_TKIP},     {4, DOT11_CIPHER_ALGO_CCMP},
    {8, DOT11_CIPHER_ALGO_GCMP},     {10, DOT11_CIPHER_ALGO_CCMP_256},
    {9, DOT11_CIPHER_ALGO_GCMP_256},
};
constexpr std::uint8_t CIPHER_OF_GROUP = 0;

constexpr std::uint8_t AUTHENTICATION_8021X_SHA256 = 5;
constexpr Suite<DOT11_AUTH_ALGORITHM> rsnAuthentications[] = {
    {2, DOT11_AUTH_ALGO_RSNA_PSK},  {4, DOT11_AUTH_ALGO_RSNA_PSK}, // fast transition
    {6, DOT11_AUTH_ALGO_RSNA_PSK},                                 // SHA-256
    {19, DOT11_AUTH_ALGO_RSNA_PSK},                                // fast transition, SHA-384
    {20, DOT11_AUTH_ALGO_RSNA_PSK},                                // SHA-384
    {1, DOT11_AUTH_ALGO_RSNA},      {3, DOT11_AUTH_ALGO_RSNA},     // fast transition
    {11, DOT11_AUTH_ALGO_RSNA},                                    // Suite B, 128 bits
    {14, DOT11_AUTH_ALGO_RSNA},                                    // fast initial link setup
    {15, DOT11_AUTH_ALGO_RSNA},     {16, DOT11_AUTH_ALGO_RSNA},
    {17, DOT11_AUTH_ALGO_RSNA},     {AUTHENTICATION_8021X_SHA256, DOT11_AUTH_ALGO_RSNA},
    {18, DOT11_AUTH_ALGO_OWE},      {8, DOT11_AUTH_ALGO_WPA3_SAE},
    {9, DOT11_AUTH_ALGO_WPA3_SAE},                                  // fast transition
    {24, DOT11_AUTH_ALGO_WPA3_SAE},                                 // a hash by the key's group
    {25, DOT11_AUTH_ALGO_WPA3_SAE}, {22, DOT11_AUTH_ALGO_WPA3_ENT}, // fast transition, SHA-384
    {23, DOT11_AUTH_ALGO_WPA3_ENT},                                 // SHA-384
    {12, DOT11_AUTH_ALGO_WPA3},                                     // Suite B, 192 bits
    {13, DOT11_AUTH_ALGO_WPA3},                                     // fast transition
};
constexpr Suite<DOT11_AUTH_ALGORITHM> wpaAuthentications[] = {
    {2, DOT11_AUTH_ALGO_WPA_PSK},
    {1, DOT11_AUTH_ALGO_WPA},
};

constexpr DOT11_AUTH_ALGORITHM serverAuthentications[] = {
    DOT11_AUTH_ALGO_WPA, DOT11_AUTH_ALGO_RSNA, DOT11_AUTH_ALGO_WPA3, DOT11_AUTH_ALGO_WPA3_ENT};

// What differs between the two elements.
struct Standard {
    std::array<std::uint8_t, 3> vendor; // of its suites
    std::span<const Suite<DOT11_AUTH_ALGORITHM>> authentications;
    Security defaults;
};
const Standard RSN = {{0x00, 0x0F, 0xAC},
                      rsnAuthentications,
                      {true, DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP, true}};
const Standard WPA = {{0x00, 0x50, 0xF2},
                      wpaAuthentications,
                      {true, DOT11_AUTH_ALGO_WPA, DOT11_CIPHER_ALGO_TKIP, true}};

// The numbers of the standard's own suites.
template <typename Use>
void forEachNumber(ByteSpan suites, const Standard& standard, Use use) {
    for (; !suites.empty(); suites = suites.subspan(FieldReader::SUITE_SIZE)) {
        if (startsWith(suites, standard.vendor)) {
            use(suites[standard.vendor.size()]);
        }
    }
}

bool offers(ByteSpan suites, const Standard& standard, std::uint8_t number) {
    bool found = false;
    forEachNumber(suites, standard,
                  [&found, number](std::uint8_t offered) { found |= offered == number; });
    return found;
}

// The value of the last row that is offered; `unknown` when there is none, `none` without a suite.
template <typename Value>
Value strongest(std::span<const Suite<Value>> table, ByteSpan suites, const Standard& standard,
                Value none, Value unknown) {
    std::size_t rank = 0; // of the row, counted from 1
    forEachNumber(suites, standard, [table, &rank](std::uint8_t number) {
        for (std::size_t row = rank; row < table.size(); ++row) {
            rank = table[row].number == number ? row + 1 : rank;
        }
    });
    if (rank == 0) {
        return suites.empty() ? none : unknown;
    }
    return table[rank - 1].value;
}

// The fields of an RSN or WPA element.
struct SecurityFields {
    ByteSpan group;
    ByteSpan pairwise;
    ByteSpan authentications;
    std::uint16_t capabilities = 0;

    explicit SecurityFields(ByteSpan element) {
        FieldReader fields(element);
        fields.number(); // the version: a later one has more fields behind these
        group = fields.suites(1);
        pairwise = fields.suites(fields.number());
        authentications = fields.suites(fields.number());
        capabilities = fields.number();
    }
};

// An authentication server by the name of WPA3 needs protected management frames and a suite of
// WPA2 with a newer hash.
DOT11_AUTH_ALGORITHM withProtection(DOT11_AUTH_ALGORITHM authentication,
                                    const SecurityFields& fields, const Standard& standard) {
    const bool newer = authentication == DOT11_AUTH_ALGO_RSNA &&
                       (fields.capabilities & RSN_PROTECTION_REQUIRED) != 0 &&
                       offers(fields.authentications, standard, AUTHENTICATION_8021X_SHA256);
    return newer ? DOT11_AUTH_ALGO_WPA3_ENT : authentication;
}

Security readSecurity(ByteSpan element, const Standard& standard) {
    const auto cipherOf = [&standard](ByteSpan suites, DOT11_CIPHER_ALGORITHM none) {
        return strongest<DOT11_CIPHER_ALGORITHM>(ciphers, suites, standard, none,
                                                 DOT11_CIPHER_ALGO_IHV_START);
    };
    const SecurityFields fields(element);
    const DOT11_CIPHER_ALGORITHM group = cipherOf(fields.group, standard.defaults.cipher);

    Security security = standard.defaults;
    security.cipher = cipherOf(fields.pairwise, standard.defaults.cipher);
    if (security.cipher == DOT11_CIPHER_ALGO_IHV_START &&
        offers(fields.pairwise, standard, CIPHER_OF_GROUP)) {
        security.cipher = group;
    }
    security.authentication =
        withProtection(strongest(standard.authentications, fields.authentications, standard,
                                 standard.defaults.authentication, DOT11_AUTH_ALGO_IHV_START),
                       fields, standard);
    security.oneX = std::ranges::find(serverAuthentications, security.authentication) !=
                    std::end(serverAuthentications);
    return security;
}

// Adds each authentication of the element that is not in `found` yet, in the order of the table.
void addAuthentications(ByteSpan element, const Standard& standard,
                        std::vector<DOT11_AUTH_ALGORITHM>& found) {
    const SecurityFields fields(element);
    const auto add = [&found](DOT11_AUTH_ALGORITHM authentication) {
        if (std::ranges::find(found, authentication) == found.end()) {
            found.push_back(authentication);
        }
    };
    const std::size_t before = found.size();
    for (const Suite<DOT11_AUTH_ALGORITHM>& suite : standard.authentications) {
        if (offers(fields.authentications, standard, suite.number)) {
            add(withProtection(suite.value, fields, standard));
        }
    }
    if (found.size() == before) {
        add(fields.authentications.empty() ? standard.defaults.authentication
                                           : DOT11_AUTH_ALGO_IHV_START);
    }
}

// The numbers of both elements, without features.
template <typename Use>
void forEachRate(const Elements& elements, Use use) {
    for (const ByteSpan rates : {elements.rates, elements.extendedRates}) {
        for (const std::uint8_t rate : rates) {
            if (rate < FIRST_FEATURE) {
                use(rate);
            }
        }
    }
}

} // namespace

Elements readElements(ByteSpan bytes) {
    Elements elements;
    while (bytes.size() >= 2) {
        const std::size_t length = bytes[1];
        if (length > bytes.size() - 2) {
            break;
        }
        readElement(elements, bytes[0], bytes.subspan(2, length));
        bytes = bytes.subspan(2 + length);
    }
    return elements;
}

Security securityOf(const Elements& elements, std::uint16_t capability) {
    if (elements.rsn.data() != nullptr) {
        return readSecurity(elements.rsn, RSN);
    }
    if (elements.wpa.data() != nullptr) {
        return readSecurity(elements.wpa, WPA);
    }
    Security security;
    if ((capability & CAPABILITY_PRIVACY) != 0) {
        security.enabled = true;
        security.cipher = DOT11_CIPHER_ALGO_WEP;
    }
    return security;
}

std::vector<DOT11_AUTH_ALGORITHM> authenticationsOf(const Elements& elements,
                                                    std::uint16_t capability) {
    std::vector<DOT11_AUTH_ALGORITHM> found;
    if (elements.wpa.data() != nullptr) {
        addAuthentications(elements.wpa, WPA, found);
    }
    if (elements.rsn.data() != nullptr) {
        addAuthentications(elements.rsn, RSN, found);
    }
    if (found.empty()) {
        found.push_back((capability & CAPABILITY_PRIVACY) != 0 ? DOT11_AUTH_ALGO_80211_SHARED_KEY
                                                               : DOT11_AUTH_ALGO_80211_OPEN);
    }
    return found;
}

DOT11_PHY_TYPE phyTypeOf(const Elements& elements, std::uint32_t frequencyMhz) {
    if (elements.eht) {
        return dot11_phy_type_eht;
    }
    if (elements.he) {
        return dot11_phy_type_he;
    }
    if (elements.vht) {
        return dot11_phy_type_vht;
    }
    if (elements.ht) {
        return dot11_phy_type_ht;
    }
    if (frequencyMhz >= FIRST_5_GHZ) {
        return frequencyMhz >= FIRST_60_GHZ ? dot11_phy_type_dmg : dot11_phy_type_ofdm;
    }
    unsigned fastest = 0;
    forEachRate(elements, [&fastest](std::uint8_t rate) {
        fastest = std::max(fastest, rate & ~unsigned{BASIC_RATE});
    });
    if (elements.erp || fastest > FASTEST_HRDSSS) {
        return dot11_phy_type_erp;
    }
    return fastest > FASTEST_DSSS ? dot11_phy_type_hrdsss : dot11_phy_type_dsss;
}

WLAN_RATE_SET ratesOf(const Elements& elements) {
    WLAN_RATE_SET set{};
    std::size_t count = 0;
    forEachRate(elements, [&set, &count](std::uint8_t rate) {
        if (count < std::size(set.usRateSet)) {
            const bool basic = (rate & BASIC_RATE) != 0;
            set.usRateSet[count++] =
                static_cast<USHORT>((rate & ~BASIC_RATE) | (basic ? BASIC_RATE_OF_SET : 0));
        }
    });
    set.uRateSetLength = static_cast<ULONG>(count * sizeof(USHORT));
    return set;
}

} // namespace nativewifi
