#include "TestDialog.h"

#include <support/HelperProgram.h>
#include <support/WindowLooks.h>

#include <algorithm>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

using test::TestDialog;
using test::WM_TEST_STEP;
using testing::ElementsAre;

struct OwnerWindow : CWnd {
    OwnerWindow() {
        CreateEx(0, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr, nullptr);
    }
};

TEST(Dialog, ReturnsWhatItWasEndedWithAndCanRunAgain) {
    TestDialog dialog;
    for (const int result : {0, 1, 2, 4711}) {
        dialog.step = [&] { dialog.EndDialog(result); };
        EXPECT_EQ(dialog.DoModal(), result);
        EXPECT_EQ(dialog.m_hWnd, nullptr);
    }
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

TEST(Dialog, IsShownBeforeItsTimersTickWithTheirIds) {
    TestDialog dialog;
    dialog.step = [&] { dialog.SetTimer(129, 20, nullptr); };
    dialog.onTimer = [&](UINT_PTR id) {
        EXPECT_EQ(id, 129U);
        EXPECT_TRUE(::IsWindowVisible(dialog));
        dialog.EndDialog(4);
    };
    EXPECT_EQ(dialog.DoModal(), 4);
}

TEST(Dialog, EndsByItsButtonsItsCloseBoxAndItsKeys) {
    const auto endedBy = [](UINT message, WPARAM wParam) {
        TestDialog dialog;
        dialog.step = [&] {
            // Keys reach the dialog manager in the control that has the focus.
            ::PostMessageW(message == WM_KEYDOWN ? ::GetFocus() : dialog.m_hWnd, message, wParam,
                           0);
        };
        return dialog.DoModal();
    };
    EXPECT_EQ(endedBy(WM_COMMAND, IDOK), IDOK);
    EXPECT_EQ(endedBy(WM_COMMAND, IDCANCEL), IDCANCEL);
    EXPECT_EQ(endedBy(WM_SYSCOMMAND, SC_CLOSE), IDCANCEL);
    EXPECT_EQ(endedBy(WM_KEYDOWN, VK_ESCAPE), IDCANCEL);
    EXPECT_EQ(endedBy(WM_KEYDOWN, VK_RETURN), IDOK);
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
    dialog.runWith([&] {
        enabled = owner.IsWindowEnabled();
        parent = ::GetParent(dialog);
    });
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
    dialog.runWith([&] { parent = ::GetParent(dialog); });
    EXPECT_EQ(parent, owner.m_hWnd);
}

TEST(DialogsOwner, IsEnabledAgainAfterAnException) {
    OwnerWindow owner;
    TestDialog dialog(&owner);
    dialog.step = [] { throw std::runtime_error("step"); };
    EXPECT_THROW(dialog.DoModal(), std::runtime_error);
    EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST(DialogsOwner, IsNoWindowOfAnotherProcess) {
    const OwnerWindow owner;
    const std::wstring arguments =
        L"dialog " + std::to_wstring(reinterpret_cast<std::uintptr_t>(owner.m_hWnd));
    EXPECT_EQ(test::runHelper(MFC_APPLICATION_PROBE, arguments).code, 1U);
}

// Places.

CRect workArea() {
    CRect area;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

CRect placeOf(HWND window) {
    CRect place;
    ::GetWindowRect(window, place);
    return place;
}

void expectCentred(const TestDialog& dialog) {
    const CRect place = placeOf(dialog);
    EXPECT_NEAR(place.left + place.right, workArea().left + workArea().right, 1);
    EXPECT_NEAR(place.top + place.bottom, workArea().top + workArea().bottom, 1);
}

TEST(DialogsPlace, IsTheMiddleOfTheWorkAreaWithoutAnOwner) {
    TestDialog dialog;
    dialog.onInit = [&] { expectCentred(dialog); };
    dialog.runWith([&] {
        expectCentred(dialog);
        EXPECT_EQ(GetForegroundWindow(), dialog.m_hWnd);
    });
}

TEST(DialogsPlace, IsTheMiddleOfTheWorkAreaWhenTheOwnerIsOutOfView) {
    OwnerWindow owner;
    owner.ShowWindow(SW_HIDE);
    TestDialog dialog(&owner);
    dialog.runWith([&] { expectCentred(dialog); });
}

TEST(DialogsPlace, IsAtTheOwnersCornerWhenItIsInView) {
    OwnerWindow owner;
    TestDialog dialog(&owner);
    dialog.runWith([&] {
        EXPECT_LT(placeOf(dialog).left, 50);
        EXPECT_LT(placeOf(dialog).top, 50);
    });
}

TEST(DialogsPlace, IsTheOneThatOnInitDialogChose) {
    TestDialog dialog;
    dialog.onInit = [&] {
        ::SetWindowPos(dialog, nullptr, 30, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    };
    dialog.runWith([&] { EXPECT_EQ(placeOf(dialog).left, 30); });
}

// Exceptions.

[[noreturn]] void fail() {
    throw std::logic_error("from the dialog");
}

struct Failing {
    const char* place;
    void (*prepare)(TestDialog& dialog);
};

class ExceptionFrom : public testing::TestWithParam<Failing> {};

TEST_P(ExceptionFrom, EndsTheDialogAndComesOutOfDoModal) {
    TestDialog dialog;
    GetParam().prepare(dialog);
    EXPECT_THROW(dialog.DoModal(), std::logic_error);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    dialog.EndDialog(0);
    EXPECT_FALSE(dialog.DestroyWindow());
}

constexpr Failing failings[] = {
    {"AHandler", [](TestDialog& dialog) { dialog.step = fail; }},
    {"OnInitDialog", [](TestDialog& dialog) { dialog.onInit = fail; }},
    {"ATimer",
     [](TestDialog& dialog) {
         dialog.step = [&dialog] { dialog.SetTimer(129, 10, nullptr); };
         dialog.onTimer = [](UINT_PTR) { fail(); };
     }},
    {"PreTranslateMessage",
     [](TestDialog& dialog) {
         dialog.onPreTranslate = [](MSG* message) {
             return message->message == WM_TEST_STEP ? (fail(), true) : false;
         };
     }},
    {"AKeysCommandThroughTheDialogManager",
     [](TestDialog& dialog) {
         dialog.step = [] { ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0); };
         dialog.onCancel = fail;
     }},
};
INSTANTIATE_TEST_SUITE_P(Places, ExceptionFrom, testing::ValuesIn(failings),
                         [](const auto& failing) { return std::string(failing.param.place); });

TEST(ExceptionInADialog, KeepsItsType) {
    TestDialog dialog;
    dialog.step = [] { throw 42; };
    EXPECT_THROW(dialog.DoModal(), int);
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
        dialog.combo.PostMessage(WM_MOUSEMOVE);
        dialog.text.PostMessage(WM_APP + 1);
        dialog.PostMessage(WM_COMMAND, IDOK);
    };
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_THAT(dialog.seen,
                testing::IsSupersetOf({UINT{WM_MOUSEMOVE}, UINT{WM_APP + 1}, UINT{WM_COMMAND}}));
}

TEST(PreTranslateMessage, KeepsAMessageFromBeingDispatched) {
    TestDialog dialog;
    dialog.onPreTranslate = [](MSG* message) {
        return message->message == WM_COMMAND && message->wParam == IDOK;
    };
    dialog.step = [&] {
        dialog.PostMessage(WM_COMMAND, IDOK);
        dialog.PostMessage(WM_COMMAND, IDCANCEL);
    };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
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
        control.PostMessage(WM_APP + 1);
        dialog.PostMessage(WM_COMMAND, IDOK);
    };
    dialog.DoModal();
    EXPECT_EQ(control.asked, 1);
    EXPECT_THAT(dialog.seen, testing::Not(testing::Contains(UINT{WM_APP + 1})));
}

// Idle.

TEST(IdleDialog, GetsKickIdleUntilItReturnsZero) {
    struct Idle final : TestDialog {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message != WM_KICKIDLE) {
                return TestDialog::WindowProc(message, wParam, lParam);
            }
            if (lParam == 0) {
                kicks.clear(); // a message of the system came in between
            }
            kicks.push_back(static_cast<int>(lParam));
            if (kicks.size() == 3 || ++all == 100) {
                EndDialog(0);
            }
            return kicks.size() < 3;
        }
        std::vector<int> kicks;
        int all = 0;
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
    dialog.runWith([&] {
        cursor = dialog.SendMessage(WM_QUERYDRAGICON);
        dialog.SendMessage(WM_HSCROLL, SB_LINELEFT, reinterpret_cast<LPARAM>(dialog.m_hWnd));
    });
    EXPECT_EQ(cursor, reinterpret_cast<LRESULT>(LoadCursorW(nullptr, IDC_HAND)));
}

