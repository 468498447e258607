#include <networks/SecurityWords.h>

#include <algorithm>
#include <string_view>

namespace networks {

namespace {

struct Word {
    DOT11_AUTH_ALGORITHM authentication;
    std::string_view word;
    bool enterprise; ///< an authentication server decides
};
// In the order in which the words are shown.
constexpr Word words[] = {
    {DOT11_AUTH_ALGO_80211_OPEN, OPEN, false},
    {DOT11_AUTH_ALGO_OWE, "OWE", false},
    {DOT11_AUTH_ALGO_80211_SHARED_KEY, "WEP", false},
    {DOT11_AUTH_ALGO_WPA_PSK, "WPA", false},
    {DOT11_AUTH_ALGO_RSNA_PSK, "WPA2", false},
    {DOT11_AUTH_ALGO_WPA3_SAE, "WPA3", false},
    {DOT11_AUTH_ALGO_WPA, "WPA", true},
    {DOT11_AUTH_ALGO_RSNA, "WPA2", true},
    {DOT11_AUTH_ALGO_WPA3_ENT, "WPA3", true},
    {DOT11_AUTH_ALGO_WPA3, "WPA3", true}, // with 192 bits
};
constexpr std::string_view UNKNOWN = "Unknown";

// "WPA2/WPA3" of those for persons or for enterprises, each word once.
std::string joined(const std::vector<DOT11_AUTH_ALGORITHM>& offered, bool enterprise) {
    std::string text;
    std::string_view last;
    for (const Word& word : words) {
        if (word.enterprise == enterprise && word.word != last &&
            std::ranges::find(offered, word.authentication) != offered.end()) {
            text += text.empty() ? "" : "/";
            text += word.word;
            last = word.word;
        }
    }
    return text;
}

} // namespace

std::string securityWords(const std::vector<DOT11_AUTH_ALGORITHM>& offered) {
    std::string text = joined(offered, false);
    if (const std::string enterprise = joined(offered, true); !enterprise.empty()) {
        text += text.empty() ? "" : ", ";
        text += enterprise + " Enterprise";
    }
    return text.empty() ? std::string(UNKNOWN) : text;
}

} // namespace networks
