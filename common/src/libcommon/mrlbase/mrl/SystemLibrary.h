// Loads DLLs of Windows from the system directory alone. DLLs that are linked are searched for
// beside the program first, where another file of that name may lie. Windows only.
#pragma once

#include <mrl/Types.h>

namespace mrl {

/// A DLL of the system directory, or of the side-by-side store if the manifest names it; loaded for
/// the life of the process. No other directory is searched. Any thread.
/// Platform: LoadLibraryExW with LOAD_LIBRARY_SEARCH_SYSTEM32, GetProcAddress
class SystemLibrary {
public:
    /// `name` in lower case: Windows ignores case, but Wine then searches the whole directory.
    explicit SystemLibrary(const Char* name);

    bool loaded() const { return m_module != nullptr; }
    /// The system's error code when it is not loaded; else 0.
    Uint32 error() const { return m_error; }

    /// The function `name` of type Function; null when the DLL has none.
    template <typename Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

private:
    using AnyFunction = void();
    AnyFunction* address(const char* name) const;

    void* m_module;
    Uint32 m_error;
};

/// From here on, DLLs that this process loads come from the system directory, and not from the
/// program's folder or the current one. For the beginning of main().
/// Failure: none is reported; either call fails only on systems that are too old for the programs
/// Platform: SetDefaultDllDirectories, SetDllDirectoryW
void loadFromSystemDirectoryAlone();

} // namespace mrl
