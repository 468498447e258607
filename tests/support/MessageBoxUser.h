// Reads and answers the message box of another thread. Windows only.
#pragma once

#include <windows.h>

#include <string>

namespace test {

struct SeenBox {
    std::wstring title;
    std::wstring prompt;
};

/// Waits for a message box on `thread`, reads it and presses `button`.
/// \return empty texts when no box opens within ten seconds
inline SeenBox answerMessageBox(DWORD thread, int button) {
    constexpr int PROMPT_CONTROL = 0xffff;
    const auto takeDialog = [](HWND window, LPARAM found) -> BOOL {
        wchar_t name[16]{};
        GetClassNameW(window, name, static_cast<int>(std::size(name)));
        if (std::wstring(name) == L"#32770" && IsWindowVisible(window)) {
            *reinterpret_cast<HWND*>(found) = window;
            return FALSE;
        }
        return TRUE;
    };
    HWND box = nullptr;
    for (int tries = 0; box == nullptr && tries < 1000; ++tries) {
        Sleep(10);
        EnumThreadWindows(thread, takeDialog, reinterpret_cast<LPARAM>(&box));
    }
    if (box == nullptr) {
        return {};
    }
    wchar_t title[256]{};
    wchar_t prompt[256]{};
    GetWindowTextW(box, title, static_cast<int>(std::size(title)));
    SendDlgItemMessageW(box, PROMPT_CONTROL, WM_GETTEXT, std::size(prompt),
                        reinterpret_cast<LPARAM>(prompt));
    SendMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return {title, prompt};
}

} // namespace test
