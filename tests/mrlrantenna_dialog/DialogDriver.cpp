#include "DialogDriver.h"

#include <afxpriv.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace test {

namespace {

constexpr UINT WM_NEXT_STEP = WM_APP + 1;
constexpr UINT WM_TIME_IS_UP = WM_APP + 2;
constexpr std::chrono::seconds TIME_LIMIT{30};
constexpr std::chrono::seconds GRACE{10};
constexpr int FAR_AWAY = -20000;

DialogDriver* g_driver = nullptr;

Dialog* dialogOf(HWND window) {
    return dynamic_cast<Dialog*>(CWnd::FromHandlePermanent(window));
}

} // namespace

DialogDriver::Desk::Desk(DialogDriver& driver) : m_driver(driver) {
    CreateEx(0, WC_STATICW, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr);
}

LRESULT DialogDriver::Desk::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_NEXT_STEP:
        m_driver.runStep();
        return 0;
    case WM_TIME_IS_UP:
        m_driver.giveUp();
        return 0;
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}

DialogDriver::DialogDriver(std::vector<Step> steps, Place place)
    : m_steps(std::move(steps)), m_place(place),
      m_hook(SetWindowsHookExW(WH_CALLWNDPROC, hook, nullptr, GetCurrentThreadId())), m_desk(*this),
      m_watchdog([this] { watch(); }) {
    g_driver = this;
}

DialogDriver::~DialogDriver() {
    {
        const std::lock_guard lock(m_mutex);
        m_over = true;
    }
    m_ended.notify_all();
    m_watchdog.join();
    UnhookWindowsHookEx(m_hook);
    g_driver = nullptr;
}

LRESULT CALLBACK DialogDriver::hook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION) {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (sent.message == WM_KICKIDLE) {
            g_driver->whenIdle(sent.hwnd);
        } else if (sent.message == WM_SHOWWINDOW && sent.wParam != FALSE &&
                   g_driver->m_place == Place::OFF_SCREEN && dialogOf(sent.hwnd) != nullptr) {
            SetWindowPos(sent.hwnd, nullptr, FAR_AWAY, FAR_AWAY, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// The loop sends WM_KICKIDLE before the dialog handles it: the step is posted, to run after that.
void DialogDriver::whenIdle(HWND dialog) {
    if (!m_posted && dialogOf(dialog) != nullptr) {
        m_posted = true;
        m_dialog = dialog;
        m_desk.PostMessage(WM_NEXT_STEP);
    }
}

void DialogDriver::runStep() {
    m_posted = false;
    Dialog* const dialog = dialogOf(m_dialog);
    if (dialog == nullptr) {
        return; // it ended in the meantime; the next one asks again
    }
    RedrawWindow(m_dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    if (m_next == m_steps.size()) {
        m_leftOpen = true;
        dialog->EndDialog(LEFT_OPEN);
        return;
    }
    const Step& step = m_steps[m_next++];
    step(*dialog);
}

void DialogDriver::giveUp() {
    ADD_FAILURE() << "the dialog did not come to rest; " << stepsLeft() << " steps were left";
    m_next = m_steps.size();
    if (Dialog* const dialog = dialogOf(m_dialog)) {
        dialog->EndDialog(LEFT_OPEN);
    }
}

void DialogDriver::watch() {
    std::unique_lock lock(m_mutex);
    const auto over = [this] { return m_over; };
    if (m_ended.wait_for(lock, TIME_LIMIT, over)) {
        return;
    }
    ::PostMessageW(m_desk.m_hWnd, WM_TIME_IS_UP, 0, 0);
    if (!m_ended.wait_for(lock, GRACE, over)) {
        std::fputs("the dialog's thread hangs; the program ends here\n", stderr);
        std::fflush(stderr);
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace test
