// The part of the windowing interface that PostedRefresh needs, for systems without it: a posted
// message wakes the thread that waits on the window.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <atomic>

using UINT = unsigned int;
using WPARAM = unsigned long long;
using LPARAM = long long;
constexpr UINT WM_NULL = 0;

namespace doubles {

struct Window {
    std::atomic<long> emptyMessages = 0;
};

} // namespace doubles

using HWND = doubles::Window*;

inline BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NULL && wParam == 0 && lParam == 0) {
        ++window->emptyMessages;
    }
    return TRUE;
}
