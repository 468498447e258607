// Stands where a system DLL of the same name is looked for, and leaves NAME.ran beside itself when
// it is loaded.
#include <windows.h>

#include <string>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        std::wstring name(32768, L'\0');
        name.resize(GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size())));
        const HANDLE file = CreateFileW((name + L".ran").c_str(), GENERIC_WRITE, 0, nullptr,
                                        CREATE_ALWAYS, 0, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            CloseHandle(file);
        }
    }
    return TRUE;
}
