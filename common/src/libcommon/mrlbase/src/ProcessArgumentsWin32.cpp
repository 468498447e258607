#include <mrl/ProcessArguments.h>

#include <windows.h>
// After windows.h.
#include <shellapi.h>

#include <memory>
#include <new>

namespace mrl {

std::vector<CharString> processArguments() {
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> arguments(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    if (arguments == nullptr) {
        throw std::bad_alloc();
    }
    return std::vector<CharString>(arguments.get(), arguments.get() + count);
}

} // namespace mrl
