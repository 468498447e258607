#include "ControlJournal.h"

#include <resource.h>

#include <mrl/Unicode.h>

#include <commctrl.h>

#include <algorithm>

namespace test {

namespace {

ControlJournal* g_journal = nullptr;

std::string number(std::int64_t value) {
    return std::to_string(value);
}

std::string textAt(LPARAM pointer) {
    return pointer == 0 ? std::string() : mrl::toUtf8(reinterpret_cast<const wchar_t*>(pointer));
}

std::string ofList(const CWPSTRUCT& sent) {
    const std::string index = number(static_cast<int>(sent.wParam));
    switch (sent.message) {
    case CB_GETCOUNT:
        return "count entries";
    case CB_RESETCONTENT:
        return "list empty";
    case CB_INSERTSTRING:
        return "list insert " + index + " " + textAt(sent.lParam);
    case CB_SETCURSEL:
        return "list select " + index;
    case CB_SELECTSTRING:
        return "list find " + index + " " + textAt(sent.lParam);
    case CB_SETITEMHEIGHT:
        return "list height " + index + " " + number(sent.lParam);
    default:
        return {};
    }
}

std::string ofMeter(const CWPSTRUCT& sent) {
    switch (sent.message) {
    case PBM_SETPOS:
        return "meter " + number(static_cast<int>(sent.wParam));
    case PBM_SETRANGE:
        return "meter range " + number(LOWORD(sent.lParam)) + " " + number(HIWORD(sent.lParam));
    case PBM_SETSTEP:
        return "meter step " + number(static_cast<int>(sent.wParam));
    default:
        return {};
    }
}

std::string ofToolTip(const CWPSTRUCT& sent) {
    switch (sent.message) {
    case TTM_ACTIVATE:
        return sent.wParam != 0 ? "tips on" : "tips off";
    case TTM_ADDTOOLW: {
        const auto& tool = *reinterpret_cast<const TTTOOLINFOW*>(sent.lParam);
        const int id = GetDlgCtrlID(reinterpret_cast<HWND>(tool.uId));
        return "tip " + number(id) + " " + mrl::toUtf8(tool.lpszText);
    }
    default:
        return {};
    }
}

// Empty for what is not noted.
std::string entryOf(const CWPSTRUCT& sent) {
    const int id = GetDlgCtrlID(sent.hwnd);
    switch (sent.message) {
    case WM_INITDIALOG:
        return "opens";
    case WM_SETTEXT:
        return "text " + number(id) + " " + textAt(sent.lParam);
    case WM_SETICON:
        return sent.wParam == ICON_BIG ? "icon big" : "icon small";
    case WM_ICONERASEBKGND:
        return sent.wParam != 0 ? "icon background" : "icon background without context";
    case WM_ENABLE:
        return (sent.wParam != 0 ? "enable " : "disable ") + number(id);
    default:
        break;
    }
    if (id == IDC_NETWORK_COMBO) {
        return ofList(sent);
    }
    if (id == IDC_SIGNAL_METER) {
        return ofMeter(sent);
    }
    return isToolTip(sent.hwnd) ? ofToolTip(sent) : std::string();
}

} // namespace

bool isToolTip(HWND window) {
    wchar_t name[sizeof TOOLTIPS_CLASSW] = {};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return std::wstring_view(name) == TOOLTIPS_CLASSW;
}

ControlJournal::ControlJournal()
    : m_hook(SetWindowsHookExW(WH_CALLWNDPROC, hook, nullptr, GetCurrentThreadId())) {
    g_journal = this;
}

ControlJournal::~ControlJournal() {
    UnhookWindowsHookEx(m_hook);
    g_journal = nullptr;
}

LRESULT CALLBACK ControlJournal::hook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION) {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        const std::string entry = entryOf(sent);
        if (!entry.empty()) {
            g_journal->m_fromOtherThreads += InSendMessage() ? 1 : 0;
            Journal::note(entry);
            if (g_journal->onEntry) {
                g_journal->onEntry(entry, sent.hwnd);
            }
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

std::vector<std::string> ControlJournal::entries(const std::vector<std::string_view>& kinds) const {
    std::vector<std::string> chosen = m_journal.entries();
    std::erase_if(chosen, [&kinds](const std::string& entry) {
        const auto begins = [&entry](std::string_view kind) { return entry.starts_with(kind); };
        return kinds.empty() ? begins("call ") || begins("log ") || begins("event ")
                             : std::none_of(kinds.begin(), kinds.end(), begins);
    });
    return chosen;
}

long ControlJournal::count(std::string_view entry) const {
    const std::vector<std::string> all = m_journal.entries();
    return static_cast<long>(std::count(all.begin(), all.end(), entry));
}

} // namespace test
