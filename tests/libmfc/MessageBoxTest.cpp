#include <afxwin.h>

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

constexpr int PROMPT_CONTROL = 0xffff; // the text of a message box

struct SeenBox {
    std::wstring title;
    std::wstring prompt;
};

BOOL CALLBACK takeDialog(HWND window, LPARAM found) {
    wchar_t name[16]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    if (std::wstring(name) == L"#32770" && IsWindowVisible(window)) {
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }
    return TRUE;
}

// Waits for a box on `thread`, reads it and presses `button`.
SeenBox answer(DWORD thread, int button) {
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

struct Shown {
    SeenBox box;
    int result;
};

Shown show(const wchar_t* text, UINT type, int button) {
    Shown shown{};
    const DWORD thread = GetCurrentThreadId();
    std::thread user([&] { shown.box = answer(thread, button); });
    shown.result = AfxMessageBox(text, type, 0);
    user.join();
    return shown;
}

TEST(AfxMessageBoxes, ShowsTheTextUnderTheApplicationsNameAndGivesTheAnswer) {
    const CWinApp application(L"Antennas");
    const Shown shown = show(L"Ole Initialization Failed", 0, IDOK);
    EXPECT_EQ(shown.box.title, L"Antennas");
    EXPECT_EQ(shown.box.prompt, L"Ole Initialization Failed");
    EXPECT_EQ(shown.result, IDOK);
}

TEST(AfxMessageBoxes, GivesTheButtonThatWasPressed) {
    const CWinApp application;
    EXPECT_EQ(show(L"Again?", MB_YESNO, IDNO).result, IDNO);
}

TEST(AfxMessageBoxes, WorksWithoutAnApplicationObject) {
    EXPECT_EQ(show(L"Nobody there", MB_OK, IDOK).box.prompt, L"Nobody there");
}

TEST(AfxMessageBoxes, GoesThroughTheApplicationsOwnDoMessageBox) {
    struct Silent final : CWinApp {
        int DoMessageBox(LPCTSTR prompt, UINT type, UINT help) override {
            text = prompt;
            return static_cast<int>(type + help);
        }
        std::wstring text;
    } application;
    EXPECT_EQ(AfxMessageBox(L"hushed", 40, 2), 42);
    EXPECT_EQ(application.text, L"hushed");
}

} // namespace
