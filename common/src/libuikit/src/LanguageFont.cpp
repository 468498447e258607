#include "LanguageFont.h"

#include <libUikit/GdiResourceManager.h>

#include <algorithm>
#include <cwchar>
#include <optional>
#include <string>
#include <vector>

namespace libUikit {

namespace {

// A few letters that only a font for the language has, and the faces that systems bring for it,
// the best first.
struct Script {
    WORD language;
    const wchar_t* letters;
    const wchar_t* faces[2];
};

constexpr Script scripts[] = {
    {LANG_JAPANESE, L"\u65e5\u3042\u30a2", {L"Yu Gothic UI", L"MS UI Gothic"}},
    {LANG_CHINESE, L"\u7b80\u4f53", {L"Microsoft YaHei UI", L"SimSun"}},
    {LANG_ARABIC, L"\u0639\u0631\u0628", {L"Segoe UI", L"Tahoma"}},
};

const Script* scriptOf(LANGID language) {
    const auto* const found =
        std::find_if(std::begin(scripts), std::end(scripts), [language](const Script& script) {
            return script.language == PRIMARYLANGID(language);
        });
    return found == std::end(scripts) ? nullptr : found;
}

// The screen's device context with a font selected.
class FontContext {
public:
    explicit FontContext(const LOGFONTW& font)
        : m_font(GdiResourceManager::font(font)), m_dc(CreateCompatibleDC(nullptr)),
          m_before(m_font ? SelectObject(m_dc, m_font->handle()) : nullptr) {}
    FontContext(const FontContext&) = delete;
    FontContext& operator=(const FontContext&) = delete;
    ~FontContext() {
        if (m_before != nullptr) {
            SelectObject(m_dc, m_before);
        }
        DeleteDC(m_dc);
    }
    HDC dc() const { return m_dc; }

private:
    std::shared_ptr<const Font> m_font;
    HDC m_dc;
    HGDIOBJ m_before;
};

bool hasAll(const LOGFONTW& font, const std::wstring& letters) {
    constexpr WORD MISSING = 0xffff;
    const FontContext context(font);
    std::vector<WORD> glyphs(letters.size(), MISSING);
    // GDI_ERROR: treated as a font without the letters
    GetGlyphIndicesW(context.dc(), letters.c_str(), static_cast<int>(letters.size()), glyphs.data(),
                     GGI_MARK_NONEXISTING_GLYPHS);
    return std::find(glyphs.begin(), glyphs.end(), MISSING) == glyphs.end();
}

LOGFONTW withFace(LOGFONTW font, const wchar_t* face) {
    font.lfCharSet = DEFAULT_CHARSET;
    std::wcsncpy(font.lfFaceName, face, LF_FACESIZE - 1);
    font.lfFaceName[LF_FACESIZE - 1] = L'\0';
    return font;
}

struct Search {
    const LOGFONTW* wanted;
    const Script* script;
    std::optional<LOGFONTW> found;
};

int CALLBACK tryFamily(const LOGFONTW* family, const TEXTMETRICW*, DWORD, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    const LOGFONTW candidate = withFace(*search.wanted, family->lfFaceName);
    // '@' begins the faces for vertical text.
    if (family->lfFaceName[0] != L'@' && hasAll(candidate, search.script->letters)) {
        search.found = candidate;
        return 0;
    }
    return 1;
}

} // namespace

bool hasLetters(const LOGFONTW& font, LANGID language) {
    const Script* const script = scriptOf(language);
    return script == nullptr || hasAll(font, script->letters);
}

LOGFONTW fontForLanguage(const LOGFONTW& font, LANGID language) {
    if (hasLetters(font, language)) {
        return font;
    }
    const Script* const script = scriptOf(language);
    for (const wchar_t* const face : script->faces) {
        const LOGFONTW candidate = withFace(font, face);
        if (hasAll(candidate, script->letters)) {
            return candidate;
        }
    }
    Search search{&font, script, std::nullopt};
    LOGFONTW all{};
    all.lfCharSet = DEFAULT_CHARSET;
    const FontContext context(font);
    EnumFontFamiliesExW(context.dc(), &all, tryFamily, reinterpret_cast<LPARAM>(&search), 0);
    return search.found.value_or(font);
}

} // namespace libUikit
