#include <afxwin.h>

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Steps = std::vector<std::string>;

// A plain button of Windows, not made through the library.
struct ForeignWindow {
    ForeignWindow()
        : handle(CreateWindowExW(0, L"BUTTON", L"foreign", WS_POPUP, 0, 0, 50, 20, nullptr, nullptr,
                                 nullptr, nullptr)) {}
    ForeignWindow(const ForeignWindow&) = delete;
    ForeignWindow& operator=(const ForeignWindow&) = delete;
    ~ForeignWindow() { DestroyWindow(handle); }
    HWND handle;
};

class RecordingWindow : public CWnd {
public:
    BOOL createPopup(LPCTSTR windowClass = L"STATIC") {
        return CreateEx(0, windowClass, L"popup", WS_POPUP, 0, 0, 40, 30, nullptr, nullptr);
    }

    Steps steps;
    UINT throwOn = 0;

protected:
    void PreSubclassWindow() override { steps.emplace_back("PreSubclassWindow"); }
    void PostNcDestroy() override { steps.emplace_back("PostNcDestroy"); }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_NCCREATE || message == WM_CREATE || message == WM_NCDESTROY) {
            steps.push_back(std::to_string(message));
        }
        if (throwOn != 0 && message == throwOn) {
            throw std::runtime_error("from " + std::to_string(message));
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

TEST(HandleMaps, GiveTheAttachedObjectAndOtherwiseATemporaryOne) {
    const ForeignWindow window;
    EXPECT_EQ(CWnd::FromHandlePermanent(window.handle), nullptr);
    CWnd* const temporary = CWnd::FromHandle(window.handle);
    ASSERT_NE(temporary, nullptr);
    EXPECT_EQ(temporary->m_hWnd, window.handle);
    EXPECT_EQ(CWnd::FromHandle(window.handle), temporary);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.handle), nullptr);

    CWnd permanent;
    EXPECT_TRUE(permanent.Attach(window.handle));
    EXPECT_EQ(CWnd::FromHandle(window.handle), &permanent);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.handle), &permanent);
    EXPECT_EQ(permanent.Detach(), window.handle);
    EXPECT_EQ(permanent.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.handle), nullptr);
}

TEST(HandleMaps, GiveNothingForNoHandle) {
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    CWnd window;
    EXPECT_FALSE(window.Attach(nullptr));
}

TEST(HandleMaps, HaveOneObjectForEachWindow) {
    const ForeignWindow window;
    CWnd first;
    CWnd second;
    EXPECT_TRUE(first.Attach(window.handle));
    EXPECT_FALSE(second.Attach(window.handle));
    EXPECT_FALSE(second.SubclassWindow(window.handle));
    first.Detach();
}

TEST(HandleMaps, AreEachThreadsOwn) {
    const ForeignWindow window;
    CWnd permanent;
    permanent.Attach(window.handle);
    const CWnd* elsewhere = &permanent;
    std::thread([&] { elsewhere = CWnd::FromHandlePermanent(window.handle); }).join();
    EXPECT_EQ(elsewhere, nullptr);
    permanent.Detach();
}

TEST(HandleMaps, LoseTheirTemporaryObjectsWithoutHarmToTheWindows) {
    const ForeignWindow window;
    CWnd::FromHandle(window.handle);
    CWnd::DeleteTempMap();
    EXPECT_TRUE(IsWindow(window.handle));
    EXPECT_EQ(CWnd::FromHandle(window.handle)->m_hWnd, window.handle);
}

TEST(Window, GetsPreSubclassWindowFirstAndPostNcDestroyLast) {
    RecordingWindow window;
    ASSERT_TRUE(window.createPopup());
    EXPECT_EQ(window.steps,
              (Steps{"PreSubclassWindow", std::to_string(WM_NCCREATE), std::to_string(WM_CREATE)}));
    const HWND handle = window.m_hWnd;
    window.steps.clear();
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.steps, (Steps{std::to_string(WM_NCDESTROY), "PostNcDestroy"}));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_FALSE(window.DestroyWindow());
}

TEST(Window, IsDestroyedWithItsObject) {
    HWND handle = nullptr;
    {
        RecordingWindow window;
        window.createPopup();
        handle = window.m_hWnd;
    }
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
}

