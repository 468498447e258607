// Windows whose messages somebody else sees first.
#include <Subclass.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using libUikit::Subclass;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr UINT WM_ASKED = WM_APP + 1;

std::vector<std::string> g_seen;

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ASKED || message == WM_NCDESTROY) {
        g_seen.emplace_back("window");
    }
    return message == WM_ASKED ? static_cast<LRESULT>(wParam) + lParam
                               : DefWindowProcW(window, message, wParam, lParam);
}

// Says its name, and passes everything on.
LRESULT passOn(const Subclass& self, void* owner, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ASKED || message == WM_NCDESTROY) {
        g_seen.emplace_back(static_cast<const char*>(owner));
    }
    return self.pass(message, wParam, lParam);
}

// For the one who replaces the procedure later.
WNDPROC g_later = nullptr;
LRESULT CALLBACK laterProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ASKED) {
        g_seen.emplace_back("later");
    }
    return CallWindowProcW(g_later, window, message, wParam, lParam);
}

class Subclasses : public testing::Test {
protected:
    Subclasses() {
        g_seen.clear();
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&windowProcedure));
    }
    ~Subclasses() override { end(); }

    void end() {
        if (m_window != nullptr) {
            DestroyWindow(m_window);
            m_window = nullptr;
        }
    }
    std::vector<std::string> asked() {
        g_seen.clear();
        EXPECT_EQ(SendMessageW(m_window, WM_ASKED, 40, 2), 42);
        return g_seen;
    }
    WNDPROC procedure() const {
        return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(m_window, GWLP_WNDPROC));
    }
    static void* named(const char* name) { return const_cast<char*>(name); }

    HWND m_window =
        CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

TEST_F(Subclasses, SeeMessagesFirstAndPassThemOn) {
    const Subclass subclass(m_window, passOn, named("first"));
    EXPECT_EQ(subclass.window(), m_window);
    EXPECT_THAT(asked(), ElementsAre("first", "window"));
}

TEST_F(Subclasses, MayKeepAMessage) {
    const Subclass subclass(
        m_window, [](const Subclass&, void*, UINT, WPARAM, LPARAM) -> LRESULT { return 42; },
        nullptr);
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(Subclasses, OfOneWindowComeOneAfterTheOtherTheLatestFirst) {
    const Subclass first(m_window, passOn, named("first"));
    const Subclass second(m_window, passOn, named("second"));
    EXPECT_THAT(asked(), ElementsAre("second", "first", "window"));
}

TEST_F(Subclasses, EndInAnyOrder) {
    std::optional<Subclass> first(std::in_place, m_window, passOn, named("first"));
    std::optional<Subclass> second(std::in_place, m_window, passOn, named("second"));
    first.reset();
    EXPECT_THAT(asked(), ElementsAre("second", "window"));
    second.reset();
    EXPECT_THAT(asked(), ElementsAre("window"));
    EXPECT_EQ(procedure(), &windowProcedure);
}

TEST_F(Subclasses, LeaveNobodyStrandedWhoCameLater) {
    std::optional<Subclass> subclass(std::in_place, m_window, passOn, named("first"));
    g_later = procedure();
    SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&laterProcedure));
    EXPECT_THAT(asked(), ElementsAre("later", "first", "window"));
    subclass.reset();
    EXPECT_THAT(asked(), ElementsAre("later", "window"));
    const Subclass next(m_window, passOn, named("next"));
    EXPECT_THAT(asked(), ElementsAre("later", "next", "window"));
    end();
}

TEST_F(Subclasses, MayOutliveTheirWindow) {
    const Subclass first(m_window, passOn, named("first"));
    const Subclass second(m_window, passOn, named("second"));
    g_seen.clear();
    end();
    EXPECT_THAT(g_seen, ElementsAre("second", "first", "window"));
}

TEST_F(Subclasses, MayEndInTheMessageThatEndsTheWindow) {
    static std::optional<Subclass> owned;
    owned.emplace(
        m_window,
        [](const Subclass& self, void*, UINT message, WPARAM wParam, LPARAM lParam) {
            const LRESULT result = self.pass(message, wParam, lParam);
            if (message == WM_NCDESTROY) {
                owned.reset();
            }
            return result;
        },
        nullptr);
    g_seen.clear();
    end();
    EXPECT_THAT(g_seen, ElementsAre("window"));
    EXPECT_FALSE(owned.has_value());
}

} // namespace