// Sends a control's request for colours as the control does. \return the brush
LRESULT ask(const TestDialog& dialog, UINT message, int controlId, HDC dc) {
    return dialog.SendMessage(message, reinterpret_cast<WPARAM>(dc),
                              reinterpret_cast<LPARAM>(::GetDlgItem(dialog.m_hWnd, controlId)));
}

TEST(ColourRequests, ComeWithTheControlAndItsKind) {
    TestDialog dialog;
    std::vector<std::pair<int, UINT>> asked;
    const HDC dc = CreateCompatibleDC(nullptr);
    dialog.onColor = [&](CDC* context, CWnd* control, UINT type) {
        asked.emplace_back(control->GetDlgCtrlID(), type);
        EXPECT_EQ(control == &dialog.text, type == CTLCOLOR_STATIC);
        context->SetTextColor(RGB(255, 0, 0));
        return GetSysColorBrush(COLOR_INFOBK);
    };
    dialog.runWith([&] {
        dialog.UpdateWindow();
        asked.clear();
        EXPECT_EQ(ask(dialog, WM_CTLCOLORSTATIC, IDC_TEST_STATIC, dc),
                  reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK)));
        EXPECT_EQ(GetTextColor(dc), RGB(255, 0, 0));
        ask(dialog, WM_CTLCOLORBTN, IDC_TEST_BUTTON, dc);
        EXPECT_THAT(asked, ElementsAre(std::pair(IDC_TEST_STATIC, UINT{CTLCOLOR_STATIC}),
                                       std::pair(IDC_TEST_BUTTON, UINT{CTLCOLOR_BTN})));
    });
    DeleteDC(dc);
}

TEST(ColourRequests, WithoutAHandlerGetTheDialogsBackground) {
    TestDialog dialog;
    const HDC dc = CreateCompatibleDC(nullptr);
    dialog.runWith([&] { EXPECT_NE(ask(dialog, WM_CTLCOLORSTATIC, IDC_TEST_STATIC, dc), 0); });
    DeleteDC(dc);
}

// Members and controls.

TEST(DataExchange, BindsMembersOnceAndForTheLifeOfTheWindow) {
    TestDialog dialog;
    dialog.runWith([&] {
        EXPECT_TRUE(dialog.UpdateData(TRUE));
        EXPECT_TRUE(dialog.UpdateData(FALSE));
        EXPECT_EQ(dialog.GetDlgItem(IDC_TEST_COMBO), &dialog.combo);
    });
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
    dialog.runWith([&] {
        dialog.SetDlgItemText(IDC_TEST_STATIC, L"49%");
        EXPECT_EQ(test::textOf(dialog.text), L"49%");
        EXPECT_EQ(dialog.GetDlgItem(4711), nullptr);
    });
}

} // namespace
