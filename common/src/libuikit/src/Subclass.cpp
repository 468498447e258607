#include "Subclass.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace libUikit {

namespace {

struct Subclassed {
    WNDPROC before;
    std::vector<const Subclass*> handlers; // the latest last
};

// By window. An entry without handlers stays where somebody came after us: who calls the procedure
// that was there still reaches the window.
std::unordered_map<HWND, Subclassed>& windows() {
    thread_local std::unordered_map<HWND, Subclassed> known;
    return known;
}

} // namespace

Subclass::Subclass(HWND window, Handler handler, void* owner)
    : m_window(window), m_handler(handler), m_owner(owner) {
    const auto known = windows().find(window);
    if (known != windows().end()) {
        known->second.handlers.push_back(this);
        return;
    }
    const auto before = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
    windows().emplace(window, Subclassed{before, {this}});
}

Subclass::~Subclass() {
    const auto known = windows().find(m_window);
    if (known == windows().end()) {
        return; // the window ended first
    }
    std::vector<const Subclass*>& handlers = known->second.handlers;
    handlers.erase(std::remove(handlers.begin(), handlers.end(), this), handlers.end());
    if (handlers.empty() &&
        reinterpret_cast<WNDPROC>(GetWindowLongPtrW(m_window, GWLP_WNDPROC)) == &procedure) {
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(known->second.before));
        windows().erase(known);
    }
}

LRESULT Subclass::pass(UINT message, WPARAM wParam, LPARAM lParam) const {
    const auto known = windows().find(m_window);
    if (known == windows().end()) {
        return DefWindowProcW(m_window, message, wParam, lParam);
    }
    const std::vector<const Subclass*>& handlers = known->second.handlers;
    const auto own = std::find(handlers.begin(), handlers.end(), this);
    if (own == handlers.begin() || own == handlers.end()) {
        return CallWindowProcW(known->second.before, m_window, message, wParam, lParam);
    }
    const Subclass& next = **std::prev(own);
    return next.m_handler(next, next.m_owner, message, wParam, lParam);
}

LRESULT CALLBACK Subclass::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto known = windows().find(window);
    if (known == windows().end()) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const WNDPROC before = known->second.before;
    if (known->second.handlers.empty()) {
        if (message == WM_NCDESTROY) {
            windows().erase(known);
        }
        return CallWindowProcW(before, window, message, wParam, lParam);
    }
    const Subclass& last = *known->second.handlers.back();
    if (message != WM_NCDESTROY) {
        return last.m_handler(last, last.m_owner, message, wParam, lParam);
    }
    // The procedure that was there may look whether it is in place again before it lets go.
    if (reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC)) == &procedure) {
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
    }
    const LRESULT result = last.m_handler(last, last.m_owner, message, wParam, lParam);
    windows().erase(window);
    return result;
}

} // namespace libUikit
