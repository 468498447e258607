#include "TestDialog.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

using test::TestDialog;
using test::WM_TEST_STEP;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

struct OwnerWindow : CWnd {
    OwnerWindow() {
        CreateEx(0, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr, nullptr);
    }
};

TEST(Dialog, ReturnsWhatItWasEndedWith) {
    for (const int result : {0, 1, 2, 4711}) {
        TestDialog dialog;
        dialog.step = [&] { dialog.EndDialog(result); };
        EXPECT_EQ(dialog.DoModal(), result);
        EXPECT_EQ(dialog.m_hWnd, nullptr);
    }
}

TEST(Dialog, CanRunAgain) {
    TestDialog dialog;
    dialog.DoModal();
    dialog.step = [&] { dialog.EndDialog(3); };
    EXPECT_EQ(dialog.DoModal(), 3);
}

TEST(Dialog, WithoutATemplateDoesNotOpen) {
    CDialog dialog(4711U);
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_FALSE(dialog.Create(4711U));
}

TEST(Dialog, EndedWhileItOpensNeverRuns) {
    TestDialog dialog;
    bool ran = false;
    dialog.step = [&] { ran = true; };
    dialog.onInit = [&] { dialog.EndDialog(9); };
    EXPECT_EQ(dialog.DoModal(), 9);
    EXPECT_FALSE(ran);
}

TEST(Dialog, ThatIsNotOpenIgnoresItsEnd) {
    TestDialog dialog;
    dialog.EndDialog(0);
    EXPECT_FALSE(dialog.DestroyWindow());
}

TEST(Dialog, IsShownWhenItRuns) {
    TestDialog dialog;
    bool visible = false;
    dialog.step = [&] {
        // The first step comes before the queue is empty; the second one after.
        dialog.step = [&] {
            visible = ::IsWindowVisible(dialog);
            dialog.EndDialog(0);
        };
        dialog.SetTimer(1, 20, nullptr);
    };
    dialog.onTimer = [&](UINT_PTR) { dialog.step(); };
    dialog.DoModal();
    EXPECT_TRUE(visible);
}

TEST(Dialog, EndsByItsButtonsAndItsCloseBox) {
    const auto endedBy = [](UINT message, WPARAM wParam) {
        TestDialog dialog;
        dialog.step = [&] { dialog.PostMessage(message, wParam); };
        return dialog.DoModal();
    };
    EXPECT_EQ(endedBy(WM_COMMAND, IDOK), IDOK);
    EXPECT_EQ(endedBy(WM_COMMAND, IDCANCEL), IDCANCEL);
    EXPECT_EQ(endedBy(WM_SYSCOMMAND, SC_CLOSE), IDCANCEL);
}

TEST(Dialog, EndsByEscapeAndEnterThroughTheDialogManager) {
    const auto endedBy = [](WPARAM key) {
        TestDialog dialog;
        dialog.step = [&] { ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 0); };
        return dialog.DoModal();
    };
    EXPECT_EQ(endedBy(VK_ESCAPE), IDCANCEL);
    EXPECT_EQ(endedBy(VK_RETURN), IDOK);
}

TEST(Dialog, LeavesTheEndOfTheProgramToTheLoopOutside) {
    TestDialog dialog;
    dialog.step = [] { PostQuitMessage(6); };
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 6U);
}

// Owners.

