#include "Control.h"

#include <mrl/Unicode.h>

#include <commctrl.h>
#include <stdexcept>

using mrl::Json;

namespace dialogprobe {

namespace {

constexpr UINT ANSWER_LIMIT_MS = 30000;

Json entriesOf(const Control& combo) {
    Json entries = Json::array();
    const LRESULT count = combo.send(CB_GETCOUNT);
    for (LRESULT index = 0; index < count; ++index) {
        const auto entry = static_cast<WPARAM>(index);
        const LRESULT length = combo.send(CB_GETLBTEXTLEN, entry);
        if (length == CB_ERR) {
            break; // refilled in between
        }
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        const LRESULT used = combo.send(CB_GETLBTEXT, entry, reinterpret_cast<LPARAM>(text.data()));
        text.resize(used == CB_ERR ? 0 : static_cast<std::size_t>(used));
        entries.push_back(mrl::toUtf8(text));
    }
    return entries;
}

} // namespace

std::vector<Control> Control::allOf(HWND dialog) {
    std::vector<Control> all;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        all.emplace_back(child);
    }
    return all;
}

std::wstring Control::className() const {
    wchar_t name[256]{}; // the longest that there can be
    GetClassNameW(m_window, name, static_cast<int>(std::size(name)));
    return name;
}

bool Control::isClass(const wchar_t* name) const {
    return _wcsicmp(className().c_str(), name) == 0;
}

// By message: GetWindowTextW() does not read the controls of other processes.
std::wstring Control::text() const {
    const auto length = static_cast<std::size_t>(send(WM_GETTEXTLENGTH));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        send(WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

Json Control::description() const {
    RECT place{};
    GetWindowRect(m_window, &place);
    Json fields = {{"id", id()},
                   {"class", mrl::toUtf8(className())},
                   {"text", mrl::toUtf8(text())},
                   {"visible", IsWindowVisible(m_window) != FALSE},
                   {"enabled", IsWindowEnabled(m_window) != FALSE},
                   {"rect", {place.left, place.top, place.right, place.bottom}},
                   {"style", style()}};
    if (isClass(WC_COMBOBOXW)) {
        fields["entries"] = entriesOf(*this);
        fields["selection"] = send(CB_GETCURSEL);
    } else if (isClass(PROGRESS_CLASSW)) {
        fields["position"] = send(PBM_GETPOS);
        fields["range"] = {send(PBM_GETRANGE, TRUE), send(PBM_GETRANGE, FALSE)};
    }
    return fields;
}

HWND Control::focus() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    // ERROR_INVALID_PARAMETER: the thread has ended
    if (!GetGUIThreadInfo(GetWindowThreadProcessId(m_window, nullptr), &info)) {
        return nullptr;
    }
    return info.hwndFocus;
}

void Control::click() const {
    if (isClass(WC_BUTTONW)) {
        post(BM_CLICK, 0, 0);
        return;
    }
    RECT client{};
    GetClientRect(m_window, &client);
    const LPARAM middle = MAKELPARAM(client.right / 2, client.bottom / 2);
    post(WM_LBUTTONDOWN, MK_LBUTTON, middle);
    post(WM_LBUTTONUP, 0, middle);
}

void Control::select(int index) const {
    if (send(CB_SETCURSEL, static_cast<WPARAM>(index)) == CB_ERR) {
        throw std::runtime_error("the list has no entry " + std::to_string(index));
    }
    // The list itself sends the notification only when the user selects.
    Control(GetParent(m_window))
        .send(WM_COMMAND, MAKEWPARAM(id(), CBN_SELCHANGE), reinterpret_cast<LPARAM>(m_window));
}

void Control::key(WPARAM virtualKey) const {
    const UINT scanCode = MapVirtualKeyW(static_cast<UINT>(virtualKey), MAPVK_VK_TO_VSC);
    const LPARAM pressed = 1 | static_cast<LPARAM>(scanCode) << 16;
    const LPARAM released = pressed | static_cast<LPARAM>(KF_REPEAT | KF_UP) << 16;
    post(WM_KEYDOWN, virtualKey, pressed);
    post(WM_KEYUP, virtualKey, released);
}

LRESULT Control::send(UINT message, WPARAM wParam, LPARAM lParam) const {
    DWORD_PTR result = 0;
    // ERROR_TIMEOUT, ERROR_INVALID_WINDOW_HANDLE
    if (SendMessageTimeoutW(m_window, message, wParam, lParam, SMTO_NORMAL, ANSWER_LIMIT_MS,
                            &result) == 0) {
        throw std::runtime_error("the window does not answer (error " +
                                 std::to_string(GetLastError()) + ")");
    }
    return static_cast<LRESULT>(result);
}

void Control::post(UINT message, WPARAM wParam, LPARAM lParam) const {
    // ERROR_INVALID_WINDOW_HANDLE, ERROR_NOT_ENOUGH_QUOTA
    if (!PostMessageW(m_window, message, wParam, lParam)) {
        throw std::runtime_error("the window takes no message (error " +
                                 std::to_string(GetLastError()) + ")");
    }
}

} // namespace dialogprobe
