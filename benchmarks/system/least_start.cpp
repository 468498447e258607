// The least that a start of the executable costs: the same DLLs imported, and OLE started.
#include <windows.h>

// After windows.h.
#include <ole2.h>
#include <rpc.h>
#include <shellapi.h>
#include <wincrypt.h>

#include <cstdlib>

namespace {

// One function of each DLL: processes.py compares the imports with the executable's.
template <typename Function>
void import(Function* function) {
    [[maybe_unused]] Function* volatile const kept = function;
}

} // namespace

int main() {
    import(&CryptGenRandom);
    import(&GetStockObject);
    import(&UuidFromStringW);
    import(&CommandLineToArgvW);
    import(&GetDesktopWindow);
    const bool started = SUCCEEDED(OleInitialize(nullptr));
    std::_Exit(started ? 0 : 1);
}
