#include <libUikit/UiLanguage.h>

#include <atomic>

namespace libUikit {

namespace {

// Values of LOCALE_IREADINGLAYOUT: 0 left to right, 1 right to left, 2 and 3 vertical.
constexpr DWORD RIGHT_TO_LEFT = 1;

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
    DWORD layout = 0;
    // 0 with ERROR_INVALID_PARAMETER for a language that the system does not know
    const int length = GetLocaleInfoW(
        MAKELCID(language, SORT_DEFAULT), LOCALE_IREADINGLAYOUT | LOCALE_RETURN_NUMBER,
        reinterpret_cast<LPWSTR>(&layout), sizeof layout / sizeof(WCHAR));
    return length != 0 && layout == RIGHT_TO_LEFT;
}

} // namespace libUikit
