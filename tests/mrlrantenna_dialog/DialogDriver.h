// Acts on a dialog from inside its modal loop, as a user does: one step each time the dialog is
// idle.
#pragma once

#include <mrlrantennaDlg.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace test {

using Dialog = MRLRAntennaDlg;
using Step = std::function<void(Dialog&)>;

/// While it lives, each time a dialog of this thread is idle and painted, the next of `steps` is
/// run with it. A dialog that is idle with no step left is ended with LEFT_OPEN. One at a time.
///
/// Dialogs open beyond the edge of the screen unless `place` says otherwise: everything works there
/// but painting, and no window manager has to be waited for.
///
/// Also ends dialogs that are not idle after 30 s of real time, with a failure of the test; when
/// the thread does not pump messages either, the program is ended.
class DialogDriver {
public:
    /// What DoModal() returns when none of the steps ended the dialog.
    static constexpr int LEFT_OPEN = 77;

    enum class Place { OFF_SCREEN, ON_SCREEN };

    explicit DialogDriver(std::vector<Step> steps, Place place = Place::OFF_SCREEN);
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;
    ~DialogDriver();

    /// Whether the steps ran out before a dialog had ended.
    bool leftOpen() const { return m_leftOpen; }
    /// How many steps have not been run.
    std::size_t stepsLeft() const { return m_steps.size() - m_next; }

private:
    // The messages of the driver come in a window of its own.
    class Desk : public CWnd {
    public:
        explicit Desk(DialogDriver& driver);

    protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    private:
        DialogDriver& m_driver;
    };

    static LRESULT CALLBACK hook(int code, WPARAM wParam, LPARAM lParam);
    void whenIdle(HWND dialog);
    void runStep();
    void giveUp();
    void watch();

    std::vector<Step> m_steps;
    Place m_place;
    std::size_t m_next = 0;
    bool m_leftOpen = false;
    bool m_posted = false;
    HWND m_dialog = nullptr;
    HHOOK m_hook;
    Desk m_desk;

    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_over = false;
    std::thread m_watchdog;
};

} // namespace test
