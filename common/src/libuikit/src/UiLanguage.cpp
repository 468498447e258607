#include <libUikit/UiLanguage.h>

#include <mrl/Languages.h>
#include <mrl/Unicode.h>

#include <atomic>

namespace libUikit {

namespace {

std::atomic<LANGID> g_language = 0; // 0: the user's

} // namespace

LANGID uiLanguage() {
    const LANGID language = g_language;
    return language != 0 ? language : GetUserDefaultUILanguage();
}

void setUiLanguage(LANGID language) {
    g_language = language;
}

LANGID languageOf(const wchar_t* tag) {
    // 0 with ERROR_INVALID_PARAMETER; LOCALE_CUSTOM_UNSPECIFIED for all that have no number
    const LCID locale = LocaleNameToLCID(tag, LOCALE_ALLOW_NEUTRAL_NAMES);
    return locale == 0 || locale == LOCALE_CUSTOM_UNSPECIFIED
               ? MAKELANGID(LANG_INVARIANT, SUBLANG_NEUTRAL)
               : LANGIDFROMLCID(locale);
}

bool isRightToLeft(LANGID language) {
    wchar_t tag[LOCALE_NAME_MAX_LENGTH] = L"";
    // 0 with ERROR_INVALID_PARAMETER for a language that the system does not know
    LCIDToLocaleName(MAKELCID(language, SORT_DEFAULT), tag, LOCALE_NAME_MAX_LENGTH,
                     LOCALE_ALLOW_NEUTRAL_NAMES);
    return mrl::isRightToLeft(mrl::toUtf8(tag));
}

} // namespace libUikit
