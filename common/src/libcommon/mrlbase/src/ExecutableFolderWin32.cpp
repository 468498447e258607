// The executable's folder, from the system: the runtime library knows the path only in the code
// page of the process, which cannot hold every folder's name.
#include <mrl/System.h>

#include <windows.h>

namespace mrl {

std::filesystem::path System::executableFolder() {
    CharString path(MAX_PATH, Char());
    for (;;) {
        // ERROR_INSUFFICIENT_BUFFER: the text is cut and fills the buffer
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return std::filesystem::path(path).parent_path();
        }
        path.resize(path.size() * 2);
    }
}

} // namespace mrl