TEST(DialogsOwner, IsDisabledWhileTheDialogRuns) {
    OwnerWindow owner;
    TestDialog dialog(&owner);
    BOOL enabled = TRUE;
    HWND parent = nullptr;
    dialog.step = [&] {
        enabled = owner.IsWindowEnabled();
        parent = ::GetParent(dialog);
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_FALSE(enabled);
    EXPECT_EQ(parent, owner.m_hWnd);
    EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST(DialogsOwner, StaysDisabledWhenItWasSoBefore) {
    OwnerWindow owner;
    owner.EnableWindow(FALSE);
    TestDialog(&owner).DoModal();
    EXPECT_FALSE(owner.IsWindowEnabled());
}

TEST(DialogsOwner, IsTheTopLevelWindowAroundAGivenControl) {
    OwnerWindow owner;
    CWnd child;
    child.CreateEx(0, L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, owner, nullptr);
    TestDialog dialog(&child);
    HWND parent = nullptr;
    dialog.step = [&] {
        parent = ::GetParent(dialog);
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_EQ(parent, owner.m_hWnd);
}

TEST(DialogsOwner, IsEnabledAgainAfterAnException) {
    OwnerWindow owner;
    TestDialog dialog(&owner);
    dialog.step = [] { throw std::runtime_error("step"); };
    EXPECT_THROW(dialog.DoModal(), std::runtime_error);
    EXPECT_TRUE(owner.IsWindowEnabled());
}

// Exceptions.

TEST(ExceptionInADialog, FromAHandlerEndsItAndComesOutOfDoModal) {
    TestDialog dialog;
    dialog.step = [] { throw std::runtime_error("step"); };
    EXPECT_THROW(dialog.DoModal(), std::runtime_error);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    dialog.EndDialog(0);
    EXPECT_FALSE(dialog.DestroyWindow());
}

TEST(ExceptionInADialog, KeepsItsType) {
    TestDialog dialog;
    dialog.step = [] { throw 42; };
    EXPECT_THROW(dialog.DoModal(), int);
}

TEST(ExceptionInADialog, FromOnInitDialogComesOutOfDoModal) {
    TestDialog dialog;
    dialog.onInit = [] { throw std::runtime_error("init"); };
    EXPECT_THROW(dialog.DoModal(), std::runtime_error);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST(ExceptionInADialog, FromATimerComesOutOfDoModal) {
    TestDialog dialog;
    dialog.step = [&] { dialog.SetTimer(129, 10, nullptr); };
    dialog.onTimer = [](UINT_PTR) { throw std::logic_error("timer"); };
    EXPECT_THROW(dialog.DoModal(), std::logic_error);
}

TEST(ExceptionInADialog, FromPreTranslateMessageComesOutOfDoModal) {
    TestDialog dialog;
    dialog.onPreTranslate = [](MSG* message) -> bool {
        if (message->message == WM_TEST_STEP) {
            throw std::logic_error("pretranslate");
        }
        return false;
    };
    EXPECT_THROW(dialog.DoModal(), std::logic_error);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST(ExceptionInADialog, FromAKeysCommandComesOutThroughTheDialogManager) {
    struct Refusing final : TestDialog {
        void OnCancel() override { throw std::logic_error("cancel"); }
    } dialog;
    dialog.step = [] { ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0); };
    EXPECT_THROW(dialog.DoModal(), std::logic_error);
}

TEST(ExceptionInADialog, FromAMessageOfAnotherThreadDoesNotWaitForTheNextOne) {
    TestDialog dialog;
    std::thread sender;
    dialog.step = [&] {
        dialog.step = [] { throw std::logic_error("sent"); };
        sender = std::thread([window = dialog.m_hWnd] {
            Sleep(50); // the dialog is idle by then, waiting inside GetMessage
            ::SendMessageW(window, WM_TEST_STEP, 0, 0);
        });
    };
    EXPECT_THROW(dialog.DoModal(), std::logic_error);
    sender.join();
}

TEST(ExceptionInADialog, IsTheFirstOneWhenTheEndThrowsAsWell) {
    struct BadEnd final : TestDialog {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_DESTROY) {
                throw std::logic_error("end");
            }
            return TestDialog::WindowProc(message, wParam, lParam);
        }
    } dialog;
    dialog.step = [] { throw std::runtime_error("step"); };
    EXPECT_THROW(dialog.DoModal(), std::runtime_error);
    EXPECT_EQ(TestDialog().DoModal(), 0) << "nothing is left over for the next dialog";

    dialog.step = [&] { dialog.EndDialog(1); };
    EXPECT_THROW(dialog.DoModal(), std::logic_error) << "alone, it comes out too";
}

TEST(ExceptionInADialog, OfAnInnerDialogPassesThroughTheOuterOne) {
    TestDialog outer;
    bool innerLeft = false;
    outer.step = [&] {
        TestDialog inner(&outer);
        inner.step = [] { throw std::runtime_error("inner"); };
        try {
            inner.DoModal();
        } catch (...) {
            innerLeft = outer.IsWindowEnabled() != FALSE;
            throw;
        }
    };
    EXPECT_THROW(outer.DoModal(), std::runtime_error);
    EXPECT_TRUE(innerLeft);
}

TEST(ExceptionInADialog, FromOnInitDialogComesOutOfCreate) {
    TestDialog dialog;
    dialog.onInit = [] { throw std::runtime_error("init"); };
    EXPECT_THROW(dialog.Create(IDD_TEST), std::runtime_error);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

// Messages before dispatch.

TEST(PreTranslateMessage, SeesTheMessagesOfTheDialogAndOfItsControls) {
    TestDialog dialog;
    dialog.step = [&] {
        dialog.step = [&] { dialog.EndDialog(0); };
        dialog.combo.PostMessage(WM_MOUSEMOVE);
        dialog.text.PostMessage(WM_APP + 1);
        dialog.PostMessage(WM_TEST_STEP);
    };
    dialog.DoModal();
    EXPECT_THAT(dialog.seen, Contains(UINT{WM_MOUSEMOVE}));
    EXPECT_THAT(dialog.seen, Contains(UINT{WM_APP + 1}));
    EXPECT_THAT(dialog.seen, Contains(WM_TEST_STEP));
}

TEST(PreTranslateMessage, KeepsAMessageFromBeingDispatched) {
    TestDialog dialog;
    int clicks = 0;
    dialog.onPreTranslate = [](MSG* message) { return message->message == WM_COMMAND; };
    dialog.step = [&] {
        dialog.step = [&] { dialog.EndDialog(++clicks); };
        dialog.PostMessage(WM_COMMAND, IDOK);
        dialog.PostMessage(WM_TEST_STEP);
    };
    EXPECT_EQ(dialog.DoModal(), 1);
}

TEST(PreTranslateMessage, GoesUpTheChainOfWindowsAndStopsWhereItIsHandled) {
    struct Asked final : CStatic {
        BOOL PreTranslateMessage(MSG* message) override {
            const BOOL mine = message->message == WM_APP + 1;
            asked += mine;
            return mine;
        }
        int asked = 0;
    } control;
    TestDialog dialog;
    dialog.onInit = [&] { control.SubclassWindow(*dialog.GetDlgItem(IDC_TEST_BUTTON)); };
    dialog.step = [&] {
        dialog.step = [&] { dialog.EndDialog(0); };
        control.PostMessage(WM_APP + 1);
        dialog.PostMessage(WM_TEST_STEP);
    };
    dialog.DoModal();
    EXPECT_EQ(control.asked, 1);
    EXPECT_THAT(dialog.seen, Not(Contains(UINT{WM_APP + 1})));
}

// Idle.

TEST(IdleDialog, GetsKickIdleUntilItReturnsZero) {
    struct Idle final : TestDialog {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_KICKIDLE) {
                kicks.push_back(static_cast<int>(lParam));
                if (kicks.size() == 3) {
                    EndDialog(0);
                }
                return kicks.size() < 3;
            }
            return TestDialog::WindowProc(message, wParam, lParam);
        }
        std::vector<int> kicks;
    } dialog;
    dialog.step = [] {};
    dialog.DoModal();
    EXPECT_THAT(dialog.kicks, ElementsAre(0, 1, 2));
}

TEST(IdleDialog, FreesTemporaryObjectsButNotThoseOfARunningHandler) {
    TestDialog dialog;
    BOOL alive = FALSE;
    dialog.step = [&] {
        const CWnd* const kept = dialog.GetDlgItem(IDC_TEST_BUTTON);
        TestDialog inner(&dialog);
        inner.step = [&] { inner.SetTimer(1, 20, nullptr); };
        inner.onTimer = [&](UINT_PTR) {
            // New objects would take the place of one that was freed.
            for (const int id : {IDOK, IDCANCEL, IDC_TEST_BUTTON}) {
                inner.GetDlgItem(id);
            }
            inner.EndDialog(0);
        };
        inner.DoModal();
        alive = dialog.GetDlgItem(IDC_TEST_BUTTON) == kept;
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_TRUE(alive);
}

// Messages to handlers.

TEST(DialogsMessages, ReachTheirHandlers) {
    TestDialog dialog;
    dialog.step = [&] {
        dialog.GetDlgItem(IDC_TEST_BUTTON)->SendMessage(BM_CLICK);
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_TEST_COMBO, CBN_SELCHANGE),
                           reinterpret_cast<LPARAM>(dialog.combo.m_hWnd));
        dialog.text.SendMessage(WM_LBUTTONDOWN);
        dialog.text.SendMessage(WM_LBUTTONUP);
        // Another notification of the same control, and the same of another, have no handler.
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_TEST_COMBO, CBN_DROPDOWN));
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_TEST_STATIC, CBN_SELCHANGE));
        dialog.SendMessage(WM_CLOSE);
    };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_THAT(dialog.handled, ElementsAre("button", "selection", "text", "close"));
}

