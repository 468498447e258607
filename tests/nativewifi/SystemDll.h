// Whether the system directory's Wlanapi.dll may be called from a test.
#pragma once

#include <nativewifi/WlanTypes.h>

/// True where it is the radio simulator's. Wine's own ends the process at the first call, and with
/// a real one the result would depend on the networks nearby.
inline bool systemDllIsSimulated() {
#ifdef _WIN32
    const HMODULE module = LoadLibraryExW(L"Wlanapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module != nullptr && GetProcAddress(module, "RadiosimInForce") != nullptr;
#else
    return false;
#endif
}
