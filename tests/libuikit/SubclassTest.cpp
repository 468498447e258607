// Windows whose messages the kit handles before they do.
#include <Subclass.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using libUikit::Subclass;
using testing::ElementsAre;

constexpr UINT WM_ASKED = WM_APP + 1;

std::vector<std::string> g_seen;

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ASKED) {
        g_seen.emplace_back("window");
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// Notes its owner's name, and passes every message on.
LRESULT CALLBACK noteName(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                          DWORD_PTR owner) {
    if (message == WM_ASKED || message == WM_NCDESTROY) {
        g_seen.emplace_back(*reinterpret_cast<const std::string*>(owner));
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

class Subclasses : public testing::Test {
protected:
    Subclasses() {
        g_seen.clear();
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&windowProcedure));
    }
    ~Subclasses() override { DestroyWindow(m_window); }

    std::vector<std::string> asked() {
        g_seen.clear();
        SendMessageW(m_window, WM_ASKED, 0, 0);
        return g_seen;
    }

    std::string m_first = "first";
    std::string m_second = "second";
    HWND m_window =
        CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

TEST_F(Subclasses, OfOneWindowAndProcedureEachSeeTheMessages) {
    const Subclass first(m_window, noteName, &m_first);
    const Subclass second(m_window, noteName, &m_second);
    EXPECT_THAT(asked(), ElementsAre("second", "first", "window"));
}

TEST_F(Subclasses, EndWithTheirObjectsInAnyOrder) {
    std::optional<Subclass> first(std::in_place, m_window, noteName, &m_first);
    std::optional<Subclass> second(std::in_place, m_window, noteName, &m_second);
    first.reset();
    EXPECT_THAT(asked(), ElementsAre("second", "window"));
    second.reset();
    EXPECT_THAT(asked(), ElementsAre("window"));
}

TEST_F(Subclasses, MayOutliveTheirWindow) {
    const Subclass subclass(m_window, noteName, &m_first);
    g_seen.clear();
    DestroyWindow(m_window);
    EXPECT_THAT(g_seen, ElementsAre("first"));
}

} // namespace
