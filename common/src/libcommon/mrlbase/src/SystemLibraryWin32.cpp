#include <mrl/SystemLibrary.h>

#include <windows.h>

namespace mrl {

SystemLibrary::SystemLibrary(const Char* name)
    : m_module(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)),
      m_error(m_module == nullptr ? GetLastError() : ERROR_SUCCESS) {}

SystemLibrary::AnyFunction* SystemLibrary::address(const char* name) const {
    return m_module == nullptr ? nullptr
                               : reinterpret_cast<AnyFunction*>(
                                     GetProcAddress(static_cast<HMODULE>(m_module), name));
}

void loadFromSystemDirectoryAlone() {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L"");
}

} // namespace mrl
