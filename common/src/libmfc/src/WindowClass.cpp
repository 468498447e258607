// Window classes made from their properties.
#include <afxwin.h>

#include <cstdint>
#include <cwchar>

LPCTSTR AFXAPI AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor, HBRUSH hbrBackground,
                                   HICON hIcon) {
    thread_local wchar_t name[96];
    const auto number = [](const void* handle) {
        return static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(handle));
    };
    swprintf(name, std::size(name), L"Afx:%llx:%x:%llx:%llx:%llx",
             number(GetModuleHandleW(nullptr)), nClassStyle, number(hCursor), number(hbrBackground),
             number(hIcon));

    WNDCLASSW windowClass{};
    windowClass.style = nClassStyle;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = hCursor;
    windowClass.hbrBackground = hbrBackground;
    windowClass.hIcon = hIcon;
    windowClass.lpszClassName = name;
    // ERROR_CLASS_ALREADY_EXISTS is the second call; ERROR_NOT_ENOUGH_MEMORY and the like fail
    if (RegisterClassW(&windowClass) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        AfxThrowResourceException();
    }
    return name;
}
