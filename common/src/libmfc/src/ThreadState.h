// What the library keeps for each thread: the maps from handles to objects, the current message,
// the window being created, and the exception that is to come out of the loop.
#pragma once

#include <afxwin.h>

#include <exception>
#include <memory>
#include <unordered_map>

namespace afx {

struct ThreadState {
    std::unordered_map<HWND, CWnd*> permanent;
    std::unordered_map<HWND, std::unique_ptr<CWnd>> temporary;
    /// The message that the innermost window procedure is handling.
    MSG current{};
    /// Number of window procedures on the stack. Their handlers may hold temporary objects.
    int depth = 0;
    /// The object of the next window that is created on the thread.
    CWnd* creating = nullptr;
    /// The first exception that left a handler and has not come out of a loop yet.
    std::exception_ptr pending;
};

ThreadState& threadState();

/// Keeps the exception being handled for rethrowPending(), unless one is waiting already, and
/// wakes the thread's loop.
void keepException();

/// Throws the exception that is waiting, if any.
void rethrowPending();

/// Runs `body` where Windows' frames are next on the stack: an exception is kept instead of
/// leaving. \return `body`'s result, or `fallback`
template <class Body, class Result>
Result guarded(Result fallback, Body body) {
    try {
        return body();
    } catch (...) {
        keepException();
        return fallback;
    }
}

} // namespace afx
