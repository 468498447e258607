#include "TemplateReader.h"

#include <mrl/Unicode.h>

#include <cctype>

namespace test {

namespace {

// Resource compilers differ in the letter case of the names of window classes.
std::string upperCase(std::string text) {
    for (char& letter : text) {
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    return text;
}

} // namespace

TemplateReader::TemplateReader(int id) {
    const HMODULE module = GetModuleHandleW(nullptr);
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
    const HGLOBAL loaded = resource == nullptr ? nullptr : LoadResource(module, resource);
    m_start = loaded == nullptr ? nullptr : static_cast<const char*>(LockResource(loaded));
    m_at = m_start;
    if (m_start == nullptr) {
        return;
    }
    take<WORD>(); // version
    extended = take<WORD>() == 0xFFFF;
    take<DWORD>(); // help context
    frame.exStyle = take<DWORD>();
    frame.style = take<DWORD>();
    const WORD count = take<WORD>();
    take<short>();
    take<short>();
    frame.width = take<short>();
    frame.height = take<short>();
    name(); // menu
    name(); // window class
    frame.caption = name();
    frame.fontSize = take<WORD>();
    take<WORD>(); // weight
    take<WORD>(); // italic and character set
    frame.font = name();
    for (WORD i = 0; i < count; ++i) {
        controls.push_back(control());
    }
}

// A text, or "#" and the number that stands for one.
std::string TemplateReader::name() {
    std::wstring text;
    for (auto unit = take<wchar_t>(); unit != 0; unit = take<wchar_t>()) {
        if (unit == 0xFFFF) {
            return "#" + std::to_string(take<WORD>());
        }
        text.push_back(unit);
    }
    return mrl::toUtf8(text);
}

TemplateControl TemplateReader::control() {
    m_at = m_start + (m_at - m_start + 3) / 4 * 4;
    TemplateControl made;
    take<DWORD>(); // help context
    take<DWORD>(); // extended style
    made.style = take<DWORD>();
    for (short& side : made.place) {
        side = take<short>();
    }
    made.id = static_cast<int>(take<DWORD>());
    made.kind = upperCase(name());
    made.kind = made.kind == "STATIC" ? "#130" : made.kind;
    made.text = name();
    m_at += take<WORD>(); // creation data
    return made;
}

} // namespace test