TEST(Window, OfAnUnknownClassIsNotMade) {
    RecordingWindow window;
    EXPECT_FALSE(window.createPopup(L"no such class"));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

TEST(Window, WhoseHandlerThrowsDuringCreationIsNotMadeAndTheExceptionComesOut) {
    for (const UINT message : {UINT{WM_NCCREATE}, UINT{WM_CREATE}, UINT{WM_GETMINMAXINFO}}) {
        RecordingWindow window;
        window.throwOn = message;
        if (message == WM_GETMINMAXINFO) {
            window.throwOn = WM_NCCALCSIZE;
        }
        EXPECT_THROW(window.createPopup(), std::runtime_error) << message;
        EXPECT_EQ(window.m_hWnd, nullptr) << message;
    }
}

TEST(Window, SubclassesAWindowAndRestoresItsProcedure) {
    const ForeignWindow foreign;
    const auto procedure = [&] { return GetWindowLongPtrW(foreign.handle, GWLP_WNDPROC); };
    const LONG_PTR before = procedure();

    RecordingWindow window;
    ASSERT_TRUE(window.SubclassWindow(foreign.handle));
    EXPECT_EQ(window.steps, Steps{"PreSubclassWindow"});
    EXPECT_NE(procedure(), before);
    // A button still answers as a button does.
    EXPECT_NE(window.SendMessage(WM_GETDLGCODE) & DLGC_BUTTON, 0);
    wchar_t text[16]{};
    EXPECT_EQ(GetWindowTextW(window, text, 16), 7);
    EXPECT_STREQ(text, L"foreign");

    EXPECT_EQ(window.UnsubclassWindow(), foreign.handle);
    EXPECT_EQ(procedure(), before);
    EXPECT_EQ(CWnd::FromHandlePermanent(foreign.handle), nullptr);
}

TEST(Window, KnowsAndChangesItsState) {
    RecordingWindow window;
    window.createPopup();
    EXPECT_FALSE(::IsWindowVisible(window));
    window.ShowWindow(SW_SHOWNA);
    EXPECT_TRUE(::IsWindowVisible(window));
    EXPECT_FALSE(window.IsIconic());
    EXPECT_TRUE(window.IsWindowEnabled());
    EXPECT_FALSE(window.EnableWindow(FALSE)) << "it was not disabled before";
    EXPECT_FALSE(window.IsWindowEnabled());

    EXPECT_TRUE(window.ModifyStyleEx(0, WS_EX_LAYOUTRTL, SWP_FRAMECHANGED));
    EXPECT_FALSE(window.ModifyStyleEx(0, WS_EX_LAYOUTRTL, SWP_FRAMECHANGED));
    EXPECT_EQ(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_LAYOUTRTL, WS_EX_LAYOUTRTL);
}

TEST(Window, KeepsItsIcons) {
    RecordingWindow window;
    window.createPopup();
    const HICON icon = LoadIconW(nullptr, IDI_INFORMATION);
    EXPECT_EQ(window.SetIcon(icon, TRUE), nullptr);
    EXPECT_EQ(reinterpret_cast<HICON>(window.SendMessage(WM_GETICON, ICON_BIG)), icon);
}

TEST(Window, LosesItsTimersWhenTheyAreKilled) {
    RecordingWindow window;
    window.createPopup();
    EXPECT_NE(window.SetTimer(129, 10000, nullptr), 0U);
    EXPECT_TRUE(window.KillTimer(129));
    EXPECT_FALSE(window.KillTimer(129));
}

// A window that paints through CPaintDC.
class PaintingWindow : public CWnd {
public:
    CRect painted;
    bool fails = false;

protected:
    afx_msg void OnPaint() {
        if (fails) {
            throw std::runtime_error("no paint");
        }
        CPaintDC dc(this);
        painted = CRect(dc.m_ps.rcPaint);
        EXPECT_EQ(dc.SetTextColor(RGB(1, 2, 3)), RGB(0, 0, 0));
        EXPECT_EQ(GetTextColor(dc), RGB(1, 2, 3));
        EXPECT_TRUE(dc.DrawIcon(0, 0, LoadIconW(nullptr, IDI_INFORMATION)));
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(PaintingWindow, CWnd)
ON_WM_PAINT()
END_MESSAGE_MAP()

TEST(Window, PaintsWhatIsInvalid) {
    PaintingWindow window;
    window.CreateEx(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 40, 30, nullptr, nullptr);
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_EQ(window.painted.Width(), 40);
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
}

TEST(Window, WhosePaintingThrowsIsNotAskedAgainAtOnce) {
    PaintingWindow window;
    window.CreateEx(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 40, 30, nullptr, nullptr);
    window.fails = true;
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
    EXPECT_THROW(window.RunModalLoop(), std::runtime_error);
}

TEST(DeviceContext, IsOwnedByTheObjectItIsAttachedTo) {
    const HDC handle = CreateCompatibleDC(nullptr);
    {
        CDC dc;
        EXPECT_FALSE(dc.Attach(nullptr));
        EXPECT_TRUE(dc.Attach(handle));
        EXPECT_EQ(dc.Detach(), handle);
    }
    EXPECT_NE(GetObjectType(handle), 0U);
    {
        CDC dc;
        dc.Attach(handle);
    }
    EXPECT_EQ(GetObjectType(handle), 0U);
}

TEST(DeviceContext, ForPaintingNeedsAWindow) {
    CWnd none;
    EXPECT_THROW(CPaintDC{&none}, CResourceException*);
}

TEST(Rectangles, KnowTheirSizeAndWhetherTheyAreEmpty) {
    CRect rectangle(10, 20, 110, 70);
    EXPECT_EQ(rectangle.Width(), 100);
    EXPECT_EQ(rectangle.Height(), 50);
    EXPECT_EQ(rectangle.Size().cx, 100);
    EXPECT_FALSE(rectangle.IsRectEmpty());
    EXPECT_TRUE(CRect(10, 20, 10, 70).IsRectEmpty());
}

} // namespace
