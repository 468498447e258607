// Window classes made from their properties.
#include <afxwin.h>

#include "FirstWindow.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <mutex>
#include <string>
#include <vector>

namespace {

struct WindowClass {
    std::wstring name;
    UINT style;
    HCURSOR cursor;
    HBRUSH background;
    HICON icon;
};

struct PromisedClasses {
    std::mutex mutex;
    std::vector<WindowClass> classes;
};

PromisedClasses& promised() {
    static PromisedClasses classes;
    return classes;
}

bool isRegistered(const WindowClass& properties) {
    WNDCLASSW windowClass{};
    windowClass.style = properties.style;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = AfxGetInstanceHandle();
    windowClass.hCursor = properties.cursor;
    windowClass.hbrBackground = properties.background;
    windowClass.hIcon = properties.icon;
    windowClass.lpszClassName = properties.name.c_str();
    // ERROR_CLASS_ALREADY_EXISTS is the second call; ERROR_NOT_ENOUGH_MEMORY and the like fail
    return RegisterClassW(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

} // namespace

LPCTSTR AFXAPI AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor, HBRUSH hbrBackground,
                                   HICON hIcon) {
    thread_local wchar_t name[96];
    const auto number = [](const void* handle) {
        return static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(handle));
    };
    swprintf(name, std::size(name), L"Afx:%llx:%x:%llx:%llx:%llx", number(AfxGetInstanceHandle()),
             nClassStyle, number(hCursor), number(hbrBackground), number(hIcon));

    const WindowClass properties{name, nClassStyle, hCursor, hbrBackground, hIcon};
    if (GetModuleHandleW(L"user32.dll") == nullptr) {
        const std::lock_guard lock(promised().mutex);
        promised().classes.push_back(properties);
    } else if (!isRegistered(properties)) {
        AfxThrowResourceException();
    }
    return name;
}

bool afx::registerPromisedClasses() {
    const std::lock_guard lock(promised().mutex);
    std::vector<WindowClass>& classes = promised().classes;
    classes.erase(std::remove_if(classes.begin(), classes.end(), isRegistered), classes.end());
    return classes.empty();
}