TEST(DialogsMessages, CarryTheResultOfTheirHandlers) {
    TestDialog dialog;
    LRESULT cursor = 0;
    dialog.step = [&] {
        cursor = dialog.SendMessage(WM_QUERYDRAGICON);
        dialog.SendMessage(WM_HSCROLL, SB_LINELEFT, reinterpret_cast<LPARAM>(dialog.m_hWnd));
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_EQ(cursor, reinterpret_cast<LRESULT>(LoadCursorW(nullptr, IDC_HAND)));
}

TEST(DialogsMessages, OfATimerCarryItsId) {
    TestDialog dialog;
    UINT_PTR seen = 0;
    dialog.step = [&] { dialog.SetTimer(129, 10, nullptr); };
    dialog.onTimer = [&](UINT_PTR id) {
        seen = id;
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_EQ(seen, 129U);
}

TEST(ColourRequests, ComeWithTheControlAndItsKind) {
    TestDialog dialog;
    std::vector<std::pair<int, UINT>> asked;
    COLORREF colour = 0;
    HDC dc = nullptr;
    HDC given = nullptr;
    bool permanent = false;
    dialog.onColor = [&](CDC* context, CWnd* control, UINT type) {
        given = context->GetSafeHdc();
        asked.emplace_back(control->GetDlgCtrlID(), type);
        permanent = permanent || control == &dialog.text;
        context->SetTextColor(RGB(255, 0, 0));
        return GetSysColorBrush(COLOR_INFOBK);
    };
    LRESULT brush = 0;
    dialog.step = [&] {
        dialog.UpdateWindow();
        asked.clear();
        dc = CreateCompatibleDC(nullptr);
        brush = dialog.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                   reinterpret_cast<LPARAM>(dialog.text.m_hWnd));
        colour = GetTextColor(dc);
        dialog.SendMessage(WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(dc),
                           reinterpret_cast<LPARAM>(::GetDlgItem(dialog.m_hWnd, IDC_TEST_BUTTON)));
        DeleteDC(dc);
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_THAT(asked, ElementsAre(std::pair(IDC_TEST_STATIC, UINT{CTLCOLOR_STATIC}),
                                   std::pair(IDC_TEST_BUTTON, UINT{CTLCOLOR_BTN})));
    EXPECT_EQ(given, dc);
    EXPECT_TRUE(permanent);
    EXPECT_EQ(colour, RGB(255, 0, 0));
    EXPECT_EQ(brush, reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK)));
}

