// DLLs of Windows that Windows itself does not keep from being replaced by a file of the same name
// beside the program: they are looked up here rather than linked. Windows only.
#pragma once

#include <mrl/Types.h>

namespace mrl {

/// A DLL of the system directory, or of the side-by-side store where the manifest names it, loaded
/// for the life of the process. No other directory is searched: a file of that name beside the
/// program or in the current directory never runs. Any thread.
/// Platform: LoadLibraryExW with LOAD_LIBRARY_SEARCH_SYSTEM32, GetProcAddress
class SystemLibrary {
public:
    /// `name` in lower case: Windows does not mind, Wine looks through the whole directory
    /// otherwise.
    explicit SystemLibrary(const Char* name);

    bool loaded() const { return m_module != nullptr; }
    /// The system's code for why it is not loaded; 0 when it is.
    Uint32 error() const { return m_error; }

    /// The function `name`, whose type is Function; null when there is none.
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

} // namespace mrl
