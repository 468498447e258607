// A dialog whose behaviour each test provides.
#pragma once

#include <afxcmn.h>

#include "dialog_ids.h"

#include <functional>
#include <string>
#include <vector>

namespace test {

constexpr UINT WM_TEST_STEP = WM_APP + 7;

/// Posts itself WM_TEST_STEP when it opens; `step` is what that does, by default ending it with 0.
class TestDialog : public CDialog {
public:
    explicit TestDialog(CWnd* parent = nullptr) : CDialog(IDD_TEST, parent) {}

    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        PostMessage(WM_TEST_STEP);
        if (onInit) {
            onInit();
        }
        return TRUE;
    }
    BOOL PreTranslateMessage(MSG* message) override {
        seen.push_back(message->message);
        return (onPreTranslate && onPreTranslate(message)) || CDialog::PreTranslateMessage(message);
    }

    void OnCancel() override { onCancel ? onCancel() : CDialog::OnCancel(); }

    /// Runs the dialog modally with `act` as its step, which then ends it.
    INT_PTR runWith(const std::function<void()>& act) {
        step = [this, act] {
            act();
            EndDialog(0);
        };
        return DoModal();
    }

    CComboBox combo;
    CProgressCtrl progress;
    CStatic text;

    std::function<void()> onInit;
    std::function<void()> step = [this] { EndDialog(0); };
    std::function<bool(MSG*)> onPreTranslate;
    std::function<void(UINT_PTR)> onTimer;
    std::function<void()> onCancel;
    std::function<HBRUSH(CDC*, CWnd*, UINT)> onColor;
    std::vector<UINT> seen;
    std::vector<std::string> handled;

protected:
    void DoDataExchange(CDataExchange* exchange) override {
        CDialog::DoDataExchange(exchange);
        DDX_Control(exchange, IDC_TEST_PROGRESS, progress);
        DDX_Control(exchange, IDC_TEST_COMBO, combo);
        DDX_Control(exchange, IDC_TEST_STATIC, text);
    }

    afx_msg LRESULT OnStep(WPARAM, LPARAM) {
        const auto run = step; // a step may replace itself
        run();
        return 0;
    }
    afx_msg void OnTimer(UINT_PTR id) {
        if (onTimer) {
            onTimer(id);
        } else {
            CDialog::OnTimer(id);
        }
    }
    afx_msg HBRUSH OnCtlColor(CDC* dc, CWnd* control, UINT type) {
        const HBRUSH brush = CDialog::OnCtlColor(dc, control, type);
        return onColor ? onColor(dc, control, type) : brush;
    }
    afx_msg void OnButton() { handled.emplace_back("button"); }
    afx_msg void OnSelection() { handled.emplace_back("selection"); }
    afx_msg void OnText() { handled.emplace_back("text"); }
    afx_msg void OnClose() {
        handled.emplace_back("close");
        CDialog::OnClose();
    }
    afx_msg HCURSOR OnQueryDragIcon() { return LoadCursorW(nullptr, IDC_HAND); }

    DECLARE_MESSAGE_MAP()
};

} // namespace test