TEST(ColourRequests, WithoutAHandlerGetTheDialogsBackground) {
    TestDialog dialog;
    LRESULT brush = 0;
    dialog.step = [&] {
        const HDC dc = CreateCompatibleDC(nullptr);
        brush = dialog.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                   reinterpret_cast<LPARAM>(dialog.text.m_hWnd));
        DeleteDC(dc);
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_NE(brush, 0);
}

// Members and controls.

TEST(DataExchange, BindsMembersOnceAndForTheLifeOfTheWindow) {
    TestDialog dialog;
    bool bound = false;
    dialog.step = [&] {
        bound = CWnd::FromHandlePermanent(::GetDlgItem(dialog, IDC_TEST_COMBO)) == &dialog.combo &&
                dialog.UpdateData(TRUE) && dialog.UpdateData(FALSE) &&
                dialog.GetDlgItem(IDC_TEST_COMBO) == &dialog.combo;
        dialog.EndDialog(0);
    };
    dialog.DoModal();
    EXPECT_TRUE(bound);
    EXPECT_EQ(dialog.combo.m_hWnd, nullptr);
    EXPECT_FALSE(dialog.UpdateData(TRUE)) << "without a window";
}

TEST(DataExchange, RefusesAControlThatTheDialogLacks) {
    struct Wrong final : TestDialog {
        void DoDataExchange(CDataExchange* exchange) override {
            DDX_Control(exchange, 4711, combo);
        }
    } dialog;
    EXPECT_THROW(dialog.DoModal(), CNotSupportedException*);
}

TEST(DataExchange, RefusesAControlThatHasAnObjectAlready) {
    struct Twice final : TestDialog {
        void DoDataExchange(CDataExchange* exchange) override {
            DDX_Control(exchange, IDC_TEST_COMBO, combo);
            DDX_Control(exchange, IDC_TEST_COMBO, text);
        }
    } dialog;
    EXPECT_THROW(dialog.DoModal(), CNotSupportedException*);
}

TEST(DialogsControls, AreReachedByTheirIds) {
    TestDialog dialog;
    wchar_t text[16]{};
    const CWnd* missing = &dialog;
    dialog.step = [&] {
        dialog.SetDlgItemText(IDC_TEST_STATIC, L"49%");
        ::GetDlgItemTextW(dialog, IDC_TEST_STATIC, text, 16);
        missing = dialog.GetDlgItem(4711);
        dialog.EndDialog(3);
    };
    EXPECT_EQ(dialog.DoModal(), 3);
    EXPECT_STREQ(text, L"49%");
    EXPECT_EQ(missing, nullptr);
}

} // namespace
